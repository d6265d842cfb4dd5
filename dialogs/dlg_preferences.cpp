#include "dialogs/dlg_preferences.h"

#include "dialogs/controls/zel_focuslost.h"
#include "dialogs/wdr/dlg_preferences_wdr.h"
#include "dialogs/wdr/zel_layout.h"
#include "dialogs/zel_validators.h"
#include "image/zel_assert.h"
#include "image/zel_modaldialog.h"
#include "model/zel_planes.h"

#include <wx/colordlg.h>
#include <wx/fontdlg.h>
#include <wx/notebook.h>
#include <wx/radiobox.h>
#include <wx/spinctrl.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

namespace zel {

namespace {

constexpr const PreferencesIds& ids = zel_preferencesIds;

/// A control that the layout has made.
template <typename Control>
Control* Find(const wxDialog& dialog, int id) {
    auto* const control = dynamic_cast<Control*>(dialog.FindWindow(id));
    zel_ASSERT(control, "dlg_preferences", "zel::PreferencesDialog::PreferencesDialog");
    return control;
}

/// Brings the page that a control stands on to the front.
void ShowPageOf(wxNotebook& notebook, const wxWindow& control) {
    for (const wxWindow* above = control.GetParent(); above != nullptr; above = above->GetParent()) {
        const int page = notebook.FindPage(above);
        if (page != wxNOT_FOUND)
            notebook.SetSelection(static_cast<std::size_t>(page));
    }
}

} // namespace

PreferencesDialog::PreferencesDialog(wxWindow* parent, zel_CanvasSettings* changedSettings,
                                     wxColourData* rememberedColours)
    : wxDialog(parent, wxID_ANY, "Screen options dialog", wxDefaultPosition, wxDefaultSize, wxDEFAULT_DIALOG_STYLE),
      settings(changedSettings),
      colours(rememberedColours) {
    SetExtraStyle(GetExtraStyle() | wxWS_EX_VALIDATE_RECURSIVELY);
    PreferencesFunc(this);
    notebook = Find<wxNotebook>(*this, ids.notebook);
    ConnectScreen();
    ConnectPointer();
    ConnectAnnotations();
    ConnectScaleBar();
    ConnectTimeBar();
    FitLayout(this, wxDefaultSize);
}

bool PreferencesDialog::LinkedField::IsUntouched() const {
    return field->GetValue() == agreed;
}

void PreferencesDialog::LinkedField::Agree() {
    agreed = field->GetValue();
}

void PreferencesDialog::ConnectScreen() {
    for (const Axis axis : axes) {
        const auto at = static_cast<std::size_t>(axis);
        LinkedField& resolution = resolutions[at];
        LinkedField& aspect = aspects[at];
        float& scale = At(settings->baseScale, axis);
        resolution.field = Find<wxTextCtrl>(*this, ids.resolutionFields[at]);
        aspect.field = Find<wxTextCtrl>(*this, ids.aspectFields[at]);

        const double ratio = axis == Axis::X ? 1.0 : static_cast<double>(scale) / GetScaleX();
        resolution.field->SetValidator(RealValidator<float>(scale, wxEmptyString));
        resolution.field->GetValidator()->TransferToWindow();
        aspect.field->ChangeValue(wxString::Format("%f", ratio));
        resolution.Agree();
        aspect.Agree();
        OnFocusLost(*resolution.field, [this, &resolution, &aspect] {
            Link(resolution, aspect, [this](double n) { return n / GetScaleX(); });
        });
        OnFocusLost(*aspect.field, [this, &resolution, &aspect] {
            Link(aspect, resolution, [this](double n) { return n * GetScaleX(); });
        });
    }
}

double PreferencesDialog::GetScaleX() const {
    return static_cast<double>(settings->baseScale.x);
}

template <typename Rule>
void PreferencesDialog::Link(LinkedField& left, LinkedField& other, const Rule& rule) {
    double number = 0.0;
    if (left.IsUntouched() && other.IsUntouched())
        return; // nothing is rounded by going through the fields
    if (!left.field->GetValue().ToDouble(&number))
        return;
    other.field->ChangeValue(wxString::Format("%f", rule(number)));
    left.Agree();
    other.Agree();
}

void PreferencesDialog::ConnectPointer() {
    zel_CutPointerStyle& pointer = settings->cutPointer;
    pointerSample = Find<wxStaticText>(*this, ids.pointerSample);
    ConnectRadioBox(ids.pointerBox, pointer.style);
    ShowPointerColour();
    Bind(
        wxEVT_BUTTON,
        [this, &pointer](wxCommandEvent&) {
            if (ChooseColour(pointer.colour))
                ShowPointerColour();
        },
        ids.pointerButton);
}

void PreferencesDialog::ShowPointerColour() {
    pointerSample->SetBackgroundColour(settings->cutPointer.colour);
    pointerSample->SetForegroundColour(settings->cutPointer.colour);
    pointerSample->Refresh();
}

void PreferencesDialog::ConnectAnnotations() {
    zel_ProjectionAnnotationStyle& style = settings->annotation;
    wxString* const texts[] = {&style.textXY, &style.textXZ, &style.textYZ};
    int* const positions[] = {&style.positionXY, &style.positionXZ, &style.positionYZ};
    wxPoint* const offsets[] = {&style.offsetXY, &style.offsetXZ, &style.offsetYZ};
    for (std::size_t plane = 0; plane < annotations.size(); ++plane) {
        AnnotationText& annotation = annotations[plane];
        annotation.field = Find<wxTextCtrl>(*this, ids.annotations[plane].textField);
        annotation.text = texts[plane];
        annotation.field->ChangeValue(*annotation.text);
        OnFocusLost(*annotation.field, [&annotation] { annotation.Store(); });
        ConnectPlacement(ids.annotations[plane].placement, *positions[plane], *offsets[plane]);
    }
    ConnectColour(ids.textColourButton, style.colour);
    Bind(
        wxEVT_BUTTON, [this](wxCommandEvent&) { ChooseFont(); }, ids.textFontButton);
}

void PreferencesDialog::AnnotationText::Store() const {
    *text = field->GetValue();
}

void PreferencesDialog::ConnectScaleBar() {
    zel_ScaleBarStyle& bar = settings->scaleBar;
    lengthField = Find<wxTextCtrl>(*this, ids.scaleBarLengthField);
    lengthField->SetValidator(RealValidator<float>(bar.length, wxEmptyString));
    ConnectSpin(ids.scaleBarWidthSpin, bar.thickness);
    ConnectColour(ids.scaleBarColourButton, bar.colour);
    ConnectPlacement(ids.scaleBar, bar.position, bar.offset);
}

void PreferencesDialog::ConnectTimeBar() {
    zel_TimeBarStyle& bar = settings->timeBar;
    ConnectSpin(ids.timeBarLengthSpin, bar.length);
    ConnectSpin(ids.timeBarWidthSpin, bar.thickness);
    ConnectColour(ids.timeBarColourButton, bar.colour);
    ConnectPlacement(ids.timeBar, bar.position, bar.offset);
}

void PreferencesDialog::ConnectPlacement(const PlacementIds& placement, int& corner, wxPoint& offset) {
    ConnectRadioBox(placement.cornerBox, corner);
    ConnectSpin(placement.offsetXSpin, offset.x);
    ConnectSpin(placement.offsetYSpin, offset.y);
}

void PreferencesDialog::ConnectRadioBox(int id, int& selection) {
    auto* const box = Find<wxRadioBox>(*this, id);
    if (selection >= 0 && selection < static_cast<int>(box->GetCount()))
        box->SetSelection(selection);
    Bind(
        wxEVT_RADIOBOX, [box, &selection](wxCommandEvent&) { selection = box->GetSelection(); }, id);
}

void PreferencesDialog::ConnectSpin(int id, int& number) {
    auto* const spin = Find<wxSpinCtrl>(*this, id);
    spin->SetValue(number);
    Bind(
        wxEVT_SPINCTRL, [spin, &number](wxSpinEvent&) { number = spin->GetValue(); }, id);
}

void PreferencesDialog::ConnectColour(int button, wxColour& colour) {
    Bind(
        wxEVT_BUTTON, [this, &colour](wxCommandEvent&) { ChooseColour(colour); }, button);
}

/// Asks for another colour. @return whether one was chosen
bool PreferencesDialog::ChooseColour(wxColour& colour) {
    colours->SetChooseFull(true);
    colours->SetColour(colour);
    wxColourDialog dialog(this, colours);
    if (RunModal(dialog) != wxID_OK)
        return false;
    *colours = dialog.GetColourData();
    colour = colours->GetColour();
    return true;
}

void PreferencesDialog::ChooseFont() {
    zel_ProjectionAnnotationStyle& style = settings->annotation;
    wxFontData data;
    data.SetColour(style.colour);
    data.SetInitialFont(style.font);
    wxFontDialog dialog(this, data);
    if (RunModal(dialog) != wxID_OK)
        return;
    style.colour = dialog.GetFontData().GetColour();
    style.font = dialog.GetFontData().GetChosenFont();
}

/// The first field that is to hold a number and does not.
wxTextCtrl* PreferencesDialog::FindWrongNumber() const {
    for (wxTextCtrl* const field : {resolutions[0].field, resolutions[1].field, resolutions[2].field, lengthField}) {
        auto* const validator = dynamic_cast<RealValidator<float>*>(field->GetValidator());
        float number = 0.0F;
        if (!validator->ReadNumber(number))
            return field;
    }
    return nullptr;
}

bool PreferencesDialog::Validate() {
    const wxWeakRef<wxTextCtrl> wrong(FindWrongNumber());
    if (wrong)
        ShowPageOf(*notebook, *wrong);
    if (!wxDialog::Validate())
        return false;
    if (!wrong)
        return true;
    // Signs that belong to numbers, but make none.
    ShowMessage("The value '" + wrong->GetValue() + "' cannot be converted to a double", "Validation conflict",
                wxOK | wxICON_EXCLAMATION, this);
    if (wrong)
        wrong->SetFocus();
    return false;
}

bool PreferencesDialog::TransferDataFromWindow() {
    for (const AnnotationText& annotation : annotations)
        annotation.Store(); // Enter in the field ends the dialog before the focus leaves it
    return wxDialog::TransferDataFromWindow();
}

} // namespace zel
