// The example of the README, as it stands there.
#include "docs/ReadmeHost.h"

#include "SorvaneBase/SorvaneException.h"
#include "SorvaneBase/bxutils/ResourceManager.h"
#include "SorvaneCommon/ExportEngine.h"
#include "SorvaneCommon/ExportEngineFactory.h"
#include "host/ComponentModule.h"
#include "host/EnginesManager.h"
#include "host/GuardedExport.h"
#include "host/HostApplication.h"
#include "host/PageList.h"
#include "host/TemporaryRoot.h"

#include <iostream>

int exportScans(const std::wstring& programs, const std::wstring& scans, CWnd* window) {
    bxutils::getResourceManager()->loadLanguageFile(programs + L"\\lang\\en.ini");
    const host::TemporaryRoot temporaryFiles;
    host::HostApplication application(L"Example\\Scanner");
    host::EnginesManager manager;
    host::ComponentModule component(programs + L"\\BasicExport.dll", manager);

    bxbase::Reference<SorvaneCommon::ExportEngine> engine;
    auto* factory = manager.findFactory("com.brellix.sorvane.exportdata-factory.dir.file");
    if (!factory || !factory->createEngine(window, engine))
        return 1;
    const host::PageList list = host::collectPages({scans}, nullptr);
    for (const auto& page : list.pages)
        engine->addData(page.get());
    if (!engine->showDialog())
        return 2;

    SorvaneException errors;
    const int result = host::exportGuarded(*engine, *window, errors);
    for (const auto& report : errors.getReports())
        std::cerr << report.sourceFile << ":" << report.line << ": " << report.message << "\n";
    return result;
}
