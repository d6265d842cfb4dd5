#include "dialogs/zel_minmaxctrl.h"

#include "dialogs/controls/zel_boundedvalidator.h"

#include <wx/sizer.h>

#include <algorithm>

namespace zel {

namespace {

constexpr double leastGamma = 0.1;
constexpr double greatestGamma = 10.0;
constexpr double defaultGamma = 1.0;
constexpr int gammaPositions = 99;
constexpr int firstCount = 256; ///< positions until variables are bound
constexpr int leastFieldWidth = 40;
constexpr int fieldPadding = 22; ///< pixels of a field's border and inner margins, both sides together

/// Makes a field wide enough for its bounds, in two decimals as it shows them and in the six that its validator shows
/// first. Texts of more than 16 characters, those of enormous floats, scroll.
template <typename T>
void WidenField(VariableTextCtrl<T>& field) {
    const auto widthOf = [&field](const wxString& text) { return field.GetTextExtent(text.Left(16)).x + fieldPadding; };
    int width = leastFieldWidth;
    for (const T bound : {field.GetLowBound(), field.GetHighBound()})
        width = std::max({width, widthOf(NumberToText(bound)), widthOf(NumberToFullText(bound))});
    // The toolkit's own size for a text counts in the least size of a field that is shown, and would grow each time.
    field.SetMinSize(wxSize(width, wxDefaultCoord));
}

template <typename T>
void BindField(VariableTextCtrl<T>& field, T* variable, T low, T high, T defaultValue, int positions) {
    field.SetVariable(variable);
    field.SetBounds(low, high, defaultValue, positions);
    field.SetValidator(MakeBoundedValidator(*variable, low, high));
    WidenField(field);
}

/// A text that is no number gives way to the variable, which would else keep the other fields from being stored.
template <typename T>
void DropBadText(VariableTextCtrl<T>& field) {
    T number{};
    if (field.IsBound() && !field.GetNumber(number))
        field.SetNumber(*field.GetVariable());
}

/// Shows a number that the program has chosen, and stores it as it is.
template <typename T>
void SetField(VariableTextCtrl<T>& field, T number) {
    if (field.IsBound())
        *field.GetVariable() = number;
    field.SetNumber(number);
}

/// Stores a number that the user has chosen. @return what is to be shown
/// @param low, high  between which its two decimals must lie
template <typename T>
T Take(const VariableTextCtrl<T>& field, T number, T low, T high) {
    if (!field.IsBound())
        return number;
    return *field.GetVariable() = NumberEntered(number, low, high);
}

} // namespace

const wxEventTypeTag<zel_MinMaxCtrlEvent> zel_EVT_MINMAXCTRL(wxNewEventType());

zel_MinMaxCtrlEvent::zel_MinMaxCtrlEvent() : wxNotifyEvent(zel_EVT_MINMAXCTRL, 0) {}

template <typename T>
VariableMinMaxCtrl<T>::VariableMinMaxCtrl(wxWindow* parent, int id, bool withGamma, bool crossing, bool shaded,
                                          const wxColour& leftColour, const wxColour& rightColour,
                                          const wxColour& rampColour, const wxPoint& pos, const wxSize& size,
                                          long style)
    : wxPanel(parent, id, pos, size, style), showGamma(withGamma), allowCrossing(crossing) {
    const wxSize stripeSize(256, 6);
    stripe = new GradStripe(this, shaded, leftColour, rightColour, rampColour, firstCount, defaultGamma, wxID_ANY,
                            wxDefaultPosition, stripeSize);
    rampStripe = new GradStripe(this, true, leftColour, rightColour, rampColour, firstCount, defaultGamma, wxID_ANY,
                                wxDefaultPosition, stripeSize);
    triangles = new Triangles(this, this, showGamma, allowCrossing, leftColour, rampColour, firstCount, defaultGamma,
                              wxID_ANY, wxDefaultPosition, wxSize(260, 8));
    lowText = new VariableTextCtrl<T>(this, lowTextId, nullptr, 0, 0, 0, firstCount);
    if (showGamma)
        gammaText = new VariableTextCtrl<double>(this, gammaTextId, nullptr, leastGamma, greatestGamma, defaultGamma,
                                                 gammaPositions);
    highText = new VariableTextCtrl<T>(this, highTextId, nullptr, 0, 0, 0, firstCount);
    LayOut();
    if (size == wxDefaultSize)
        SetSize(GetBestSize());
    this->Bind(zel_EVT_VARIABLE_TEXTCTRL, &VariableMinMaxCtrl::OnText, this);
    this->Bind(zel_EVT_TRIANGLE, &VariableMinMaxCtrl::OnTriangle, this);
}

template <typename T>
void VariableMinMaxCtrl<T>::LayOut() {
    // The tips of the triangles run from the third pixel of their row to the third last, so the stripe is as wide as
    // that; two more on either side bring both under the bars of a graph with a sunken border.
    const auto flags = [](int border) { return wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT, border); };
    auto* const column = new wxBoxSizer(wxVERTICAL);
    column->Add(stripe, flags(4));
    column->Add(rampStripe, flags(4));
    column->Add(triangles, flags(2));
    auto* const row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(lowText, 1);
    row->AddSpacer(10);
    if (gammaText != nullptr)
        row->Add(gammaText, 1);
    else
        row->Add(leastFieldWidth, 0, 1);
    row->AddSpacer(10);
    row->Add(highText, 1);
    column->Add(row, flags(2));
    SetSizer(column);
}

