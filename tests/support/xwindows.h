#pragma once

namespace zel::test {

/// All windows on the display, of every program, shown or not.
int CountXWindows();

} // namespace zel::test
