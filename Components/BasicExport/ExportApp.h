// The component's application object.
#pragma once

#include <afxwin.h>

/// Offers the component's factories to the host from InitInstance to ExitInstance. The host calls both on the
/// thread on which it uses the factories and their engines.
class ExportApp : public CWinApp {
public:
    ExportApp();

    /// Registers the factories with the host's manager, which owns them from then on. Without a manager they
    /// are gone again when this returns, and that is no failure.
    BOOL InitInstance() override;

    /// Unregisters them in the order of their registration.
    /// @return always 0
    int ExitInstance() override;
};

extern ExportApp theApp;

/// The component's own module, in which its resources are found; known from InitInstance on.
HINSTANCE getModuleInstance();
