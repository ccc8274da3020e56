// Writes a ZIP archive from files.
#include "SorvaneBase/bxzip/ZipWriterPtr.h"

#include "SorvaneBase/Conversions.h"
#include "SorvaneBase/bxutils/SystemLog.h"
#include "SorvaneBase/bxzip/ArchiveFile.h"
#include "SorvaneBase/bxzip/WindowsStorage.h"

#include <new>

namespace bxzip {
namespace {

void logFailure(const std::string& message, int line) noexcept {
    bxutils::getSystemLogFormater()->log(0, message.c_str(), "SorvaneBase/bxzip/ZipWriterPtr", line);
}

std::string utf8(const std::wstring& text) {
    Sorvane::u8string result;
    Sorvane::c_u16u8(result, text);
    return result;
}

std::wstring wide(const std::string& text) {
    std::wstring result;
    Sorvane::c_u8u16(result, text);
    return result;
}

} // namespace

struct ZipWriterPtr::State {
    WindowsStorage storage;
    ArchiveFile archive{storage};
    std::string path;
};

ZipWriterPtr::ZipWriterPtr(std::nullptr_t) {}

ZipWriterPtr::~ZipWriterPtr() {
    if (!state)
        return;
    try {
        const ArchiveFile::Outcome outcome = state->archive.close();
        if (!outcome.status.isOk())
            logFailure("Closing \"" + state->path + "\" failed: " + outcome.status.text(), __LINE__);
        if (!outcome.backup.empty())
            logFailure("\"" + state->path + "\" is incomplete; the file it replaces was kept as \"" +
                           utf8(outcome.backup) + "\"",
                       __LINE__);
        if (!outcome.aside.empty())
            logFailure("The new archive was left as \"" + utf8(outcome.aside) + "\"", __LINE__);
    } catch (const std::bad_alloc&) {
        logFailure("Closing an archive ran out of memory", __LINE__);
    }
}

bool ZipWriterPtr::createZipFile(const Sorvane::u8string& path) {
    try {
        if (state)
            return false;
        auto fresh = std::make_unique<State>();
        fresh->path = path;
        if (const Status status = fresh->archive.create(wide(path)); !status.isOk()) {
            logFailure("\"" + path + "\" cannot be created: " + status.text(), __LINE__);
            return false;
        }
        state = std::move(fresh);
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

bool ZipWriterPtr::addItemFromFile(const Sorvane::u8string& entryName, const Sorvane::u8string& filePath) {
    if (!state)
        return false;
    try {
        const Status status = state->archive.add(entryName, wide(filePath));
        if (!status.isOk())
            logFailure("\"" + filePath + "\" cannot be added to \"" + state->path + "\": " + status.text(),
                       __LINE__);
        return status.isOk();
    } catch (const std::bad_alloc&) {
        state->archive.setIncomplete();
        return false;
    }
}

void ZipWriterPtr::setIncomplete() {
    if (state)
        state->archive.setIncomplete();
}

} // namespace bxzip
