// Linked into every DLL and program that has module state of its own: holds that state.
#include "afxstat_.h"

#include <windows.h>

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace {

// Current while the module's global objects are constructed, so that its application object finds its module.
class OwnState : public AFX_MODULE_STATE {
public:
    OwnState()
        : AFX_MODULE_STATE(reinterpret_cast<HINSTANCE>(&__ImageBase)), before(AfxSetModuleState(this)) {}

    void globalsAreConstructed() const { AfxSetModuleState(before); }

private:
    AFX_MODULE_STATE* before;
};

#ifdef _MSC_VER
#pragma init_seg(lib)
OwnState ownState;
#else
OwnState ownState __attribute__((init_priority(101)));
#endif

} // namespace

AFX_MODULE_STATE* AfxGetStaticModuleState() {
    return &ownState;
}

// A program's is never called: its state stays the one that its main thread begins with.
extern "C" BOOL WINAPI DllMain(HINSTANCE /*instance*/, DWORD reason, LPVOID /*reserved*/) {
    if (reason == DLL_PROCESS_ATTACH)
        ownState.globalsAreConstructed();
    return TRUE;
}
