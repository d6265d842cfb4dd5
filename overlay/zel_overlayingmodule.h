#pragma once

#include "overlay/zel_overlayer.h"
#include "viewer/zel_extensionmodule.h"

#include <wx/colour.h>
#include <wx/menu.h>

namespace zel {

/// Menu entries of an overlaying module, as offsets from its first id.
enum zel_OverlayingEntry : int {
    zel_OE_ENABLE = 0,
    zel_OE_RELOAD = 1,
    zel_OE_COMPONENTS = 2,
    zel_OE_BOUNDARY = 3,
    zel_OE_DEFAULT_PALETTE = 4,
    zel_OE_USER_COLOUR = 5,
    zel_OE_CHOOSE_COLOUR = 6,
    zel_OE_MORE_TRANSPARENT = 7,
    zel_OE_LESS_TRANSPARENT = 8,
    zel_OE_LAST = 9 ///< the last id that a module reserves; it has no entry
};

/// The menu "&Overlaying" of a viewer with labels: to the frame an extension module, to the canvas an overlayer. It
/// keeps what the user has chosen; the buffers are left to derived classes. Exists for the types of KEP_LABEL_TYPES.
///
/// Each command ends in a zel_EVT_OVERLAYING_CHANGED at the frame, and but for "Reload" in a
/// zel_EVT_OVERLAYING_COMMAND for the host, unless the command does not propagate. A module without a frame sends
/// nothing. The frame, and the module with it, may go while the colour is being chosen; the command then ends there.
template <typename L, typename V>
class ZEL_EXPORT zel_OverlayingModule : public zel_ExtensionModule, public zel_Overlayer<L, V> {
public:
    /// With the default palette of 14 colours.
    explicit zel_OverlayingModule(wxFrame* frame);

    /// Takes 10 ids, of which the first is one above the value given, and leaves `id` on the last. To be called once.
    wxMenu* CreateMenu(int& id) override;

    /// Makes the palette by what is chosen: 14 colours, or the user's alone.
    void SetPal();
    /// Lets the user choose a colour, which then is that of all labels. Tells nobody.
    void ChangeColour();

    /// The user's colour, also while the default palette is in use.
    const wxColour& GetColour() const { return m_userColour; }
    /// The palette stays as it is, until the next SetPal.
    void SetColour(const wxColour& colour) { m_userColour = colour; }
    bool IsDefaultPalette() const { return m_defaultPalette; } ///< else all labels have the user's colour
    /// The menu, which is the menu bar's; null before CreateMenu and once it has gone.
    wxMenu* GetMenu() const { return m_menu; }

    /// Runs a command of the menu. @param event  a command with an id of this module
    void OnOverlaying(wxCommandEvent& event);
    void OnUpdateUI(wxUpdateUIEvent& event); ///< sets the marks of the entries that follow the state

protected:
    /// The colour of a label in a buffer: palette[label % palette size]. It is asked once or a few times for each label
    /// of a picture, not for each pixel: an override must depend on its arguments alone.
    virtual kep::RGB_generic<unsigned char> GetLabelColour(L label, std::size_t buffer) const;

private:
    void RunCommand(int offset);
    void TellOverlayingChanged(bool reload);

    bool m_defaultPalette = true;
    wxColour m_userColour{255, 0, 0}; // red; not by name, as the toolkit may not know names of colours yet
    wxWeakRef<wxMenu> m_menu;
};

#define ZEL_DECLARE(L, V) extern template class zel_OverlayingModule<L, V>;
KEP_LABEL_TYPES(ZEL_DECLARE)
#undef ZEL_DECLARE

} // namespace zel
