// The host's three kinds of text.
#pragma once

#include <string>

namespace Sorvane {

/// UTF-8 text: paths, names, messages and settings values that are handed to host libraries.
using u8string = std::string;

/// Wide text (UTF-16): what dialogs and the registry hold.
using astring = std::wstring;

/// A wide path (UTF-16).
using pstring = std::wstring;

} // namespace Sorvane
