// Paths as a person types them on the command line.
#include "host/CommandLinePath.h"

#include <windows.h>

#include <memory>

namespace host {
namespace {

// Wine's code page of Unix file names.
constexpr UINT unixCodePage = 65010;

// Wine offers this beside the Windows functions; Windows does not have it.
using GetDosFileName = wchar_t*(CDECL*)(const char* unixPath);

struct ProcessHeapDeleter {
    void operator()(wchar_t* text) const { HeapFree(GetProcessHeap(), 0, text); }
};

std::wstring fromUnixPath(const std::wstring& path) {
    const auto getDosFileName = reinterpret_cast<GetDosFileName>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_dos_file_name")));
    if (!getDosFileName)
        return path;
    const int size = WideCharToMultiByte(unixCodePage, 0, path.c_str(), -1, nullptr, 0, nullptr, nullptr);
    std::string unixPath(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(unixCodePage, 0, path.c_str(), -1, unixPath.data(), size, nullptr, nullptr);
    const std::unique_ptr<wchar_t, ProcessHeapDeleter> dosPath(getDosFileName(unixPath.c_str()));
    return dosPath ? dosPath.get() : path;
}

} // namespace

std::wstring fullPathOf(const std::wstring& typed) {
    std::wstring path = typed.starts_with(L"/") ? fromUnixPath(typed) : typed;
    std::wstring full(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length =
            GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
        if (length == 0)
            return path;
        const bool complete = length < full.size();
        full.resize(length);
        if (complete)
            return full;
    }
}

} // namespace host
