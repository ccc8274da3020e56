// A component that crashes when it starts.
#include "afxwin.h"

namespace {

class CrashingApp : public CWinApp {
public:
    BOOL InitInstance() override { __builtin_trap(); }
};

CrashingApp app;

} // namespace
