// Tells pages that are compressed already from those that are worth compressing.
#pragma once

#include "SorvaneBase/bxzip/Storage.h"

namespace bxzip {

/// Looks at the bytes of a file, never at its name: JPEG, PNG, compressed TIFF, PDF, archives and their like
/// count as compressed. A TIFF counts only when each of its images is. Unknown formats do not.
Status isCompressed(Source& source, bool& compressed);

} // namespace bxzip
