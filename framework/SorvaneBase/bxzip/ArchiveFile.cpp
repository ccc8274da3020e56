// A ZIP archive at a path, and what becomes of the file that had the path before.
#include "SorvaneBase/bxzip/ArchiveFile.h"

#include <cstdint>
#include <new>
#include <string_view>

namespace bxzip {
namespace {

constexpr const char* outOfMemory = "there is not enough memory";

// Names longer than this exist on no file system that Windows uses.
constexpr std::size_t maxNameLength = 255;

// A number that is taken belongs to another program that writes to the same path.
constexpr int maxTemporaryFiles = 100;

std::size_t nameStart(const std::wstring& path) {
    return path.find_last_of(L'\\') + 1;
}

// Short whatever the name's length is. Case does not tell files apart.
std::wstring temporaryNameStart(std::wstring_view name) {
    std::uint64_t hash = 14695981039346656037u;
    for (const wchar_t c : name) {
        hash ^= static_cast<std::uint64_t>(c >= L'A' && c <= L'Z' ? c - L'A' + L'a' : c);
        hash *= 1099511628211u;
    }
    std::wstring text = L"~bxzip-";
    for (int shift = 60; shift >= 0; shift -= 4)
        text += L"0123456789abcdef"[hash >> shift & 15];
    return text + L"-";
}

constexpr const wchar_t* temporaryNameEnd = L".tmp";

std::wstring siblingPath(const std::wstring& path, const wchar_t* suffix, int number) {
    const std::wstring ending = (number > 1 ? L" (" + std::to_wstring(number) + L")" : L"") + suffix;
    const std::size_t start = nameStart(path);
    return path.substr(0, start) + path.substr(start, maxNameLength - ending.size()) + ending;
}

} // namespace

Status ArchiveFile::create(const std::wstring& path) {
    if (isOpen())
        return Status("the archive is open already");
    Status status;
    try {
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
    const std::wstring temporaryStart = temporaryNameStart(std::wstring_view(target).substr(folder.size()));
    storage.removeAbandoned(folder, temporaryStart, temporaryNameEnd);

    isReplacing = storage.exists(target);
    if (!isReplacing)
        return storage.create(target, output);

    if (Status status = storage.openExisting(target, replaced); !status.isOk())
        return status;
    Status status;
    for (int number = 1; number <= maxTemporaryFiles; ++number) {
        const std::wstring temporary = folder + temporaryStart + std::to_wstring(number) + temporaryNameEnd;
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
    outcome.status = writer->finish();
    if (!outcome.status.isOk())
        outcome.status = writer->finish();
    const bool finished = outcome.status.isOk();
    if (finished && isReplacing) {
        // Nobody else's file is at stake where nothing is replaced, so only here is the disk waited for.
        outcome.status = output->flush();
        incomplete |= !outcome.status.isOk();
        Status placed = place(outcome);
        if (!placed.isOk())
            placed = place(outcome);
        if (!placed.isOk())
            outcome.status = placed;
        if (!placed.isOk()) {
            try {
                if (replaced && !outcome.backup.empty() && replaced->moveTo(target, false).isOk())
                    outcome.backup.clear();
                if (!moveToFreeName(*output, L".new", outcome.aside).isOk())
                    outcome.aside.clear();
            } catch (const std::bad_alloc&) {
                outcome.status = Status(outOfMemory);
            }
        }
    } else if (isReplacing && !output->remove().isOk()) {
        outcome.status = Status("the archive cannot be finished, and its temporary file not be removed");
    }
    writer.reset();
    output.reset();
    replaced.reset();
    return outcome;
}

Status ArchiveFile::place(Outcome& outcome) {
    try {
        if (!incomplete) {
            // The lock would stand in the way of replacing.
            replaced.reset();
            return output->moveTo(target, true);
        }
        if (outcome.backup.empty())
            if (Status status = moveToFreeName(*replaced, L".bak", outcome.backup); !status.isOk())
                return status;
        return output->moveTo(target, false);
    } catch (const std::bad_alloc&) {
        return Status(outOfMemory);
    }
}

Status ArchiveFile::moveToFreeName(Output& file, const wchar_t* suffix, std::wstring& path) {
    for (int number = 1;; ++number) {
        std::wstring candidate = siblingPath(target, suffix, number);
        Status status = file.moveTo(candidate, false);
        if (status.isOk())
            path = std::move(candidate);
        if (status.isOk() || !storage.exists(candidate))
            return status;
    }
}

} // namespace bxzip
