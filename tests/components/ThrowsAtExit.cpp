// A component that lets an exception out of its end, its factory still there.
#include "afxwin.h"
#include "components/TestFactory.h"

namespace {

class ThrowingApp : public CWinApp {
public:
    BOOL InitInstance() override {
        registerTestFactory("left behind");
        return TRUE;
    }

    int ExitInstance() override { throw 1; }
};

ThrowingApp app;

} // namespace
