// A disk that fails when a test wants it to. Portable.
#pragma once

#include "SorvaneBase/bxzip/Storage.h"

#include <memory>
#include <string>

namespace test {

/// Which operation fails.
struct FaultPlan {
    enum class Operation {
        Open,
        State,
        Read,
        ShortRead,
        Change,       ///< a read gives other bytes, and the page's state tells that it changed
        HiddenChange, ///< the same, with the state as before, in a page that others may write to
        Write,
        SetSize,
        Flush,
        Link,
        Move,
        Remove,
        Kill ///< any operation, and all that follow: nothing has an effect any more
    };
    static constexpr Operation all[] = {Operation::Open,      Operation::State,   Operation::Read,
                                        Operation::ShortRead, Operation::Change,  Operation::HiddenChange,
                                        Operation::Write,     Operation::SetSize, Operation::Flush,
                                        Operation::Link,      Operation::Move,    Operation::Remove};

    Operation operation;
    int number;       ///< the how manieth of its kind, from 1
    bool once = true; ///< otherwise all that follow fail too
    int seen = 0;     ///< how many of its kind there were

    bool strikes(Operation kind) {
        const bool isMadeByReading =
            kind == Operation::ShortRead || kind == Operation::Change || kind == Operation::HiddenChange;
        if (kind != operation && (operation != Operation::Kill || isMadeByReading))
            return false;
        ++seen;
        return once ? seen == number : seen >= number;
    }
};

/// Passes everything to another storage except what the plan lets fail. A failing write still writes half of
/// its bytes, as a disk does that becomes full, and as one that a kill cuts short.
class FaultyStorage : public bxzip::Storage {
public:
    FaultyStorage(bxzip::Storage& inner, FaultPlan& plan) : inner(inner), plan(plan) {}

    bxzip::Status openSource(const std::wstring& path, std::unique_ptr<bxzip::Source>& source) override;
    bxzip::Status create(const std::wstring& path, std::unique_ptr<bxzip::Output>& file) override;
    bxzip::Status openExisting(const std::wstring& path, std::unique_ptr<bxzip::Output>& file) override;
    bool exists(const std::wstring& path) override { return inner.exists(path); }
    bxzip::Status link(const std::wstring& path, const std::wstring& secondPath) override;
    void removeAbandoned(const std::wstring& folder, const std::wstring& nameStart,
                         const std::wstring& nameEnd) override {
        inner.removeAbandoned(folder, nameStart, nameEnd);
    }
    bxzip::Status getFullPath(const std::wstring& path, std::wstring& fullPath) override {
        return inner.getFullPath(path, fullPath);
    }

private:
    bxzip::Storage& inner;
    FaultPlan& plan;
};

} // namespace test
