// The host's localised texts in the form that windows take.
#pragma once

#include <string>

/// The text of the host's language that is current now, looked up afresh.
std::wstring localizedText(const char* section, const char* key);
