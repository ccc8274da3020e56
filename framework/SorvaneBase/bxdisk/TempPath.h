// Where the user's temporary files go.
#pragma once

#include "SorvaneBase/StringTypes.h"

#include <windows.h>

namespace bxdisk {

/// The path of the user's temporary directory with "\" at its end, however long it is. Empty when the system does not
/// tell; GetLastError() says why.
inline Sorvane::pstring usersTempPath() {
    Sorvane::pstring path(MAX_PATH + 1, L'\0');
    for (;;) {
        const DWORD length = GetTempPathW(static_cast<DWORD>(path.size()), path.data());
        const bool fits = length < path.size();
        path.resize(length);
        if (fits)
            return path;
    }
}

} // namespace bxdisk
