// Pieces of hosts that docs/host-developers.md shows.
#include "docs/HostPieces.h"

#include "SorvaneBase/bxutils/ResourceManager.h"
#include "SorvaneBase/bxutils/SystemLog.h"
#include "host/ComponentModule.h"
#include "host/GuardedExport.h"
#include "host/HostError.h"
#include "host/LanguageFile.h"
#include "host/ThreadLanguage.h"

namespace example {

void LoggedErrors::reportError(const Sorvane::u8string& sourceFile, int line,
                               const Sorvane::u8string& message) {
    ExportErrorSink::reportError(sourceFile, line, message);
    bxutils::getSystemLogFormater()->log(0, message.c_str(), sourceFile.c_str(), line);
}

int exportAndTell(SorvaneCommon::ExportEngine& engine, CWnd& window, std::string& told) {
    LoggedErrors errors;
    try {
        const int result = host::exportGuarded(engine, window, errors);
        if (result == 1)
            told = errors.what(); // the first report; the engine may have shown a message already
        return result;
    } catch (const host::HostError& crash) {
        told = crash.what();
        return 1;
    }
}

bool changeLanguage(const std::wstring& programs, const std::wstring& language,
                    std::unique_ptr<host::ComponentModule>& component, host::EnginesManager& manager) {
    if (!bxutils::getResourceManager()->loadLanguageFile(host::languageFile(programs, language)))
        return false;
    host::setThreadLanguage(language);
    component.reset(); // the names of its factories are those of the language it was loaded in
    component = std::make_unique<host::ComponentModule>(programs + L"\\BasicExport.dll", manager);
    return true;
}

} // namespace example
