// The components that lie beside a program.
#include "host/desktop/ComponentFolder.h"

#include "AfxModule.h"
#include "SorvaneBase/bxutils/SystemLog.h"
#include "host/GuardedCall.h"
#include "host/HostError.h"
#include "host/Text.h"

#include <algorithm>
#include <cstring>

namespace host {
namespace {

constexpr char contractLibrary[] = "SorvaneCommon.dll";

/// A DLL laid out in memory as it would be to run, but neither run nor connected with others.
class MappedLibrary {
public:
    explicit MappedLibrary(const std::wstring& path)
        : module(LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_AS_IMAGE_RESOURCE)) {}
    ~MappedLibrary() {
        if (module)
            FreeLibrary(module);
    }
    MappedLibrary(const MappedLibrary&) = delete;
    MappedLibrary& operator=(const MappedLibrary&) = delete;

    bool imports(const char* library) const {
        const char* const image = bytes();
        if (!image)
            return false;
        const auto* dosHeader = reinterpret_cast<const IMAGE_DOS_HEADER*>(image);
        const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS64*>(image + dosHeader->e_lfanew);
        if (headers->FileHeader.Machine != IMAGE_FILE_MACHINE_AMD64)
            return false;
        const auto& place = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
        if (!place.VirtualAddress)
            return false;
        const auto* entry = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(image + place.VirtualAddress);
        for (; entry->Name; ++entry)
            if (!_stricmp(image + entry->Name, library))
                return true;
        return false;
    }

private:
    /// The system marks the handle of what is only data in its lowest bits.
    const char* bytes() const {
        return reinterpret_cast<const char*>(reinterpret_cast<ULONG_PTR>(module) & ~3);
    }

    HMODULE module;
};

bool isComponent(const std::wstring& path) {
    const MappedLibrary library(path);
    bool result = false;
    // The numbers in a damaged file lead anywhere.
    callGuarded([&] { result = library.imports(contractLibrary); });
    return result;
}

void logFailure(const std::string& sentence) {
    bxutils::getSystemLogFormater()->log(0, sentence.c_str(), "host/desktop/ComponentFolder", __LINE__);
}

} // namespace

std::vector<std::wstring> componentsIn(const std::wstring& folder) {
    std::vector<std::wstring> paths;
    WIN32_FIND_DATAW entry;
    HANDLE search = FindFirstFileW((folder + L"\\*.dll").c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE)
        return paths;
    do {
        if (const std::wstring path = folder + L'\\' + entry.cFileName; isComponent(path))
            paths.push_back(path);
    } while (FindNextFileW(search, &entry));
    FindClose(search);
    std::ranges::sort(paths, [](const std::wstring& a, const std::wstring& b) {
        return CompareStringOrdinal(a.c_str(), -1, b.c_str(), -1, TRUE) == CSTR_LESS_THAN;
    });
    return paths;
}

ComponentFolder::ComponentFolder(const std::wstring& folder, EnginesManager& manager) {
    for (const std::wstring& path : componentsIn(folder))
        load(path, manager);
}

ComponentFolder::~ComponentFolder() {
    unload();
}

std::vector<std::string> ComponentFolder::unload() {
    std::vector<std::string> failed;
    for (; !components.empty(); components.pop_back()) {
        ComponentModule& component = *components.back();
        const AfxThreadSnapshot toolkit;
        try {
            const auto crash = callGuarded([&] { component.close(); });
            if (!crash)
                continue;
            toolkit.restore();
            component.abandon();
            failed.push_back("A component crashed while ending with " + std::string(describe(*crash).data()) +
                             '.');
        } catch (const HostError& error) {
            failed.emplace_back(error.what());
        }
        logFailure(failed.back());
    }
    return failed;
}

void ComponentFolder::load(const std::wstring& path, EnginesManager& manager) {
    const AfxThreadSnapshot toolkit;
    const std::size_t others = manager.getFactories().size();
    try {
        const auto crash =
            callGuarded([&] { components.push_back(std::make_unique<ComponentModule>(path, manager)); });
        if (!crash)
            return;
        // It stays loaded, but what it has registered may be half made.
        toolkit.restore();
        while (manager.getFactories().size() > others)
            manager.unregisterFactory(manager.getFactories().back().get());
        failureTexts.push_back("The component " + utf8(path) + " cannot be loaded: it crashed with " +
                               describe(*crash).data() + ".");
    } catch (const HostError& error) {
        failureTexts.emplace_back(error.what());
    }
    logFailure(failureTexts.back());
}

} // namespace host
