// A host whose extensions begin with their dot.
#pragma once

#include "SorvaneBase/StringTypes.h"

namespace ExportUtils {

inline Sorvane::u8string getExtension(const Sorvane::u8string& name) {
    return name.substr(name.rfind('.'));
}

} // namespace ExportUtils
