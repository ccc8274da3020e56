// A sequence of operations on the ZIP writer, encoded in bytes. Portable.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace test {

/// Writes an archive on a disk in memory as the bytes say, which choose the pages, the failing operation and
/// the disk's size, and returns what is wrong with the result; empty when nothing is.
std::string runZipOperations(const std::uint8_t* bytes, std::size_t size);

} // namespace test
