// A disk in memory, for the ZIP writer's tests. Portable.
#include "support/MemoryStorage.h"

#include <algorithm>
#include <cstring>

namespace test {
namespace {

using bxzip::Status;

class MemorySource : public bxzip::Source {
public:
    explicit MemorySource(std::shared_ptr<MemoryFile> file) : file(std::move(file)) {}

    Status getState(bxzip::SourceState& state) override {
        state = {file->size(), file->changes, {2024, 2, 29, 13, 14, 16}};
        return {};
    }

    bool excludesWriters() const override { return true; }

    Status read(std::uint64_t offset, void* buffer, std::size_t size, std::size_t& count) override {
        const std::uint64_t end = file->size();
        count = offset < end ? static_cast<std::size_t>(std::min<std::uint64_t>(size, end - offset)) : 0;
        file->read(offset, buffer, count);
        return {};
    }

private:
    std::shared_ptr<MemoryFile> file;
};

class MemoryOutput : public bxzip::Output {
public:
    MemoryOutput(MemoryStorage& storage, std::shared_ptr<MemoryFile> file)
        : storage(storage), file(std::move(file)) {
        this->file->isOpenForChange = true;
    }
    ~MemoryOutput() override { file->isOpenForChange = false; }

    Status write(std::uint64_t offset, const void* bytes, std::size_t size) override {
        const std::uint64_t growth = std::max(file->size(), offset + size) - file->size();
        if (growth && (growth > storage.capacity || storage.used() > storage.capacity - growth))
            return Status("the disk is full");
        file->write(offset, bytes, size);
        return {};
    }
    Status setSize(std::uint64_t size) override {
        file->resize(size);
        return {};
    }
    Status flush() override { return {}; }
    Status moveTo(const std::wstring& path, bool replace) override {
        return storage.move(*file, path, replace) ? Status() : Status("the file cannot be renamed");
    }
    Status remove() override {
        storage.remove(*file);
        return {};
    }

private:
    MemoryStorage& storage;
    std::shared_ptr<MemoryFile> file;
};

} // namespace

void MemoryFile::write(std::uint64_t offset, const void* bytes, std::size_t count) {
    const char* from = static_cast<const char*>(bytes);
    length = std::max(length, offset + count);
    ++changes;
    while (count) {
        const std::uint64_t start = offset % blockSize;
        const auto part = static_cast<std::size_t>(std::min<std::uint64_t>(count, blockSize - start));
        const auto found = blocks.find(offset / blockSize);
        const bool zeros = std::all_of(from, from + part, [](char c) { return c == 0; });
        if (zeros && part == blockSize) {
            blocks.erase(offset / blockSize);
        } else if (!zeros || found != blocks.end()) {
            std::vector<char>& block = blocks[offset / blockSize];
            block.resize(blockSize);
            std::memcpy(block.data() + start, from, part);
        }
        from += part;
        offset += part;
        count -= part;
    }
}

void MemoryFile::read(std::uint64_t offset, void* buffer, std::size_t count) const {
    char* to = static_cast<char*>(buffer);
    while (count) {
        const std::uint64_t start = offset % blockSize;
        const auto part = static_cast<std::size_t>(std::min<std::uint64_t>(count, blockSize - start));
        if (const auto found = blocks.find(offset / blockSize); found != blocks.end())
            std::memcpy(to, found->second.data() + start, part);
        else
            std::memset(to, 0, part);
        to += part;
        offset += part;
        count -= part;
    }
}

void MemoryFile::resize(std::uint64_t newSize) {
    ++changes;
    if (newSize < length) {
        blocks.erase(blocks.lower_bound((newSize + blockSize - 1) / blockSize), blocks.end());
        if (const auto last = blocks.find(newSize / blockSize); last != blocks.end())
            std::fill(last->second.begin() + static_cast<std::ptrdiff_t>(newSize % blockSize),
                      last->second.end(), '\0');
    }
    length = newSize;
}

std::string MemoryFile::content() const {
    std::string bytes(static_cast<std::size_t>(length), '\0');
    read(0, bytes.data(), bytes.size());
    return bytes;
}

Status MemoryStorage::openSource(const std::wstring& path, std::unique_ptr<bxzip::Source>& source) {
    const auto found = files.find(path);
    if (found == files.end())
        return Status("no such file");
    source = std::make_unique<MemorySource>(found->second);
    return {};
}

Status MemoryStorage::create(const std::wstring& path, std::unique_ptr<bxzip::Output>& file) {
    if (files.contains(path))
        return Status("the file exists");
    auto created = std::make_shared<MemoryFile>();
    auto opened = std::make_unique<MemoryOutput>(*this, created);
    files[path] = std::move(created);
    file = std::move(opened);
    return {};
}

Status MemoryStorage::openExisting(const std::wstring& path, std::unique_ptr<bxzip::Output>& file) {
    const auto found = files.find(path);
    if (found == files.end() || found->second->isOpenForChange)
        return Status("no such file, or in use");
    file = std::make_unique<MemoryOutput>(*this, found->second);
    return {};
}

Status MemoryStorage::link(const std::wstring& path, const std::wstring& secondPath) {
    const auto found = files.find(path);
    if (!hasLinks || found == files.end() || files.contains(secondPath))
        return Status("the file cannot have the name");
    files[secondPath] = found->second;
    return {};
}

void MemoryStorage::removeAbandoned(const std::wstring& folder, const std::wstring& nameStart,
                                    const std::wstring& nameEnd) {
    std::erase_if(files, [&](const auto& entry) {
        return bxzip::isNumberedName(entry.first, folder + nameStart, nameEnd) &&
               !entry.second->isOpenForChange;
    });
}

Status MemoryStorage::getFullPath(const std::wstring& path, std::wstring& fullPath) {
    fullPath = path;
    return {};
}

void MemoryStorage::put(const std::wstring& path, const std::string& bytes) {
    files[path] = std::make_shared<MemoryFile>();
    files[path]->write(0, bytes.data(), bytes.size());
}

std::string MemoryStorage::get(const std::wstring& path) const {
    const auto found = files.find(path);
    return found == files.end() ? std::string() : found->second->content();
}

bool MemoryStorage::move(const MemoryFile& file, const std::wstring& path, bool replace) {
    const auto taken = files.find(path);
    if (taken != files.end() && (!replace || taken->second->isOpenForChange))
        return false;
    const auto self =
        std::find_if(files.begin(), files.end(), [&](const auto& f) { return f.second.get() == &file; });
    if (self == files.end())
        return false;
    const std::shared_ptr<MemoryFile> kept = self->second;
    files.erase(self);
    files[path] = kept;
    return true;
}

void MemoryStorage::remove(const MemoryFile& file) {
    std::erase_if(files, [&](const auto& f) { return f.second.get() == &file; });
}

std::uint64_t MemoryStorage::used() const {
    std::uint64_t sum = 0;
    for (const auto& [path, file] : files)
        sum += file->size();
    return sum;
}

} // namespace test
