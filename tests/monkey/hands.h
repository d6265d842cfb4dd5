#pragma once

// What a hand does to windows: presses, drags, types, changes controls.

#include "tests/monkey/dice.h"

#include <wx/window.h>

#include <string>
#include <vector>

namespace zel::test {

/// Dispatches what is pending, but no longer than that: timers and paints may go on for ever.
void PumpFor(int milliseconds);

/// The window and all windows in it that a user can reach.
std::vector<wxWindow*> ReachableWindows(wxWindow& top);

/// "wxButton 5100".
std::string NameOf(const wxWindow& window);

/// One event of the mouse, of any kind and anywhere near the window, sent to it.
/// @return what it was
std::string SendAnyMouse(wxWindow& window, Dice& dice);
/// A press, some moves and a release. @return what it was. The window may go at each of them.
std::string SendAnyDrag(wxWindow& window, Dice& dice);
/// A key of all that have a use somewhere, and others, with modifiers. Sent as both of the toolkit's events.
std::string SendAnyKey(wxWindow& window, Dice& dice);
/// The real pointer, or the real keyboard.
std::string UseRealInput(wxWindow& window, Dice& dice);
/// Changes a control by any value that a user can give it, or presses it; what is none is dragged over.
/// @return what it was
std::string ChangeControl(wxWindow& control, Dice& dice);

} // namespace zel::test
