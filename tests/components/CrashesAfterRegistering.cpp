// A component that crashes when it starts, with half of its work done.
#include "afxwin.h"
#include "components/TestFactory.h"

namespace {

class CrashingApp : public CWinApp {
public:
    BOOL InitInstance() override {
        registerTestFactory("half made");
        __builtin_trap();
    }
};

CrashingApp app;

} // namespace
