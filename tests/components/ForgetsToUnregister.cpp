// A component that leaves its factory with the manager when it goes.
#include "afxwin.h"
#include "components/TestFactory.h"

namespace {

class ForgetfulApp : public CWinApp {
public:
    BOOL InitInstance() override {
        registerTestFactory("forgotten");
        return TRUE;
    }
};

ForgetfulApp app;

} // namespace
