// For a program that loads DLLs with application objects of their own: finds what belongs to a module, and carries on
// when one has crashed.
#pragma once

#include "ToolkitApi.h"

#include <windows.h>

#include <utility>
#include <vector>

class AFX_MODULE_STATE;
class CWinApp;
class CWnd;
struct SystemCall;

/// The state of the module, from the moment its global objects are constructed until they are destroyed. Null for
/// a module that has none.
TOOLKIT_API AFX_MODULE_STATE* AfxFindModuleState(HMODULE module);

/// The application object of the module, or null. Loading a module only constructs the object: who loads it calls
/// InitInstance() after LoadLibrary has returned, with the module's state current, and ExitInstance() before
/// FreeLibrary.
TOOLKIT_API CWinApp* AfxFindModuleApp(HMODULE module);

/// What the toolkit keeps about this thread and all application objects, as it is when this is constructed. For a
/// program that carries on after it has abandoned a call into a module, because of a crash, so that no destructor of
/// that call has run.
class TOOLKIT_API AfxThreadSnapshot {
public:
    AfxThreadSnapshot();

    /// Takes back what was begun since and not ended: the module state of then is current, no window is being created
    /// and no message handled any more, and each EnableModeless(FALSE) has its TRUE.
    void restore() const;

private:
    AFX_MODULE_STATE* moduleState;
    MSG currentMessage;
    CWnd* windowBeingCreated;
    SystemCall* innermostCall;
    std::vector<std::pair<CWinApp*, int>> modelessDepths;
};
