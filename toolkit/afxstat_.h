// Module state: which DLL or program the code that runs now belongs to.
#pragma once

#include "ToolkitApi.h"

#include <windows.h>

class CWinApp;

/// What the toolkit keeps per module (a DLL or the program): its instance, where its resources are, its application
/// object. Constructing it makes it known to AfxFindModuleState(), destroying it takes it away again.
///
/// Each thread has one state that is current; dialogs and strings come from that one. Code that is entered from
/// another module makes its own current first: `AFX_MANAGE_STATE(AfxGetStaticModuleState());`. Messages to a window
/// object arrive with the state current that was so when the object was constructed.
class TOOLKIT_API AFX_MODULE_STATE {
public:
    explicit AFX_MODULE_STATE(HINSTANCE instance);
    AFX_MODULE_STATE(const AFX_MODULE_STATE&) = delete;
    AFX_MODULE_STATE& operator=(const AFX_MODULE_STATE&) = delete;
    ~AFX_MODULE_STATE();

    /// Null until the module's application object is constructed, and again once it is destroyed.
    CWinApp* m_pCurrentWinApp = nullptr;
    HINSTANCE m_hCurrentInstanceHandle;
    HINSTANCE m_hCurrentResourceHandle;
};

/// The state of the module whose code calls this. Each module that links toolkit_module has its own definition.
AFX_MODULE_STATE* AfxGetStaticModuleState();

/// The state that is current on this thread; the program's when none was made current. Never null.
TOOLKIT_API AFX_MODULE_STATE* AfxGetModuleState();

/// Makes the state current on this thread (null: the program's) and gives back what was set before, maybe null.
TOOLKIT_API AFX_MODULE_STATE* AfxSetModuleState(AFX_MODULE_STATE* pNewState);

/// Makes a state current for its own lifetime. They nest.
struct TOOLKIT_API AFX_MAINTAIN_STATE2 {
    explicit AFX_MAINTAIN_STATE2(AFX_MODULE_STATE* pModuleState)
        : m_pPrevModuleState(AfxSetModuleState(pModuleState)) {}
    AFX_MAINTAIN_STATE2(const AFX_MAINTAIN_STATE2&) = delete;
    AFX_MAINTAIN_STATE2& operator=(const AFX_MAINTAIN_STATE2&) = delete;
    ~AFX_MAINTAIN_STATE2() { AfxSetModuleState(m_pPrevModuleState); }

private:
    AFX_MODULE_STATE* m_pPrevModuleState;
};

#define AFX_MANAGE_STATE(p) AFX_MAINTAIN_STATE2 _ctlState(p);
