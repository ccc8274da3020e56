// Drives an archive from creation to closing and judges what is left on the disk. Portable.
#include "support/ZipJob.h"

#include <algorithm>
#include <stdexcept>

namespace test {

class ZipJob::Armed {
public:
    explicit Armed(AllocationFaults* faults) : faults(faults) {
        if (faults)
            faults->arm();
    }
    ~Armed() {
        if (faults)
            faults->disarm();
    }
    Armed(const Armed&) = delete;
    Armed& operator=(const Armed&) = delete;

private:
    AllocationFaults* faults;
};

ZipJob::ZipJob(bxzip::Storage& storage, std::wstring path, std::optional<std::string> old,
               AllocationFaults* faults)
    : faults(faults), archive(storage), path(std::move(path)), old(std::move(old)) {}

bool ZipJob::create() {
    const Armed armed(faults);
    created = archive.create(path).isOk();
    return created;
}

bool ZipJob::add(const std::string& name, const std::wstring& file, const std::string& content) {
    bool added = false;
    {
        const Armed armed(faults);
        added = archive.add(name, file).isOk();
    }
    if (added)
        expected.emplace_back(bxzip::wellFormedUtf8(name), content);
    else
        complete = false;
    return added;
}

void ZipJob::setIncomplete() {
    archive.setIncomplete();
    complete = false;
}

void ZipJob::close() {
    const Armed armed(faults);
    result = archive.close();
}

std::string ZipJob::verdict(const Reader& read, bool mayLackArchive) const {
    const std::optional<std::string> target = read(path);
    if (!created)
        return target == old ? "" : "an archive that could not be created left traces";

    const std::optional<std::string> backup = result.backup.empty() ? std::nullopt : read(result.backup);
    if (old) {
        if (!result.backup.empty() && backup != old)
            return "the backup is not the old file";
        if (target != old && backup != old && !(complete && result.status.isOk()))
            return "the old file is lost";
        if (complete && result.status.isOk() && !result.backup.empty())
            return "a backup without need";
    }
    // Where the new archive lies.
    if (!result.aside.empty()) {
        const std::optional<std::string> aside = read(result.aside);
        return aside ? archiveFault(*aside) : "the archive put aside is not there";
    }
    const bool isInPlace = !old || target != old;
    if (isInPlace && target) {
        const std::string fault = archiveFault(*target);
        return fault.empty() || (mayLackArchive && !result.status.isOk()) ? "" : fault;
    }
    if (result.status.isOk())
        return "closing reported success, and there is no new archive";
    return mayLackArchive ? "" : "there is no new archive";
}

bool ZipJob::leavesTemporaryFile(const std::vector<std::wstring>& names) const {
    return std::any_of(names.begin(), names.end(), [&](const std::wstring& name) {
        return name.starts_with(L"~bxzip-") && !result.aside.ends_with(L"\\" + name);
    });
}

std::string ZipJob::archiveFault(const std::string& bytes) const {
    ZipEntries entries;
    try {
        entries = zipEntries(bytes);
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    if (entries.size() != expected.size())
        return "the archive has " + std::to_string(entries.size()) + " entries instead of " +
               std::to_string(expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        if (entries[i].first != expected[i].first)
            return "entry " + std::to_string(i) + " has another name";
        if (entries[i].second != expected[i].second)
            return "entry " + std::to_string(i) + " has another content";
    }
    return {};
}

} // namespace test
