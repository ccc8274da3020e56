// Looks for controls and commands that cannot be reached with Alt and a letter.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace test {

/// What is wrong with the access keys of a dialog's visible controls: a letter that several have, and a control that
/// takes the focus and has none. Edits and lists have that of the label before them. OK and Cancel, which Enter and
/// Esc press, need none, nor do the other buttons of a group of radio buttons.
std::vector<std::string> wrongAccessKeys(HWND window);

/// The same for each level of a menu.
std::vector<std::string> wrongAccessKeys(HMENU menu);

} // namespace test
