// Splits a text at a separator.
#pragma once

#include "SorvaneBase/Api.h"
#include "SorvaneBase/StringTypes.h"

#include <list>

namespace bxparse {

/// Appends the pieces of `text` between the separators to `pieces`, in order, empty ones included. n
/// separators give n + 1 pieces; an empty text gives none. Thread: any.
SORVANEBASE_API void splitString(const Sorvane::u8string& text, std::list<Sorvane::u8string>& pieces,
                                 char separator);

} // namespace bxparse
