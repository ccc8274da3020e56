// Finds texts that do not fit into the window that shows them.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace test {

/// The visible labels and buttons inside a window, at any depth, whose text is larger than the room they have
/// for it or is drawn over the edge of that, and the window itself when its title is wider than its caption. Each
/// is described by identifier, text, size needed and size there is.
///
/// Texts are measured with the control's own font and wrapped where the control wraps them. Fields that scroll
/// what the user enters (edits, lists) are left out.
std::vector<std::string> clippedTexts(HWND window);

} // namespace test
