// The engine that hands the pages to the mail client.
#include "ExportToMail.h"

#include "EngineCreation.h"
#include "ExportFactories.h"

bool ExportToMailFactory::createEngine(CWnd* parent, bxbase::Reference<SorvaneCommon::ExportEngine>& engine) {
    return createEngineOf<ExportToMail>(parent, engine);
}

ExportToMail::ExportToMail() = default;

ExportToMail::~ExportToMail() = default;

bool ExportToMail::showDialog() {
    // The host goes on to exportData(), whose report tells the user why nothing comes out.
    return true;
}

int ExportToMail::exportData(void*, ExportErrorSink& errors) {
    errors.reportError("Components/BasicExport/ExportToMail", __LINE__, "The mail target is not built yet");
    return 1;
}
