// For a program that loads DLLs with application objects of their own: finds what belongs to a module.
#pragma once

#include "ToolkitApi.h"

#include <windows.h>

class AFX_MODULE_STATE;
class CWinApp;

/// The state of the module, from the moment its global objects are constructed until they are destroyed. Null for
/// a module that has none.
TOOLKIT_API AFX_MODULE_STATE* AfxFindModuleState(HMODULE module);

/// The application object of the module, or null. Loading a module only constructs the object: who loads it calls
/// InitInstance() after LoadLibrary has returned, with the module's state current, and ExitInstance() before
/// FreeLibrary.
TOOLKIT_API CWinApp* AfxFindModuleApp(HMODULE module);
