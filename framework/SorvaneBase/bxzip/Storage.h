// What the ZIP writer needs of a disk. The writer knows disks only through these classes, so that it can be
// run on disks of every kind, failing ones included.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace bxzip {

/// The outcome of an operation: fine, or what went wrong, in words for the log.
class [[nodiscard]] Status {
public:
    Status() = default;
    /// @param what  a literal
    /// @param code  the system's error code, 0 when the system has no part in it
    explicit Status(const char* what, std::uint32_t code = 0) : what(what), code(code) {}

    bool isOk() const { return !what; }
    std::string text() const {
        if (!what)
            return {};
        return code ? std::string(what) + ", error " + std::to_string(code) : what;
    }

private:
    const char* what = nullptr;
    std::uint32_t code = 0;
};

/// A moment on the local clock.
struct LocalTime {
    int year = 1980;
    int month = 1;
    int day = 1;
    int hour = 0;
    int minute = 0;
    int second = 0;

    bool operator==(const LocalTime&) const = default;
};

/// What tells a file that was written to from one that was not, as far as the file system tells it.
struct SourceState {
    std::uint64_t size = 0;
    std::uint64_t changeMark = 0; ///< usually another value after a change; its meaning is the storage's own
    LocalTime modified;

    bool operator==(const SourceState&) const = default;
};

/// A file open for reading.
class Source {
public:
    virtual ~Source() = default;

    virtual Status getState(SourceState& state) = 0;

    /// Whether nobody can write to the file while it is open. Where somebody can, the state alone does not tell
    /// that it was done: times of change are coarse, and may be set only when the other program closes the file.
    virtual bool excludesWriters() const = 0;

    /// Reads at an offset. `count` is less than `size` only where the file ends, and 0 behind its end.
    virtual Status read(std::uint64_t offset, void* buffer, std::size_t size, std::size_t& count) = 0;
};

/// A file open for writing. Closed by the destructor.
class Output {
public:
    virtual ~Output() = default;

    /// Writes all of the bytes at an offset; a gap left before it reads as anything.
    virtual Status write(std::uint64_t offset, const void* bytes, std::size_t size) = 0;
    virtual Status setSize(std::uint64_t size) = 0;

    /// Puts what was written onto the disk itself.
    virtual Status flush() = 0;

    /// Renames the open file within its volume. When a file has the name already, it is replaced in one step
    /// or, without `replace`, the move fails. The file stays open.
    virtual Status moveTo(const std::wstring& path, bool replace) = 0;

    /// Deletes the file, at the latest when it is closed.
    virtual Status remove() = 0;
};

/// Whether a name is `start`, decimal digits and `end`.
inline bool isNumberedName(std::wstring_view name, std::wstring_view start, std::wstring_view end) {
    return name.size() > start.size() + end.size() && name.starts_with(start) && name.ends_with(end) &&
           name.substr(0, name.size() - end.size()).find_first_not_of(L"0123456789", start.size()) ==
               std::wstring_view::npos;
}

/// Files by their paths.
class Storage {
public:
    virtual ~Storage() = default;

    virtual Status openSource(const std::wstring& path, std::unique_ptr<Source>& source) = 0;

    /// Makes a file that must not exist yet. Nobody can write, rename or delete it while it is open.
    virtual Status create(const std::wstring& path, std::unique_ptr<Output>& file) = 0;

    /// Opens an existing file without touching its content; the guarantee of create holds. Fails for a folder
    /// and for a file that could not be replaced: read-only, in use.
    virtual Status openExisting(const std::wstring& path, std::unique_ptr<Output>& file) = 0;

    virtual bool exists(const std::wstring& path) = 0;

    /// Gives a file a second name, under which it lives on when it is replaced under the first. Fails when the
    /// name is taken and where the file system knows no such names.
    virtual Status link(const std::wstring& path, const std::wstring& secondPath) = 0;

    /// Deletes the files of a folder whose names are numbered ones and which nobody has open.
    virtual void removeAbandoned(const std::wstring& folder, const std::wstring& nameStart,
                                 const std::wstring& nameEnd) = 0;

    /// The full path with "\" as its only separator. Fails when the path cannot be one of a file.
    virtual Status getFullPath(const std::wstring& path, std::wstring& fullPath) = 0;
};

} // namespace bxzip
