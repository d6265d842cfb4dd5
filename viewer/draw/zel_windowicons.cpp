#include "viewer/draw/zel_windowicons.h"

#include <wx/bitmap.h>
#include <wx/icon.h>
#include <wx/iconbndl.h>
#include <wx/image.h>
#include <wx/toplevel.h>

namespace zel {

namespace {

wxIcon WithAlpha(const wxIcon& icon) {
    wxBitmap bitmap;
    bitmap.CopyFromIcon(icon);
    wxImage picture = bitmap.ConvertToImage();
    picture.InitAlpha(); // takes the mask
    wxIcon made;
    made.CopyFromBitmap(wxBitmap(picture));
    return made;
}

} // namespace

void SetWindowIcons(wxTopLevelWindow& window, const wxIconBundle& icons) {
    wxIconBundle unmasked;
    for (std::size_t i = 0; i < icons.GetIconCount(); ++i) {
        const wxIcon icon = icons.GetIconByIndex(i);
        unmasked.AddIcon(icon.IsOk() && icon.GetMask() != nullptr ? WithAlpha(icon) : icon);
    }
    window.SetIcons(unmasked);
}

} // namespace zel
