#include "dialogs/dlg_set_range.h"

#include "dialogs/controls/zel_boundedvalidator.h"
#include "dialogs/controls/zel_enddialog.h"
#include "dialogs/wdr/dlg_set_range_wdr.h"
#include "dialogs/wdr/zel_layout.h"
#include "image/zel_assert.h"
#include "image/zel_modaldialog.h"

#include <wx/button.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <type_traits>

namespace zel {

namespace {

constexpr long dialogStyle = wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER;

wxString LimitText(float limit) {
    return wxString::Format("%f", static_cast<double>(limit));
}
wxString LimitText(long limit) {
    return wxString::Format("%ld", limit);
}
wxString LimitText(int limit) {
    return wxString::Format("%d", limit);
}

/// What a field holds, as it will be stored. @return false if that is no number
bool Read(wxTextCtrl* field, long& number) {
    return field->GetValue().ToLong(&number);
}
bool Read(wxTextCtrl* field, float& number) {
    auto* const validator = dynamic_cast<RealValidator<float>*>(field->GetValidator());
    return validator != nullptr && validator->ReadNumber(number);
}

/// Whether both fields hold numbers, the lower one in the first. Says so in a message box if not.
template <typename Number>
bool CheckOrder(wxWindow* dialog, wxTextCtrl* minField, wxTextCtrl* maxField) {
    Number min{};
    Number max{};
    if (Read(minField, min) && Read(maxField, max) && min < max)
        return true;
    ShowMessage("Min value must be less than max value.", wxMessageBoxCaptionStr, wxOK | wxCENTRE, dialog);
    return false;
}

template <typename T>
void AssertLimits(T min_limit, T max_limit, const char* function) {
    zel_ASSERT(min_limit < max_limit, "dlg_set_range", function);
}

template <typename T>
bool GetRangeFromUser(wxWindow* parent, T min_limit, T max_limit, T& min, T& max) {
    T newMin = min; // the caller's own may go with the parent
    T newMax = max;
    SetRangeDlg<T> dialog(parent, min_limit, max_limit, newMin, newMax);
    if (RunModal(dialog) != wxID_OK)
        return false;
    min = newMin;
    max = newMax;
    return true;
}

} // namespace

/// Takes a control that the layout has made.
#define ZEL_FIND(pointer, id)                                                                                          \
    pointer = dynamic_cast<decltype(pointer)>(FindWindow(id));                                                         \
    zel_ASSERT(pointer, "dlg_set_range", function)

bool GetFloatRangeFromUser(wxWindow* parent, float min_limit, float max_limit, float& min, float& max) {
    return GetRangeFromUser(parent, min_limit, max_limit, min, max);
}

bool GetLongRangeFromUser(wxWindow* parent, long min_limit, long max_limit, long& min, long& max) {
    return GetRangeFromUser(parent, min_limit, max_limit, min, max);
}

template <typename T>
SetRangeDlg<T>::SetRangeDlg(wxWindow* parent, T min_limit, T max_limit, T& min, T& max)
    : wxDialog(parent, wxID_ANY, "Set Range", wxDefaultPosition, wxDefaultSize, dialogStyle) {
    const char* const function =
        std::is_same_v<T, float> ? "zel::SetFloatRangeDlg::SetFloatRangeDlg" : "zel::SetLongRangeDlg::SetLongRangeDlg";
    AssertLimits(min_limit, max_limit, function);
    SetRangeFunc(this);

    wxStaticText* min_limit_text = nullptr;
    wxStaticText* max_limit_text = nullptr;
    ZEL_FIND(min_limit_text, zel_rangeIds.minLimitText);
    ZEL_FIND(max_limit_text, zel_rangeIds.maxLimitText);
    ZEL_FIND(_min_value_ctrl, zel_rangeIds.minField);
    ZEL_FIND(_max_value_ctrl, zel_rangeIds.maxField);

    min_limit_text->SetLabel(LimitText(min_limit));
    max_limit_text->SetLabel(LimitText(max_limit));
    _min_value_ctrl->SetValidator(MakeBoundedValidator(min, min_limit, max_limit));
    _max_value_ctrl->SetValidator(MakeBoundedValidator(max, min_limit, max_limit));
    Bind(
        wxEVT_BUTTON, [this](wxCommandEvent&) { OnOk(); }, wxID_OK);
    FitLayout(this, wxDefaultSize);
}

template <typename T>
void SetRangeDlg<T>::OnOk() {
    if (Validate() && CheckOrder<T>(this, _min_value_ctrl, _max_value_ctrl) && TransferDataFromWindow())
        EndWithOk(this);
}

template <typename T>
SetRGBRangeDlg<T>::SetRGBRangeDlg(wxWindow* parent, const Colour& min_limit, const Colour& max_limit, Colour& min,
                                  Colour& max)
    : wxDialog(parent, wxID_ANY, "Set Range", wxDefaultPosition, wxDefaultSize, dialogStyle),
      m_minLimit(min_limit),
      m_maxLimit(max_limit) {
    const char* const function = "zel::SetRGBRangeDlg::SetRGBRangeDlg";
    for (int i = 0; i < 3; ++i)
        AssertLimits(min_limit.GetComponent(i), max_limit.GetComponent(i), function);
    SetRGBRangeFunc(this);

    const auto& [red, green, blue] = zel_channelRangeIds;
    wxStaticText* red_min_limit_text = nullptr;
    wxStaticText* red_max_limit_text = nullptr;
    wxStaticText* green_min_limit_text = nullptr;
    wxStaticText* green_max_limit_text = nullptr;
    wxStaticText* blue_min_limit_text = nullptr;
    wxStaticText* blue_max_limit_text = nullptr;
    ZEL_FIND(red_min_limit_text, red.range.minLimitText);
    ZEL_FIND(red_max_limit_text, red.range.maxLimitText);
    ZEL_FIND(green_min_limit_text, green.range.minLimitText);
    ZEL_FIND(green_max_limit_text, green.range.maxLimitText);
    ZEL_FIND(blue_min_limit_text, blue.range.minLimitText);
    ZEL_FIND(blue_max_limit_text, blue.range.maxLimitText);
    ZEL_FIND(_red_min_value_ctrl, red.range.minField);
    ZEL_FIND(_red_max_value_ctrl, red.range.maxField);
    ZEL_FIND(_green_min_value_ctrl, green.range.minField);
    ZEL_FIND(_green_max_value_ctrl, green.range.maxField);
    ZEL_FIND(_blue_min_value_ctrl, blue.range.minField);
    ZEL_FIND(_blue_max_value_ctrl, blue.range.maxField);
    ZEL_FIND(_red_apply_button, red.applyButton);
    ZEL_FIND(_green_apply_button, green.applyButton);
    ZEL_FIND(_blue_apply_button, blue.applyButton);

    wxStaticText* const minLimitTexts[] = {red_min_limit_text, green_min_limit_text, blue_min_limit_text};
    wxStaticText* const maxLimitTexts[] = {red_max_limit_text, green_max_limit_text, blue_max_limit_text};
    const auto channels = GetChannels();
    for (int i = 0; i < 3; ++i) {
        const T minLimit = min_limit.GetComponent(i);
        const T maxLimit = max_limit.GetComponent(i);
        const auto at = static_cast<std::size_t>(i);
        minLimitTexts[i]->SetLabel(LimitText(minLimit));
        maxLimitTexts[i]->SetLabel(LimitText(maxLimit));
        channels[at].minField->SetValidator(MakeBoundedValidator(min.GetComponent(i), minLimit, maxLimit));
        channels[at].maxField->SetValidator(MakeBoundedValidator(max.GetComponent(i), minLimit, maxLimit));
        const int button = zel_channelRangeIds[i].applyButton;
        Bind(
            wxEVT_BUTTON, [this, i](wxCommandEvent&) { ApplyToOthers(i); }, button);
        Bind(
            wxEVT_UPDATE_UI, [this, i](wxUpdateUIEvent& event) { event.Enable(FitsOthers(i)); }, button);
    }
    Bind(
        wxEVT_BUTTON, [this](wxCommandEvent&) { OnOk(); }, wxID_OK);
    FitLayout(this, wxDefaultSize);
}

template <typename T>
std::array<typename SetRGBRangeDlg<T>::Channel, 3> SetRGBRangeDlg<T>::GetChannels() const {
    return {{{_red_min_value_ctrl, _red_max_value_ctrl},
             {_green_min_value_ctrl, _green_max_value_ctrl},
             {_blue_min_value_ctrl, _blue_max_value_ctrl}}};
}

template <typename T>
bool SetRGBRangeDlg<T>::FitsOthers(int channel) const {
    const Channel own = GetChannels()[static_cast<std::size_t>(channel)];
    long low = 0;
    long high = 0;
    if (!Read(own.minField, low) || !Read(own.maxField, high) || low > high)
        return false;
    for (int i = 0; i < 3; ++i)
        if (i != channel && (low < m_minLimit.GetComponent(i) || high > m_maxLimit.GetComponent(i)))
            return false;
    return true;
}

template <typename T>
void SetRGBRangeDlg<T>::ApplyToOthers(int channel) {
    const auto channels = GetChannels();
    const Channel& own = channels[static_cast<std::size_t>(channel)];
    for (const Channel& other : channels) {
        other.minField->SetValue(own.minField->GetValue());
        other.maxField->SetValue(own.maxField->GetValue());
    }
}

template <typename T>
void SetRGBRangeDlg<T>::OnOk() {
    if (!Validate())
        return;
    for (const Channel& channel : GetChannels())
        if (!CheckOrder<long>(this, channel.minField, channel.maxField))
            return;
    if (TransferDataFromWindow())
        EndWithOk(this);
}

template class SetRangeDlg<float>;
template class SetRangeDlg<long>;
template class SetRGBRangeDlg<unsigned char>;
template class SetRGBRangeDlg<unsigned short>;

} // namespace zel
