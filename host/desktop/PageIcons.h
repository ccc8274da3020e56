// What stands for a page that there is no picture of.
#pragma once

#include "host/desktop/Thumbnail.h"

namespace host {

/// A sheet with lines of text.
/// @param side  its height in pixels
Thumbnail documentIcon(int side);

/// A sheet that is torn in two.
Thumbnail brokenIcon(int side);

} // namespace host
