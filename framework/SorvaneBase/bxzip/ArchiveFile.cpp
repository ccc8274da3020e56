// A ZIP archive at a path, and what becomes of the file that had the path before.
#include "SorvaneBase/bxzip/ArchiveFile.h"

#include <new>

namespace bxzip {
namespace {

constexpr const char* outOfMemory = "there is not enough memory";

// Names longer than this exist on no file system that Windows uses.
constexpr std::size_t maxNameLength = 255;

// A number that is taken belongs to another program that writes in the same folder.
constexpr int maxTemporaryFiles = 100;
constexpr const wchar_t* temporaryNameStart = L"~bxzip-";
constexpr const wchar_t* temporaryNameEnd = L".tmp";

std::size_t nameStart(const std::wstring& path) {
    return path.find_last_of(L'\\') + 1;
}

std::wstring siblingPath(const std::wstring& path, const wchar_t* suffix, int number) {
    const std::wstring ending = (number > 1 ? L" (" + std::to_wstring(number) + L")" : L"") + suffix;
    const std::size_t start = nameStart(path);
    std::wstring kept = path.substr(0, start) + path.substr(start, maxNameLength - ending.size());
    // Half a character, which a cut may leave, is more than some programs can read.
    if (kept.back() >= 0xD800 && kept.back() <= 0xDBFF)
        kept.pop_back();
    return kept + ending;
}

} // namespace

Status ArchiveFile::create(const std::wstring& path) {
    if (isOpen())
        return Status("the archive is open already");
    Status status;
    try {
        existingWasMoved = false;
        incomplete = false;
        status = createFiles(path);
        if (status.isOk()) {
            writer.emplace(*output);
            status = writer->finish();
        }
    } catch (const std::bad_alloc&) {
        status = Status(outOfMemory);
    }
    if (!status.isOk()) {
        writer.reset();
        if (output && !output->remove().isOk())
            status = Status("the archive cannot be written, and the attempt at it not be removed");
        output.reset();
        replaced.reset();
    }
    return status;
}

Status ArchiveFile::createFiles(const std::wstring& path) {
    if (Status status = storage.getFullPath(path, target); !status.isOk())
        return status;
    const std::wstring folder = target.substr(0, nameStart(target));
    storage.removeAbandoned(folder, temporaryNameStart, temporaryNameEnd);

    temporary.clear();
    if (!storage.exists(target))
        return storage.create(target, output);
    if (Status status = storage.openExisting(target, replaced); !status.isOk())
        return status;
    return createTemporary(folder);
}

Status ArchiveFile::createTemporary(const std::wstring& folder) {
    Status status;
    for (int number = 1; number <= maxTemporaryFiles; ++number) {
        temporary = folder + temporaryNameStart + std::to_wstring(number) + temporaryNameEnd;
        status = storage.create(temporary, output);
        if (status.isOk() || !storage.exists(temporary))
            break;
    }
    return status;
}

Status ArchiveFile::add(const std::string& name, const std::wstring& path) {
    if (!isOpen())
        return Status("the archive is not open");
    Status status;
    try {
        std::unique_ptr<Source> source;
        status = storage.openSource(path, source);
        if (status.isOk())
            status = writer->add(name, *source);
    } catch (const std::bad_alloc&) {
        status = Status(outOfMemory);
    }
    incomplete |= !status.isOk();
    return status;
}

ArchiveFile::Outcome ArchiveFile::close() {
    Outcome outcome;
    if (!isOpen())
        return outcome;

    // What failed once may have been short of something for a moment. The archive is worth a second attempt,
    // because without its directory nobody can read it.
    outcome.status = finish();
    if (!outcome.status.isOk())
        outcome.status = finish();
    if (!temporary.empty()) {
        if (outcome.status.isOk())
            replace(outcome);
        else if (!output->remove().isOk())
            outcome.status = Status("the archive cannot be finished, and its temporary file not be removed");
    }
    writer.reset();
    output.reset();
    replaced.reset();
    return outcome;
}

Status ArchiveFile::finish() {
    try {
        return writer->finish();
    } catch (const std::bad_alloc&) {
        return Status(outOfMemory);
    }
}

void ArchiveFile::replace(Outcome& outcome) {
    // Nobody else's file is at stake where nothing is replaced, so only here is the disk waited for.
    outcome.status = output->flush();
    incomplete |= !outcome.status.isOk();
    Status placed = place(outcome);
    if (!placed.isOk())
        placed = place(outcome);
    if (placed.isOk())
        return;
    outcome.status = placed;
    putAside(outcome);
}

Status ArchiveFile::place(Outcome& outcome) {
    try {
        if (incomplete && outcome.backup.empty())
            if (Status status = keepExisting(outcome.backup); !status.isOk())
                return status;
        // The lock would stand in the way of replacing.
        if (!existingWasMoved)
            replaced.reset();
        return output->moveTo(target, !existingWasMoved);
    } catch (const std::bad_alloc&) {
        return Status(outOfMemory);
    }
}

Status ArchiveFile::keepExisting(std::wstring& backup) {
    const auto link = [&](const std::wstring& name) { return storage.link(target, name); };
    if (useFreeName(L".bak", backup, link).isOk())
        return {};
    const auto move = [&](const std::wstring& name) { return replaced->moveTo(name, false); };
    Status status = useFreeName(L".bak", backup, move);
    existingWasMoved = status.isOk();
    return status;
}

void ArchiveFile::putAside(Outcome& outcome) {
    try {
        if (existingWasMoved && replaced->moveTo(target, false).isOk())
            outcome.backup.clear();
        const auto move = [&](const std::wstring& name) { return output->moveTo(name, false); };
        if (useFreeName(L".new", outcome.aside, move).isOk())
            return;
    } catch (const std::bad_alloc&) {
        outcome.status = Status(outOfMemory);
    }
    outcome.aside = std::move(temporary);
}

template <class Attempt>
Status ArchiveFile::useFreeName(const wchar_t* suffix, std::wstring& path, const Attempt& attempt) {
    for (int number = 1;; ++number) {
        std::wstring candidate = siblingPath(target, suffix, number);
        Status status = attempt(candidate);
        if (!status.isOk() && storage.exists(candidate))
            continue;
        if (status.isOk())
            path = std::move(candidate);
        return status;
    }
}

} // namespace bxzip
