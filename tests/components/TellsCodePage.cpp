// A component that gives the ANSI code page of its process as the reason why it does not start.
#include "afxwin.h"

#include <stdexcept>
#include <string>

namespace {

class TellingApp : public CWinApp {
public:
    BOOL InitInstance() override { throw std::runtime_error("code page " + std::to_string(GetACP())); }
};

TellingApp app;

} // namespace
