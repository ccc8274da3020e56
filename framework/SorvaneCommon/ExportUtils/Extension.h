// File-name extensions.
#pragma once

#include "SorvaneBase/StringTypes.h"
#include "SorvaneCommon/Api.h"

namespace ExportUtils {

/// The extension of the last path component of `name`, without the dot and in its own letter case; empty when
/// there is none. Both separators count. Thread: any.
SORVANECOMMON_API Sorvane::u8string getExtension(const Sorvane::u8string& name);

} // namespace ExportUtils
