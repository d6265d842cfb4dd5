#pragma once

#include <vector>

namespace zel::test {

/// All windows on the display, of every program, shown or not.
int CountXWindows();

bool HasWindowManager();

/// Waits until the window manager has dealt with all that the display told it before. Without one, nothing is waited
/// for. @return whether it has within five seconds
bool WaitForWindowManager();

/// The pixels of a part of the screen, row by row, three bytes each. What OpenGL has drawn the toolkit cannot read: it
/// keeps what it has read before.
std::vector<unsigned char> ReadScreen(int x, int y, int width, int height);

} // namespace zel::test
