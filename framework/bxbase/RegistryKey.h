// An owned registry key.
#pragma once

#include <windows.h>

#include <memory>
#include <type_traits>

namespace bxbase {

struct RegistryKeyCloser {
    void operator()(HKEY key) const { RegCloseKey(key); }
};

using RegistryKey = std::unique_ptr<std::remove_pointer_t<HKEY>, RegistryKeyCloser>;

} // namespace bxbase
