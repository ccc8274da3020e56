// Watches the calls that a module makes of another module's function.
#include "support/ImportHook.h"

#include <cstddef>
#include <cstring>
#include <stdexcept>
#include <string>

namespace test {
namespace {

void** findSlot(const char* function, const wchar_t* module) {
    auto* const base = reinterpret_cast<std::byte*>(GetModuleHandleW(module));
    const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    const auto& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    const auto* library = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + directory.VirtualAddress);
    for (; library->Name; ++library) {
        const auto* names = reinterpret_cast<const IMAGE_THUNK_DATA*>(base + library->OriginalFirstThunk);
        auto* slots = reinterpret_cast<void**>(base + library->FirstThunk);
        for (; names->u1.AddressOfData; ++names, ++slots) {
            if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal))
                continue;
            const auto* name = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + names->u1.AddressOfData);
            if (!std::strcmp(reinterpret_cast<const char*>(name->Name), function))
                return slots;
        }
    }
    throw std::runtime_error(std::string("there is no import of ") + function);
}

} // namespace

ImportHook::ImportHook(const char* function, void* replacement, const wchar_t* module)
    : slot(findSlot(function, module)), original(*slot) {
    write(slot, replacement);
}

ImportHook::~ImportHook() {
    write(slot, original);
}

void ImportHook::write(void** slot, void* function) {
    DWORD before = 0;
    VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &before);
    *slot = function;
    VirtualProtect(slot, sizeof *slot, before, &before);
}

} // namespace test
