#include "mapping/commands/zel_mappingquestions.h"

#include <wx/frame.h>
#include <wx/numdlg.h>

namespace zel::detail {

std::optional<int> AskForBitdepth(wxFrame* frame, double current, double largest) {
    const long bits = CountBits(SaturateTo<long long>(current));
    const long limit = CountBits(SaturateTo<long long>(largest));
    wxNumberEntryDialog dialog(frame, "Set image bit depth", "Bit depth = ", "Image Bit Depth", bits, 1, limit);
    if (RunModal(dialog) != wxID_OK || dialog.GetValue() == bits)
        return std::nullopt;
    return static_cast<int>(dialog.GetValue());
}

} // namespace zel::detail
