// The pieces of the names that the engines give to pages.
#pragma once

#include "SorvaneBase/StringTypes.h"

#include <cstddef>
#include <cstdint>

/// How many decimal digits the number has: 9 has one, 10 has two, and 0 has none.
std::uint32_t countDecimalDigits(std::size_t number);

/// The number in decimal, filled with zeros on the left to the width; a longer one is written whole.
Sorvane::u8string paddedNumber(std::uint32_t number, std::uint32_t width);

/// The extension with exactly one dot in front, or nothing for an empty one.
Sorvane::u8string dottedExtension(const Sorvane::u8string& extension);
