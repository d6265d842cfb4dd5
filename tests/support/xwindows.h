#pragma once

namespace zel::test {

/// All windows on the display, of every program, shown or not.
int CountXWindows();

bool HasWindowManager();

/// Waits until the window manager has dealt with all that the display told it before. Without one, nothing is waited
/// for. @return whether it has within five seconds
bool WaitForWindowManager();

} // namespace zel::test
