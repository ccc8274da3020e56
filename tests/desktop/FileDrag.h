// Files dragged from another program, by the system's own drag and drop.
#pragma once

#include "desktop/FileData.h"

#include <gtest/gtest.h>

#include <ole2.h>
#include <wrl/client.h>

#include <string>
#include <vector>

namespace test {

/// What another program lets the user drag. Lives on the stack: nothing may hold it after the drag.
class FileDragSource : public IDropSource {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
        *object = id == IID_IUnknown || id == IID_IDropSource ? this : nullptr;
        return *object ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE QueryContinueDrag(BOOL escapePressed, DWORD keys) override {
        if (escapePressed)
            return DRAGDROP_S_CANCEL;
        return keys & MK_LBUTTON ? S_OK : DRAGDROP_S_DROP;
    }
    HRESULT STDMETHODCALLTYPE GiveFeedback(DWORD) override { return DRAGDROP_S_USEDEFAULTCURSORS; }
};

/// Drags with the button that is down, until it is released. Gives what the target did with it. The system's own data
/// object for the clipboard carries the contents, which the clipboard owns from now on.
inline DWORD drag(HWND window, UINT format, HGLOBAL contents) {
    EXPECT_TRUE(OpenClipboard(window));
    EmptyClipboard();
    EXPECT_TRUE(SetClipboardData(format, contents));
    CloseClipboard();
    Microsoft::WRL::ComPtr<IDataObject> data;
    EXPECT_HRESULT_SUCCEEDED(OleGetClipboard(&data));
    FileDragSource source;
    DWORD effect = DROPEFFECT_NONE;
    const HRESULT result = DoDragDrop(data.Get(), &source, DROPEFFECT_COPY | DROPEFFECT_MOVE, &effect);
    return result == DRAGDROP_S_DROP ? effect : static_cast<DWORD>(DROPEFFECT_NONE);
}

} // namespace test
