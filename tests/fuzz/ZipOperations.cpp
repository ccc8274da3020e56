// A sequence of operations on the ZIP writer, encoded in bytes. Portable.
#include "ZipOperations.h"

#include "support/FaultyStorage.h"
#include "support/MemoryStorage.h"
#include "support/ZipJob.h"

#include <algorithm>
#include <limits>

namespace test {
namespace {

constexpr std::size_t maxPages = 40;
constexpr int never = std::numeric_limits<int>::max();

class Input {
public:
    Input(const std::uint8_t* bytes, std::size_t size) : next(bytes), end(bytes + size) {}

    bool isEmpty() const { return next == end; }
    unsigned byte() { return isEmpty() ? 0u : *next++; }
    unsigned number() {
        const unsigned high = byte();
        return high << 8 | byte();
    }
    std::string text(std::size_t count) {
        count = std::min(count, static_cast<std::size_t>(end - next));
        const std::string result(reinterpret_cast<const char*>(next), count);
        next += count;
        return result;
    }

private:
    const std::uint8_t* next;
    const std::uint8_t* end;
};

// Most sizes are small, because the others, which reach beyond the compressor's chunks, take long.
std::string makeContent(Input& input) {
    const unsigned kind = input.byte();
    std::string start = input.text(kind >> 4);
    const std::size_t size = (kind & 12) == 12 ? input.number() * 32u
                             : kind & 8        ? input.number()
                                               : input.byte();
    std::uint32_t noise = input.byte() + 1;
    std::string content = std::move(start);
    content.reserve(std::max(size, content.size()));
    while (content.size() < size) {
        noise ^= noise << 13;
        noise ^= noise >> 17;
        noise ^= noise << 5;
        switch (kind & 3) {
        case 0:
            content.push_back('\0');
            break;
        case 1:
            content.push_back(static_cast<char>(noise));
            break;
        case 2:
            content.push_back(static_cast<char>(240 + noise % 7));
            break;
        default:
            content += "The quick brown fox jumps over page " + std::to_string(noise % 1000);
        }
    }
    return content;
}

/// Two disks: pages are no part of the one that is full.
class Disks : public bxzip::Storage {
public:
    Disks(MemoryStorage& archives, MemoryStorage& pages) : archives(archives), pages(pages) {}

    bxzip::Status openSource(const std::wstring& path, std::unique_ptr<bxzip::Source>& source) override {
        return pages.openSource(path, source);
    }
    bxzip::Status create(const std::wstring& path, std::unique_ptr<bxzip::Output>& file) override {
        return archives.create(path, file);
    }
    bxzip::Status openExisting(const std::wstring& path, std::unique_ptr<bxzip::Output>& file) override {
        return archives.openExisting(path, file);
    }
    bool exists(const std::wstring& path) override { return archives.exists(path); }
    bxzip::Status link(const std::wstring& path, const std::wstring& secondPath) override {
        return archives.link(path, secondPath);
    }
    void removeAbandoned(const std::wstring& folder, const std::wstring& nameStart,
                         const std::wstring& nameEnd) override {
        archives.removeAbandoned(folder, nameStart, nameEnd);
    }
    bxzip::Status getFullPath(const std::wstring& path, std::wstring& fullPath) override {
        return archives.getFullPath(path, fullPath);
    }

private:
    MemoryStorage& archives;
    MemoryStorage& pages;
};

} // namespace

std::string runZipOperations(const std::uint8_t* bytes, std::size_t size) {
    Input input(bytes, size);
    const unsigned settings = input.byte();
    const bool fails = settings & 1;
    const bool diskIsSmall = settings & 4;
    const bool memoryRunsOut = settings & 32;
    FaultPlan plan{FaultPlan::all[input.byte() % std::size(FaultPlan::all)],
                   fails ? static_cast<int>(input.byte()) + 1 : never, (settings & 2) == 0};
    const std::uint64_t room = diskIsSmall ? input.number() * 64u : std::numeric_limits<std::uint32_t>::max();
    AllocationFaults allocationFaults(memoryRunsOut ? static_cast<int>(input.byte()) + 1 : never,
                                      (settings & 2) == 0);

    MemoryStorage disk;
    MemoryStorage pages;
    const std::wstring target = L"C:\\out\\pages.zip";
    std::optional<std::string> old;
    if (settings & 8) {
        old = "the old archive";
        disk.put(target, *old);
    }
    if (settings & 16)
        disk.put(target + L".bak", "someone else's");

    Disks disks(disk, pages);
    FaultyStorage storage(disks, plan);
    disk.capacity = disk.used() + room;

    ZipJob job(storage, target, old, &allocationFaults);
    if (job.create()) {
        for (std::size_t page = 0; page < maxPages && !input.isEmpty(); ++page) {
            const unsigned operation = input.byte();
            const std::wstring path = L"page" + std::to_wstring(page);
            std::string name = operation & 1 ? input.text(operation >> 4) : "Page_" + std::to_string(page);
            if ((operation & 14) == 14) {
                job.setIncomplete();
            } else if ((operation & 14) == 12) {
                job.add(name, L"missing", {});
            } else {
                const std::string content = makeContent(input);
                pages.put(path, content);
                job.add(name, path, content);
            }
        }
        job.close();
    }

    const auto read = [&](const std::wstring& path) -> std::optional<std::string> {
        return disk.exists(path) ? std::optional(disk.get(path)) : std::nullopt;
    };
    // Only an operation that goes on failing may leave no archive.
    const bool mayLackArchive = (fails || memoryRunsOut) && !plan.once;
    std::string fault = job.verdict(read, mayLackArchive);
    if (fault.empty() && settings & 16 && disk.get(target + L".bak") != "someone else's")
        fault = "a file with the backup's name was overwritten";
    std::vector<std::wstring> names;
    for (const auto& [path, file] : disk.files)
        names.push_back(path.substr(path.rfind(L'\\') + 1));
    const bool canRemove = !fails || plan.operation != FaultPlan::Operation::Remove;
    if (fault.empty() && canRemove && job.leavesTemporaryFile(names))
        fault = "a temporary file was left";
    return fault;
}

} // namespace test
