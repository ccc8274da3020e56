// Writes a ZIP archive from files.
#include "SorvaneBase/bxzip/ZipWriterPtr.h"

#include "SorvaneBase/Text.h"
#include "SorvaneBase/bxutils/SystemLog.h"
#include "SorvaneBase/bxzip/ArchiveFile.h"
#include "SorvaneBase/bxzip/WindowsStorage.h"

#include <exception>
#include <new>

namespace bxzip {
namespace {

void log(const char* message, int line) {
    bxutils::getSystemLogFormater()->log(0, message, "SorvaneBase/bxzip/ZipWriterPtr", line);
}

/// Logs the sentence that `compose` returns, or the plain one when there is no memory to put it together.
template <class Compose> void logFailure(int line, const char* plain, const Compose& compose) noexcept {
    try {
        log(compose().c_str(), line);
    } catch (const std::bad_alloc&) {
        log(plain, line);
    }
}

std::string quoted(const std::string& text) {
    return '"' + text + '"';
}

/// A full path as people know it, without the prefix that lets it have any length.
std::string quotedPath(const std::wstring& path) {
    if (path.starts_with(LR"(\\?\UNC\)"))
        return quoted(Sorvane::utf8(L'\\' + path.substr(7)));
    return quoted(Sorvane::utf8(path.starts_with(LR"(\\?\)") ? path.substr(4) : path));
}

} // namespace

struct ZipWriterPtr::State {
    WindowsStorage storage;
    ArchiveFile archive{storage};
    std::string path;
    int exceptionsBefore = std::uncaught_exceptions();
};

ZipWriterPtr::ZipWriterPtr(std::nullptr_t) {}

ZipWriterPtr::~ZipWriterPtr() {
    if (!state)
        return;
    // An exception that ends the export early leaves an archive without all its entries.
    if (std::uncaught_exceptions() > state->exceptionsBefore)
        state->archive.setIncomplete();
    const std::string& path = state->path;
    const ArchiveFile::Outcome outcome = state->archive.close();
    if (!outcome.status.isOk())
        logFailure(__LINE__, "Closing an archive failed",
                   [&] { return "Closing " + quoted(path) + " failed: " + outcome.status.text(); });
    if (!outcome.backup.empty())
        logFailure(__LINE__, "An archive is incomplete; the file it replaces was kept beside it", [&] {
            return quoted(path) + " is incomplete; the file it replaces was kept as " +
                   quotedPath(outcome.backup);
        });
    if (!outcome.aside.empty())
        logFailure(__LINE__, "A new archive was left beside the file that it was to replace",
                   [&] { return "The new archive was left as " + quotedPath(outcome.aside); });
}

bool ZipWriterPtr::createZipFile(const Sorvane::u8string& path) {
    Status status;
    try {
        auto fresh = std::make_unique<State>();
        fresh->path = path;
        status =
            state ? Status("the writer has an archive already") : fresh->archive.create(Sorvane::wide(path));
        if (status.isOk())
            state = std::move(fresh);
    } catch (const std::bad_alloc&) {
        status = Status("there is not enough memory");
    }
    if (!status.isOk())
        logFailure(__LINE__, "An archive cannot be created",
                   [&] { return quoted(path) + " cannot be created: " + status.text(); });
    return status.isOk();
}

bool ZipWriterPtr::addItemFromFile(const Sorvane::u8string& entryName, const Sorvane::u8string& filePath) {
    Status status("no archive was created");
    if (state) {
        try {
            status = state->archive.add(entryName, Sorvane::wide(filePath));
        } catch (const std::bad_alloc&) {
            state->archive.setIncomplete();
            status = Status("there is not enough memory");
        }
    }
    if (!status.isOk())
        logFailure(__LINE__, "A file cannot be added to an archive", [&] {
            return quoted(filePath) + " cannot be added" + (state ? " to " + quoted(state->path) : "") +
                   ": " + status.text();
        });
    return status.isOk();
}

} // namespace bxzip