template <typename T>
void VariableMinMaxCtrl<T>::BindVariables(T* low, T* high, double* gamma, T lowBound, T highBound, int positions) {
    if (AreFieldsBound())
        StoreFields();
    positions = std::max(positions, 1);
    BindField(*lowText, low, lowBound, highBound, lowBound, positions);
    BindField(*highText, high, lowBound, highBound, highBound, positions);
    if (showGamma)
        BindField(*gammaText, gamma, leastGamma, greatestGamma, defaultGamma, gammaPositions);
    stripe->SetCount(positions);
    stripe->SetLeft(0);
    stripe->SetRight(positions - 1);
    triangles->SetCount(positions);
    triangles->SetLeft(0);
    triangles->SetRight(positions - 1);
    SetLow(*low);
    SetHigh(*high);
    if (showGamma)
        SetGamma(*gamma);
    InvalidateBestSize(); // the fields may need more room
    wxSize size = GetSize();
    size.IncTo(GetBestSize());
    SetSize(size);
    Layout();
}

template <typename T>
void VariableMinMaxCtrl<T>::Reset() {
    SetField(*lowText, lowText->GetLowBound());
    SetField(*highText, highText->GetHighBound());
    if (showGamma)
        SetField(*gammaText, gammaText->GetDefaultValue());
    const int last = stripe->GetCount() - 1;
    stripe->SetGamma(defaultGamma);
    stripe->SetLeft(0);
    stripe->SetRight(last);
    if (showGamma)
        triangles->SetGamma(defaultGamma);
    triangles->SetLeft(0);
    triangles->SetRight(last);
    stripe->Refresh(false);
    triangles->Refresh(false);
    if (AreFieldsBound())
        StoreFields();
}

template <typename T>
void VariableMinMaxCtrl<T>::SetLow(T value) {
    lowText->SetNumber(value);
    if (const auto position = PositionShown(*lowText)) {
        stripe->SetLeft(*position);
        triangles->SetLeft(*position);
    }
    stripe->Refresh(false);
    triangles->Refresh(false);
}

template <typename T>
void VariableMinMaxCtrl<T>::SetHigh(T value) {
    highText->SetNumber(value);
    if (const auto position = PositionShown(*highText)) {
        stripe->SetRight(*position);
        triangles->SetRight(*position);
    }
    stripe->Refresh(false);
    triangles->Refresh(false);
}

template <typename T>
void VariableMinMaxCtrl<T>::SetGamma(double value) {
    if (!showGamma)
        return;
    gammaText->SetNumber(value);
    stripe->SetGamma(value);
    triangles->SetGamma(value);
    stripe->Refresh(false);
    triangles->Refresh(false);
}

