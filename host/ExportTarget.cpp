// Chooses the kind of export.
#include "host/ExportTarget.h"

#include "host/DirectoryTarget.h"

namespace host {

std::unique_ptr<ExportTarget> makeExportTarget(const Options& options) {
    return std::make_unique<DirectoryTarget>(options.toDirectory);
}

} // namespace host
