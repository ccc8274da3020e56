// Finds the extension in a file name.
#include "SorvaneCommon/ExportUtils/Extension.h"

namespace ExportUtils {

Sorvane::u8string getExtension(const Sorvane::u8string& name) {
    const auto position = name.find_last_of("./\\");
    if (position == Sorvane::u8string::npos || name[position] != '.')
        return {};
    return name.substr(position + 1);
}

} // namespace ExportUtils
