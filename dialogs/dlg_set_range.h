#pragma once

#include "image/kep.h"
#include "model/zel_export.h"

#include <wx/dialog.h>

#include <array>

class WXDLLIMPEXP_FWD_CORE wxButton;
class WXDLLIMPEXP_FWD_CORE wxTextCtrl;

namespace zel {

/// @{
/// Asks for a minimum and a maximum, min_limit <= min < max <= max_limit. Present values outside the limits are shown
/// as they are. Limits that do not rise trip an assertion; no range can be accepted then.
/// @param parent                the dialog goes with it
/// @param min_limit, max_limit  what can be entered
/// @param min, max              the present values; changed only by OK
/// @return whether the user ended the dialog with OK; false if a window above it has gone while it was open
ZEL_EXPORT bool GetFloatRangeFromUser(wxWindow* parent, float min_limit, float max_limit, float& min, float& max);
ZEL_EXPORT bool GetLongRangeFromUser(wxWindow* parent, long min_limit, long max_limit, long& min, long& max);
/// @}

/// The dialog of one range, for float and long. Wrong input leaves it open and the variables as they were.
/// @param min, max  must live as long as the dialog is open
template <typename T>
class ZEL_EXPORT SetRangeDlg : public wxDialog {
public:
    /// Shows the present values.
    /// @param parent                the dialog goes with it
    /// @param min_limit, max_limit  the values that can be entered
    /// @param min, max              the present values; changed by OK only
    SetRangeDlg(wxWindow* parent, T min_limit, T max_limit, T& min, T& max);

private:
    void OnOk();

    wxTextCtrl* _min_value_ctrl;
    wxTextCtrl* _max_value_ctrl;
};

/// A range of real numbers.
using SetFloatRangeDlg = SetRangeDlg<float>;
/// A range of whole numbers.
using SetLongRangeDlg = SetRangeDlg<long>;

/// The dialog of three ranges, one a colour channel, for unsigned char and unsigned short. The range of a channel can
/// be copied to the other two where it fits their limits.
template <typename T>
class ZEL_EXPORT SetRGBRangeDlg : public wxDialog {
public:
    using Colour = kep::RGB_generic<T>; ///< three numbers, one a channel

    /// @param parent                the dialog goes with it
    /// @param min_limit, max_limit  of each channel
    /// @param min, max              must live as long as the dialog is open
    SetRGBRangeDlg(wxWindow* parent, const Colour& min_limit, const Colour& max_limit, Colour& min, Colour& max);

private:
    struct Channel {
        wxTextCtrl* minField;
        wxTextCtrl* maxField;
    };

    std::array<Channel, 3> GetChannels() const;
    bool FitsOthers(int channel) const;
    void ApplyToOthers(int channel);
    void OnOk();

    wxTextCtrl* _red_min_value_ctrl;
    wxTextCtrl* _red_max_value_ctrl;
    wxTextCtrl* _green_min_value_ctrl;
    wxTextCtrl* _green_max_value_ctrl;
    wxTextCtrl* _blue_min_value_ctrl;
    wxTextCtrl* _blue_max_value_ctrl;
    wxButton* _red_apply_button;
    wxButton* _green_apply_button;
    wxButton* _blue_apply_button;
    Colour m_minLimit;
    Colour m_maxLimit;
};

extern template class SetRangeDlg<float>;
extern template class SetRangeDlg<long>;
extern template class SetRGBRangeDlg<unsigned char>;
extern template class SetRGBRangeDlg<unsigned short>;

} // namespace zel
