// Chooses the kind of export.
#include "host/ExportTarget.h"

#include "host/DirectoryTarget.h"
#include "host/ZipTarget.h"

namespace host {

std::unique_ptr<ExportTarget> makeExportTarget(const Options& options) {
    if (options.toZip)
        return std::make_unique<ZipTarget>(*options.toZip);
    return std::make_unique<DirectoryTarget>(options.toDirectory);
}

} // namespace host
