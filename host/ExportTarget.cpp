// Chooses the kind of export.
#include "host/ExportTarget.h"

#include "host/DirectoryTarget.h"
#include "host/MailTarget.h"
#include "host/ZipTarget.h"

namespace host {

std::string ExportTarget::sentenceFor(const std::string& report) const {
    return "The export to " + destination() + " failed: " + report + ".";
}

std::unique_ptr<ExportTarget> makeExportTarget(const Options& options) {
    if (options.toMail)
        return std::make_unique<MailTarget>(*options.toMail);
    if (options.toZip)
        return std::make_unique<ZipTarget>(*options.toZip);
    return std::make_unique<DirectoryTarget>(options.toDirectory);
}

} // namespace host
