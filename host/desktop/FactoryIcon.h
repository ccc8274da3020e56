// The icons of export targets, in the size in which they are shown.
#pragma once

#include "SorvaneCommon/ExportEngineFactory.h"

#include <windows.h>

namespace host {

/// The factory's icon, stretched to a square; null when it has none. The caller destroys it.
HICON factoryIcon(const SorvaneCommon::ExportEngineFactory& factory, int size);

} // namespace host
