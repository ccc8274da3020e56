// Tells whether a person can see the windows of this program.
#pragma once

namespace host {

/// False where windows work but are drawn nowhere: in a service's session, and under Wine without a display.
/// A dialog that is left to a person there waits for ever.
bool isDesktopVisible();

} // namespace host
