// The form of a path in which the Windows file functions accept any length. Internal to SorvaneBase.
#pragma once

#include "SorvaneBase/StringTypes.h"

namespace bxdisk {

/// The path as it is while Windows takes it so; beyond that absolute and behind "\\?\" ("\\?\UNC\" for a
/// network share), with "/" and "." and ".." resolved, because Windows no longer does it for such a path.
Sorvane::pstring longPath(const Sorvane::pstring& path);

/// The path from the root on, with "/" and "." and ".." resolved, without a prefix for its length.
Sorvane::pstring absolutePath(const Sorvane::pstring& path);

} // namespace bxdisk
