// A DLL with module state, an application object and resources of its own.
#include "afxwin.h"

#include "../resource.h"

namespace {

class TestModuleApp : public CWinApp {
public:
    TestModuleApp() : CWinApp(nullptr), stateAtConstruction(AfxGetModuleState()) {}

    BOOL InitInstance() override {
        isInitialised = true;
        return CWinApp::InitInstance();
    }

    AFX_MODULE_STATE* stateAtConstruction;
    bool isInitialised = false;
};

TestModuleApp theApp;

} // namespace

extern "C" __declspec(dllexport) AFX_MODULE_STATE* ownState() {
    return AfxGetStaticModuleState();
}

extern "C" __declspec(dllexport) AFX_MODULE_STATE* stateWhenConstructed() {
    return theApp.stateAtConstruction;
}

extern "C" __declspec(dllexport) bool isInitialised() {
    return theApp.isInitialised;
}

// Reads its own text whatever module is current, and lets the caller look while its state is.
extern "C" __declspec(dllexport) void readGreeting(CString* greeting, void (*whileCurrent)()) {
    AFX_MANAGE_STATE(AfxGetStaticModuleState());
    greeting->LoadString(IDS_GREETING);
    whileCurrent();
}
