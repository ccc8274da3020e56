// Tells of a crash of the program with a window.
#pragma once

namespace host {

/// Takes the words for it from the current language; English ones until then.
void prepareCrashWindow();

/// Shows the sentence until the person has read it.
void showCrash(const char* sentence);

} // namespace host
