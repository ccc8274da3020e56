// Tells what was not added to the pages.
#pragma once

#include "host/desktop/PageCollection.h"

#include <string>
#include <vector>

namespace host {

/// A readable message in the current language: how much was left out, and of the first ones what and why.
std::wstring leftOutText(const std::vector<LeftOut>& leftOut);

} // namespace host
