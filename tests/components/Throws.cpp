// A component that lets an exception out of its start.
#include "afxwin.h"

namespace {

class ThrowingApp : public CWinApp {
public:
    BOOL InitInstance() override { throw 1; }
};

ThrowingApp app;

} // namespace
