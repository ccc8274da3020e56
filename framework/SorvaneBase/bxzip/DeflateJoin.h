// Joins deflate streams that were compressed apart.
#pragma once

#include <cstddef>

namespace bxzip {

/// The bytes by which openDeflateStream may lengthen a stream.
constexpr std::size_t deflateJoinSize = 5;

/// Turns a whole deflate stream into the front part of a longer one: its last block is no longer marked as the
/// last, and an empty stored block brings it to a byte boundary, where the next stream may be put.
/// Compressors of whole buffers do not tell where their last block begins, so the stream is followed block by
/// block; nothing is decompressed on the way.
/// @param stream  the stream, with deflateJoinSize bytes of room behind it
/// @param size    its size; out: the new size
/// False, with the stream as it was, when it is not one whole deflate stream.
bool openDeflateStream(std::byte* stream, std::size_t& size);

} // namespace bxzip
