// A component that crashes when it starts.
#include "afxwin.h"

namespace {

class CrashingApp : public CWinApp {
public:
    BOOL InitInstance() override {
        *static_cast<volatile int*>(nullptr) = 1;
        return TRUE;
    }
};

CrashingApp app;

} // namespace
