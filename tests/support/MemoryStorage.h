// A disk in memory, for the ZIP writer's tests. Portable.
#pragma once

#include "SorvaneBase/bxzip/Storage.h"

#include <cstdint>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace test {

/// The bytes of a file. Blocks of zeros take no memory, so files may be huge.
class MemoryFile {
public:
    void write(std::uint64_t offset, const void* bytes, std::size_t count);
    void read(std::uint64_t offset, void* buffer, std::size_t count) const;
    void resize(std::uint64_t newSize);
    std::uint64_t size() const { return length; }
    std::string content() const;

    std::uint64_t changes = 0;
    bool isOpenForChange = false;

private:
    static constexpr std::uint64_t blockSize = std::uint64_t{64} << 10;

    std::uint64_t length = 0;
    std::map<std::uint64_t, std::vector<char>> blocks;
};

/// Files by their paths, which are taken as they are. Files open for change are locked as on Windows.
class MemoryStorage : public bxzip::Storage {
public:
    bxzip::Status openSource(const std::wstring& path, std::unique_ptr<bxzip::Source>& source) override;
    bxzip::Status create(const std::wstring& path, std::unique_ptr<bxzip::Output>& file) override;
    bxzip::Status openExisting(const std::wstring& path, std::unique_ptr<bxzip::Output>& file) override;
    bool exists(const std::wstring& path) override { return files.contains(path); }
    bxzip::Status link(const std::wstring& path, const std::wstring& secondPath) override;
    void removeAbandoned(const std::wstring& folder, const std::wstring& nameStart,
                         const std::wstring& nameEnd) override;
    bxzip::Status getFullPath(const std::wstring& path, std::wstring& fullPath) override;

    void put(const std::wstring& path, const std::string& bytes);
    std::string get(const std::wstring& path) const;

    /// Renames a file; false when it is not there, or the name is taken and must not be replaced.
    virtual bool move(const MemoryFile& file, const std::wstring& path, bool replace);
    void remove(const MemoryFile& file);

    std::map<std::wstring, std::shared_ptr<MemoryFile>> files;

    /// Whether a file can have a second name.
    bool hasLinks = true;

    /// What all files together may take; writing more fails as a full disk does.
    std::uint64_t capacity = std::numeric_limits<std::uint64_t>::max();
    std::uint64_t used() const;
};

} // namespace test
