// A component that crashes when it ends, its factory still there.
#include "afxwin.h"
#include "components/TestFactory.h"

namespace {

class CrashingApp : public CWinApp {
public:
    BOOL InitInstance() override {
        registerTestFactory("left behind");
        return TRUE;
    }

    int ExitInstance() override { __builtin_trap(); }
};

CrashingApp app;

} // namespace