template <typename T>
std::optional<int> VariableMinMaxCtrl<T>::PositionShown(const VariableTextCtrl<T>& field) const {
    T number{};
    if (!field.GetNumber(number))
        return std::nullopt;
    return PositionOfNumber(number, field.GetLowBound(), field.GetHighBound(), field.GetStep(), stripe->GetCount());
}

template <typename T>
T VariableMinMaxCtrl<T>::GetLowEnd() const {
    T low = highText->GetLowBound();
    if (!allowCrossing)
        lowText->GetNumber(low);
    return low;
}

template <typename T>
T VariableMinMaxCtrl<T>::GetHighEnd() const {
    T high = lowText->GetHighBound();
    if (!allowCrossing)
        highText->GetNumber(high);
    return high;
}

template <typename T>
void VariableMinMaxCtrl<T>::EnterLow(T value) {
    SetLow(Take(*lowText, value, lowText->GetLowBound(), GetHighEnd()));
}

template <typename T>
void VariableMinMaxCtrl<T>::EnterHigh(T value) {
    SetHigh(Take(*highText, value, GetLowEnd(), highText->GetHighBound()));
}

template <typename T>
void VariableMinMaxCtrl<T>::EnterGamma(double value) {
    if (!showGamma)
        return;
    Take(*gammaText, value, gammaText->GetLowBound(), gammaText->GetHighBound());
    SetGamma(value); // with all its digits, so that the triangle stays under the pointer
}

template <typename T>
void VariableMinMaxCtrl<T>::EnterTypedLow(T value) {
    EnterLow(allowCrossing ? value : std::min(value, GetHighEnd()));
}

template <typename T>
void VariableMinMaxCtrl<T>::EnterTypedHigh(T value) {
    EnterHigh(allowCrossing ? value : std::max(value, GetLowEnd()));
}

template <typename T>
void VariableMinMaxCtrl<T>::OnText(zel_VariableTextCtrlEvent& event) {
    const T value = HoldNumber<T>(event.GetValue());
    switch (event.GetId()) {
    case highTextId:
        EnterTypedHigh(value);
        break;
    case lowTextId:
        EnterTypedLow(value);
        break;
    case gammaTextId:
        EnterGamma(event.GetValue());
        break;
    default:
        return;
    }
    Notify();
}

template <typename T>
void VariableMinMaxCtrl<T>::OnTriangle(zel_TriangleEvent& event) {
    const int position = event.GetPosition();
    switch (event.GetId()) {
    case zel_triangleRight:
        EnterHigh(NumberAtPosition(position, highText->GetLowBound(), highText->GetStep()));
        break;
    case zel_triangleLeft:
        EnterLow(NumberAtPosition(position, lowText->GetLowBound(), lowText->GetStep()));
        break;
    case zel_triangleMiddle:
        if (const auto gamma = GammaAtPosition(triangles->GetRow(), position))
            EnterGamma(*gamma);
        break;
    default:
        return;
    }
    Notify();
}

template <typename T>
void VariableMinMaxCtrl<T>::StoreFields() {
    if (const auto low = lowText->TakeTyped())
        EnterTypedLow(*low);
    if (const auto high = highText->TakeTyped())
        EnterTypedHigh(*high);
    if (const auto gamma = showGamma ? gammaText->TakeTyped() : std::nullopt)
        EnterGamma(*gamma);
    DropBadText(*lowText);
    DropBadText(*highText);
    if (showGamma)
        DropBadText(*gammaText);
    TransferDataFromWindow();
}

template <typename T>
void VariableMinMaxCtrl<T>::Notify() {
    if (!AreFieldsBound())
        return;
    StoreFields();
    zel_MinMaxCtrlEvent event;
    event.SetEventObject(this);
    GetParent()->ProcessWindowEvent(event);
}

#define ZEL_INSTANTIATE(T) template class VariableMinMaxCtrl<T>;
ZEL_HISTOGRAM_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE

} // namespace zel
