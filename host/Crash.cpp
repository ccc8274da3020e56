// Where a module has crashed, in words.
#include "host/Crash.h"

#include <cstdint>
#include <cstdio>
#include <cwchar>

namespace host {

std::array<char, MAX_PATH + 100> describe(const Crash& crash) noexcept {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       static_cast<const wchar_t*>(crash.address), &module);
    wchar_t path[MAX_PATH] = L"";
    if (module)
        GetModuleFileNameW(module, path, MAX_PATH);
    char name[MAX_PATH] = "an unknown module";
    if (const wchar_t* separator = std::wcsrchr(path, L'\\'))
        WideCharToMultiByte(CP_UTF8, 0, separator + 1, -1, name, MAX_PATH, nullptr, nullptr);
    // A name that is too long in UTF-8 is cut, and not terminated.
    name[MAX_PATH - 1] = '\0';
    const auto offset =
        reinterpret_cast<std::uintptr_t>(crash.address) - reinterpret_cast<std::uintptr_t>(module);
    std::array<char, MAX_PATH + 100> text;
    std::snprintf(text.data(), text.size(), "exception 0x%08lx at %s+0x%llx", crash.code, name,
                  static_cast<unsigned long long>(offset));
    return text;
}

} // namespace host
