// A component that gives up half-way through its start and does not clean up.
#include "afxwin.h"
#include "components/TestFactory.h"

namespace {

class RefusingApp : public CWinApp {
public:
    BOOL InitInstance() override {
        registerTestFactory("half");
        return FALSE;
    }
};

RefusingApp app;

} // namespace
