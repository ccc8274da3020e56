// How a picture is to be turned.
#pragma once

#include <windows.h>

namespace host {

/// What a TIFF file says of its first page, or a JPEG file in its EXIF data: a number from 1, as it is, to 8. What does
/// not say, or is no such file, is 1. The file's position is its start afterwards.
///
/// Read from the bytes, because not every decoder of the system tells, and one that does needs its own name for it.
unsigned orientationOf(HANDLE file);

} // namespace host
