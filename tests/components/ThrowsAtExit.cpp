// A component that lets an exception out of its end.
#include "afxwin.h"

namespace {

class ThrowingApp : public CWinApp {
public:
    int ExitInstance() override { throw 1; }
};

ThrowingApp app;

} // namespace
