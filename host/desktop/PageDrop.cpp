// Drag and drop between the page view and whatever pages come from.
#include "host/desktop/PageDrop.h"

#include "host/desktop/DroppedFiles.h"

#include <shlobj.h>

#include <atomic>
#include <utility>

namespace host {
namespace {

using Microsoft::WRL::ComPtr;

/// Counts the references to an object with one interface.
template <class Interface> class ComObject : public Interface {
public:
    virtual ~ComObject() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
        if (id != IID_IUnknown && id != __uuidof(Interface)) {
            *object = nullptr;
            return E_NOINTERFACE;
        }
        *object = static_cast<Interface*>(this);
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references;
        if (left == 0)
            delete this;
        return left;
    }

private:
    std::atomic<ULONG> references = 0;
};

class DragByLeftButton : public ComObject<IDropSource> {
public:
    HRESULT STDMETHODCALLTYPE QueryContinueDrag(BOOL escapePressed, DWORD keys) override {
        if (escapePressed || (keys & MK_RBUTTON))
            return DRAGDROP_S_CANCEL;
        return keys & MK_LBUTTON ? S_OK : DRAGDROP_S_DROP;
    }
    HRESULT STDMETHODCALLTYPE GiveFeedback(DWORD) override { return DRAGDROP_S_USEDEFAULTCURSORS; }
};

/// Stands for the pages while they are dragged. Holds nothing, so that no other window accepts them.
class DraggedPages : public ComObject<IDataObject> {
public:
    HRESULT STDMETHODCALLTYPE GetData(FORMATETC*, STGMEDIUM*) override { return DV_E_FORMATETC; }
    HRESULT STDMETHODCALLTYPE GetDataHere(FORMATETC*, STGMEDIUM*) override { return DV_E_FORMATETC; }
    HRESULT STDMETHODCALLTYPE QueryGetData(FORMATETC*) override { return DV_E_FORMATETC; }
    HRESULT STDMETHODCALLTYPE GetCanonicalFormatEtc(FORMATETC*, FORMATETC*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetData(FORMATETC*, STGMEDIUM*, BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE EnumFormatEtc(DWORD, IEnumFORMATETC**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DAdvise(FORMATETC*, DWORD, IAdviseSink*, DWORD*) override {
        return OLE_E_ADVISENOTSUPPORTED;
    }
    HRESULT STDMETHODCALLTYPE DUnadvise(DWORD) override { return OLE_E_ADVISENOTSUPPORTED; }
    HRESULT STDMETHODCALLTYPE EnumDAdvise(IEnumSTATDATA**) override { return OLE_E_ADVISENOTSUPPORTED; }
};

} // namespace

class PageDropTarget::Target : public ComObject<IDropTarget> {
public:
    Target(HWND window, PageDropReceiver& receiver) : window(window), receiver(&receiver) {
        // Draws the picture that the other program gave what is dragged; done without where there is no helper.
        CoCreateInstance(CLSID_DragDropHelper, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&pictures));
    }

    /// The system may hold the target a little longer than its window lives.
    void forgetReceiver() { receiver = nullptr; }
    void setDraggingOwnPages(bool dragging) { draggingOwnPages = dragging; }

    HRESULT STDMETHODCALLTYPE DragEnter(IDataObject* data, DWORD, POINTL point, DWORD* effect) override {
        accepted = !receiver             ? 0
                   : draggingOwnPages    ? DROPEFFECT_MOVE
                   : carriesPaths(*data) ? DROPEFFECT_COPY
                                         : 0;
        *effect &= accepted;
        POINT screen{point.x, point.y};
        if (pictures)
            pictures->DragEnter(window, data, &screen, *effect);
        if (*effect)
            receiver->draggedOver(screen);
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE DragOver(DWORD, POINTL point, DWORD* effect) override {
        *effect &= accepted;
        POINT screen{point.x, point.y};
        if (pictures)
            pictures->DragOver(&screen, *effect);
        if (*effect && receiver)
            receiver->draggedOver(screen);
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE DragLeave() override {
        if (pictures)
            pictures->DragLeave();
        if (receiver)
            receiver->dragEnded();
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE Drop(IDataObject* data, DWORD, POINTL point, DWORD* effect) override {
        *effect &= accepted;
        POINT screen{point.x, point.y};
        if (pictures)
            pictures->Drop(data, &screen, *effect);
        if (!receiver)
            return S_OK;
        receiver->dragEnded();
        if (!*effect)
            return S_OK;
        if (draggingOwnPages)
            receiver->pagesDropped(screen);
        else
            receiver->filesDropped(pathsIn(*data), screen);
        return S_OK;
    }

private:
    HWND window;
    PageDropReceiver* receiver;
    ComPtr<IDropTargetHelper> pictures;
    bool draggingOwnPages = false;
    DWORD accepted = 0;
};

PageDropTarget::PageDropTarget(HWND window, PageDropReceiver& receiver) : window(window) {
    OleInitialize(nullptr);
    target = new Target(window, receiver);
    RegisterDragDrop(window, target.Get());
}

PageDropTarget::~PageDropTarget() {
    RevokeDragDrop(window);
    target->forgetReceiver();
    target.Reset();
    OleUninitialize();
}

void PageDropTarget::dragPages() {
    const ComPtr<IDataObject> dragged(new DraggedPages);
    const ComPtr<IDropSource> source(new DragByLeftButton);
    const ComPtr<Target> kept(target);
    kept->setDraggingOwnPages(true);
    DWORD effect = 0;
    DoDragDrop(dragged.Get(), source.Get(), DROPEFFECT_MOVE, &effect);
    kept->setDraggingOwnPages(false);
}

} // namespace host
