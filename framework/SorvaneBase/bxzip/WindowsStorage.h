// Files on a Windows disk.
#pragma once

#include "SorvaneBase/bxzip/Storage.h"

namespace bxzip {

/// Paths may have any length. A source that another program has open for writing can be read too.
class WindowsStorage : public Storage {
public:
    Status openSource(const std::wstring& path, std::unique_ptr<Source>& source) override;
    Status create(const std::wstring& path, std::unique_ptr<Output>& file) override;
    Status openExisting(const std::wstring& path, std::unique_ptr<Output>& file) override;
    bool exists(const std::wstring& path) override;
    Status link(const std::wstring& path, const std::wstring& secondPath) override;
    void removeAbandoned(const std::wstring& folder, const std::wstring& nameStart,
                         const std::wstring& nameEnd) override;
    Status getFullPath(const std::wstring& path, std::wstring& fullPath) override;
};

} // namespace bxzip
