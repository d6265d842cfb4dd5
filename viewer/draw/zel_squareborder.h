#pragma once

namespace zel {

/// Has the toolkit draw the borders of windows with square corners; those of its controls stay the theme's. Themes
/// round them, and a round border hides pixels of the picture. Once is enough; without GTK it does nothing.
void SquareBorders();

} // namespace zel
