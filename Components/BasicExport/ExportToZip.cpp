// The engine that packs the pages into a ZIP archive.
#include "ExportToZip.h"

#include "EngineCreation.h"
#include "ExportFactories.h"

bool ExportToZipFactory::createEngine(CWnd* parent, bxbase::Reference<SorvaneCommon::ExportEngine>& engine) {
    return createEngineOf<ExportToZip>(parent, engine);
}

ExportToZip::ExportToZip() = default;

ExportToZip::~ExportToZip() = default;

bool ExportToZip::showDialog() {
    // The host goes on to exportData(), whose report tells the user why nothing comes out.
    return true;
}

int ExportToZip::exportData(void*, ExportErrorSink& errors) {
    errors.reportError("Components/BasicExport/ExportToZip", __LINE__, "The ZIP target is not built yet");
    return 1;
}
