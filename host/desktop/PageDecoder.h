// Makes thumbnails out of page files.
#pragma once

#include "host/desktop/Thumbnail.h"

#include <atomic>
#include <string>

namespace host {

/// The first page of a file, made small and turned as the file says it is to be seen, on white where it is transparent.
/// What the system has no decoder for, and pictures of more than 400 million pixels, get a document's icon. A picture
/// that is damaged or has gone gets the icon for that, and so does one that the decoder crashes on.
///
/// The file may be renamed, replaced and deleted meanwhile, as far as its place allows that at all.
///
/// Thread: any.
/// @param path     the full path
/// @param side     how many pixels the thumbnail's longer side may have
/// @param stopped  once it is true the result comes soon, and is of no use
Thumbnail decodePage(const std::wstring& path, int side, const std::atomic<bool>& stopped);

} // namespace host
