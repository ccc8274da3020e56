// A component that takes one reference too many.
#include "afxwin.h"
#include "components/TestFactory.h"

namespace {

class LeakingApp : public CWinApp {
public:
    BOOL InitInstance() override {
        registerTestFactory("leaked")->addRef();
        return TRUE;
    }
};

LeakingApp app;

} // namespace
