// A host that exports to e-mail and prints whose code has run: a planted MAPI32.DLL or the registered mail client.
// MailingHost guarded|bare TEMPORARY_FOLDER
#include "SorvaneBase/SorvaneException.h"
#include "SorvaneCommon/ExportEngine.h"
#include "SorvaneCommon/ExportEngineFactory.h"
#include "afxwin.h"
#include "bxbase/Reference.h"
#include "host/ComponentModule.h"
#include "host/EnginesManager.h"
#include "host/GuardedExport.h"
#include "host/HostApplication.h"
#include "host/ProgramFolder.h"
#include "host/TemporaryRoot.h"
#include "support/mail/MailClient.h"

#include <windows.h>

#include <cstdio>
#include <string>

int wmain(int argumentCount, wchar_t** arguments) {
    if (argumentCount != 3)
        return 7;
    const host::TemporaryRoot temporaryRoot(arguments[2]);
    const host::HostApplication application(L"BasicExportTests\\MailingHost");
    host::EnginesManager manager;
    const host::ComponentModule component(host::programFolder() + L"\\BasicExport.dll", manager);
    const test::MailClient client;
    CWnd owner;
    bxbase::Reference<SorvaneCommon::ExportEngine> engine;
    manager.findFactory("com.brellix.sorvane.exportdata-factory.mail.file")->createEngine(&owner, engine);
    SorvaneException errors;
    const int result = std::wstring(arguments[1]) == L"guarded" ? host::exportGuarded(*engine, owner, errors)
                                                                : engine->exportData(nullptr, errors);
    if (GetEnvironmentVariableW(L"PLANTED_LIBRARY", nullptr, 0))
        std::printf("the planted library");
    if (client.finished)
        std::printf("the mail client");
    return result;
}
