#include "overlay/zel_overlayingmodule.h"

#include "image/zel_assert.h"
#include "image/zel_modaldialog.h"
#include "model/zel_labelpicture.h"
#include "overlay/zel_overlayingevents.h"

#include <wx/colordlg.h>
#include <wx/frame.h>

namespace zel {

namespace {

struct Entry {
    int offset; ///< below 0 for a separator
    const char* label;
    const char* help;
    wxItemKind kind;
};

constexpr Entry separator{-1, "", "", wxITEM_SEPARATOR};

constexpr Entry entries[] = {
    {zel_OE_ENABLE, "&Enable\tCtrl-1", "Enable/disable overlaying", wxITEM_CHECK},
    separator,
    {zel_OE_COMPONENTS, "&Components\tCtrl-2", "Overlay components (zero transparency)", wxITEM_RADIO},
    {zel_OE_BOUNDARY, "&Boundary\tCtrl-3", "Overlay boundary (full transparency)", wxITEM_RADIO},
    separator,
    {zel_OE_MORE_TRANSPARENT, "&Increase transparency\tCtrl-4", "Increase overlay transparency", wxITEM_NORMAL},
    {zel_OE_LESS_TRANSPARENT, "D&ecrease transparency\tCtrl-5", "Decrease overlay transparency", wxITEM_NORMAL},
    separator,
    {zel_OE_DEFAULT_PALETTE, "&Default palette\tCtrl-6", "Use default palette", wxITEM_CHECK},
    {zel_OE_USER_COLOUR, "&User-defined colour\tCtrl-7", "Use selected colour", wxITEM_CHECK},
    separator,
    {zel_OE_CHOOSE_COLOUR, "&Choose colour...\tCtrl-8", "Select user-defined colour", wxITEM_NORMAL},
    separator,
    {zel_OE_RELOAD, "&Reload\tCtrl-R", "Reload", wxITEM_NORMAL},
};

/// Lets the radio entries be chosen again and again. They do not follow what other entries do, so the one with the mark
/// still has something to say; but GTK's port of the toolkit swallows a click on an entry that has its mark. It tells
/// so by a note of its own, which is taken away here while the mark on the screen stays.
void LetRadioEntriesRepeat(wxMenu& menu) {
#ifdef __WXGTK__
    for (wxMenuItem* const item : menu.GetMenuItems())
        if (item->GetKind() == wxITEM_RADIO)
            item->wxMenuItemBase::Check(false);
#else
    wxUnusedVar(menu);
#endif
}

Palette MakeLabelPalette(bool isDefault, const wxColour& colour) {
    Palette palette;
    if (isDefault)
        CreatePalette(zel_whiteFirstPalette, palette);
    else if (colour.IsOk())
        palette.push_back({colour.Red(), colour.Green(), colour.Blue()});
    else
        palette.emplace_back(); // black for a colour that is none, rather than no palette
    return palette;
}

} // namespace

template <typename L, typename V>
zel_OverlayingModule<L, V>::zel_OverlayingModule(wxFrame* frame) {
    SetFrame(frame);
    SetPal();
}

template <typename L, typename V>
wxMenu* zel_OverlayingModule<L, V>::CreateMenu(int& id) {
    zel_ASSERT(GetMenuId(0) == 0, "overlaying", "zel::zel_OverlayingModule::CreateMenu");
    if (GetMenuId(0) != 0)
        return m_menu;
    ++id;
    SetFirstMenuId(id);
    m_menu = new wxMenu;
    for (const Entry& entry : entries)
        m_menu->Append(entry.offset < 0 ? int{wxID_SEPARATOR} : GetMenuId(entry.offset), entry.label, entry.help,
                       entry.kind);
    id = GetMenuId(zel_OE_LAST);
    Bind(wxEVT_MENU, &zel_OverlayingModule::OnOverlaying, this, GetMenuId(0), id);
    Bind(wxEVT_UPDATE_UI, &zel_OverlayingModule::OnUpdateUI, this, GetMenuId(0), id);
    return m_menu;
}

template <typename L, typename V>
kep::RGB_generic<unsigned char> zel_OverlayingModule<L, V>::GetLabelColour(L label, std::size_t) const {
    return this->GetPalette()[label % this->GetPaletteSize()];
}

template <typename L, typename V>
void zel_OverlayingModule<L, V>::SetPal() {
    this->SetPalette(MakeLabelPalette(m_defaultPalette, m_userColour));
}

template <typename L, typename V>
void zel_OverlayingModule<L, V>::ChangeColour() {
    const wxWeakRef<wxEvtHandler> self(this);
    wxColourData data;
    if (m_userColour.IsOk())
        data.SetColour(m_userColour);
    wxColourDialog dialog(GetFrame(), &data);
    if (RunModal(dialog) != wxID_OK || !self)
        return;
    m_userColour = dialog.GetColourData().GetColour();
    m_defaultPalette = false;
    if (m_menu)
        m_menu->Check(GetMenuId(zel_OE_USER_COLOUR), true);
    SetPal();
}

template <typename L, typename V>
void zel_OverlayingModule<L, V>::RunCommand(int offset) {
    switch (offset) {
    case zel_OE_ENABLE:
        this->SetOverlaying(!this->GetOverlaying());
        break;
    case zel_OE_COMPONENTS:
    case zel_OE_BOUNDARY:
        this->SetOverlaying(true);
        this->SetTransparency(offset == zel_OE_BOUNDARY ? 1.0F : 0.0F);
        break;
    case zel_OE_DEFAULT_PALETTE:
    case zel_OE_USER_COLOUR:
        m_defaultPalette = offset == zel_OE_DEFAULT_PALETTE;
        SetPal();
        break;
    case zel_OE_CHOOSE_COLOUR:
        ChangeColour();
        break;
    case zel_OE_MORE_TRANSPARENT:
        this->SetTransparency(IncreaseTransparency(this->GetTransparency()));
        break;
    case zel_OE_LESS_TRANSPARENT:
        this->SetTransparency(DecreaseTransparency(this->GetTransparency()));
        break;
    default:
        break;
    }
}

template <typename L, typename V>
void zel_OverlayingModule<L, V>::OnOverlaying(wxCommandEvent& event) {
    const wxWeakRef<wxEvtHandler> self(this); // the dialog, or a host's handler, may close the frame
    const int offset = event.GetId() - GetMenuId(0);
    if (m_menu)
        LetRadioEntriesRepeat(*m_menu);
    RunCommand(offset);
    if (!self)
        return;
    const bool reload = offset == zel_OE_RELOAD;
    TellOverlayingChanged(reload);
    if (!self || reload || GetFrame() == nullptr || !event.ShouldPropagate())
        return;
    zel_OverlayingCommandEvent told(event);
    told.SetClientData(static_cast<zel_ExtensionModule*>(this));
    GetFrame()->ProcessWindowEvent(told);
}

template <typename L, typename V>
void zel_OverlayingModule<L, V>::TellOverlayingChanged(bool reload) {
    if (GetFrame() == nullptr)
        return;
    zel_OverlayingEvent changed(reload, reload);
    GetFrame()->ProcessWindowEvent(changed);
}

template <typename L, typename V>
void zel_OverlayingModule<L, V>::OnUpdateUI(wxUpdateUIEvent& event) {
    switch (event.GetId() - GetMenuId(0)) {
    case zel_OE_ENABLE:
        event.Check(this->GetOverlaying());
        break;
    case zel_OE_DEFAULT_PALETTE:
        event.Check(m_defaultPalette);
        break;
    case zel_OE_USER_COLOUR:
        event.Check(!m_defaultPalette);
        break;
    default:
        event.Skip(); // so the radio entries do not follow changes of the transparency
        break;
    }
}

#define ZEL_INSTANTIATE(L, V) template class zel_OverlayingModule<L, V>;
KEP_LABEL_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE

} // namespace zel
