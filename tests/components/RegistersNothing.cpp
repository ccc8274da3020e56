// A component that starts and has nothing to offer.
#include "afxwin.h"

namespace {

CWinApp app;

} // namespace
