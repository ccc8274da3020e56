// Files on a Windows disk.
#pragma once

#include "SorvaneBase/bxzip/Storage.h"

namespace bxzip {

/// Paths may have any length. A source that another program is writing to can be read; whether it changed
/// meanwhile shows in its state.
class WindowsStorage : public Storage {
public:
    Status openSource(const std::wstring& path, std::unique_ptr<Source>& source) override;
    Status create(const std::wstring& path, std::unique_ptr<Output>& file) override;
    Status openExisting(const std::wstring& path, std::unique_ptr<Output>& file) override;
    Status link(const std::wstring& path, const std::wstring& secondPath) override;
    bool exists(const std::wstring& path) override;
    void removeAbandoned(const std::wstring& folder, const std::wstring& nameStart,
                         const std::wstring& nameEnd) override;
    Status getFullPath(const std::wstring& path, std::wstring& fullPath) override;
};

} // namespace bxzip
