// Creates the component's factories and registers them with the host.
#include "ExportApp.h"

#include "ExportFactories.h"
#include "SorvaneCommon/ExportEnginesManager.h"
#include "bxbase/ReferencedImpl.h"

#include <list>

namespace {

HINSTANCE moduleInstance = nullptr;

// The manager owns the factories; these pointers only remember what to unregister.
std::list<SorvaneCommon::ExportEngineFactory*> registeredFactories;

void registerFactory(SorvaneCommon::ExportEngineFactory* factory) {
    SorvaneCommon::ExportEnginesManager* const manager = SorvaneCommon::getExportEnginesManager();
    if (!manager)
        return;
    manager->registerFactory(factory);
    registeredFactories.push_back(factory);
}

} // namespace

ExportApp theApp;

HINSTANCE getModuleInstance() {
    return moduleInstance;
}

ExportApp::ExportApp() : CWinApp(nullptr) {}

BOOL ExportApp::InitInstance() {
    if (const BOOL started = CWinApp::InitInstance(); !started)
        return started;
    moduleInstance = m_hInstance;

    // Each handle is our creation reference; they go in reverse order when this returns.
    const bxbase::Reference directory(new bxbase::ReferencedImpl<ExportToDirectoryFactory>);
    registerFactory(directory.get());
    const bxbase::Reference mail(new bxbase::ReferencedImpl<ExportToMailFactory>);
    registerFactory(mail.get());
    const bxbase::Reference zip(new bxbase::ReferencedImpl<ExportToZipFactory>);
    registerFactory(zip.get());
    return TRUE;
}

int ExportApp::ExitInstance() {
    if (SorvaneCommon::ExportEnginesManager* const manager = SorvaneCommon::getExportEnginesManager()) {
        while (!registeredFactories.empty()) {
            manager->unregisterFactory(registeredFactories.front());
            registeredFactories.pop_front();
        }
    }
    CWinApp::ExitInstance();
    return 0;
}
