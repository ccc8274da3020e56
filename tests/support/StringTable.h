// The texts in a module's resources.
#pragma once

#include <windows.h>

#include <string>

namespace test {

/// All texts of the string table in which the text with that number is, as it is found for a language; empty when
/// there is none.
inline std::wstring stringTable(HMODULE module, UINT textId, LANGID language) {
    // Tables hold sixteen texts each and are numbered from 1.
    HRSRC table = FindResourceExW(module, MAKEINTRESOURCEW(6 /* RT_STRING */),
                                  MAKEINTRESOURCEW(textId / 16 + 1), language);
    if (!table)
        return {};
    return {static_cast<const wchar_t*>(LockResource(LoadResource(module, table))),
            SizeofResource(module, table) / sizeof(wchar_t)};
}

/// A variant of the language that nobody speaks.
constexpr LANGID unusualVariant(LANGID language) {
    return MAKELANGID(PRIMARYLANGID(language), 0x3F);
}

} // namespace test
