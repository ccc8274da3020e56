// A component that lets something out of its start that is no exception object.
#include "afxwin.h"

namespace {

class ThrowingApp : public CWinApp {
public:
    BOOL InitInstance() override { throw 1; }
};

ThrowingApp app;

} // namespace
