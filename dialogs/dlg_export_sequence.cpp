#include "dialogs/dlg_export_sequence.h"

#include "dialogs/controls/zel_enddialog.h"
#include "dialogs/wdr/dlg_export_wdr.h"
#include "dialogs/wdr/zel_layout.h"
#include "image/zel_assert.h"
#include "image/zel_modaldialog.h"

#include <wx/checkbox.h>
#include <wx/radiobut.h>
#include <wx/spinctrl.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <algorithm>
#include <limits>
#include <optional>

namespace zel {

namespace {

/// @return whether the user said Yes
bool AskToContinue(wxWindow* parent, const wxString& caption, const wxString& text) {
    wxMessageDialog box(parent, text, caption, wxYES_NO | wxICON_EXCLAMATION | wxCENTRE);
    return RunModal(box) == wxID_YES;
}

/// A number too small for int counts as the smallest one; one too large is none.
std::optional<int> ParseInt(const wxString& text) {
    constexpr long lowest = std::numeric_limits<int>::min(), highest = std::numeric_limits<int>::max();
    long number = 0;
    if (!text.ToLong(&number) || number > highest)
        return std::nullopt;
    return static_cast<int>(std::max(number, lowest));
}

/// Takes a control that the layout has made.
template <typename Control>
void Find(const wxDialog& dialog, int id, Control*& control) {
    control = dynamic_cast<Control*>(dialog.FindWindow(id));
    zel_ASSERT(control, "dlg_export_sequence", "zel::ExportSequenceDialog::ExportSequenceDialog");
}

} // namespace

int ExportSequenceDialog::lastFormat = 0;
bool ExportSequenceDialog::singleImage = false;

Save3dDataDialog::Save3dDataDialog(wxWindow* parent)
    : wxDialog(parent, wxID_ANY, "Save 3D image data as...", wxDefaultPosition, wxDefaultSize, wxDEFAULT_DIALOG_STYLE) {
    ExportSequenceFunc(this);
    FitLayout(this, wxDefaultSize);
}

ExportSequenceDialog::ExportSequenceDialog(wxDialog* extendedDialog, zel_SequenceCanvas* browsedCanvas)
    : parent(extendedDialog), iterator(browsedCanvas->GetImageIterator()) {
    canvas = browsedCanvas; // the reference tracks only what is assigned to it
    Hide();                 // before there is anything to be seen
    Create(parent, wxID_ANY, wxDefaultPosition, wxSize(0, 0), wxTAB_TRAVERSAL | wxNO_BORDER);
    const SequenceIds& ids = zel_sequenceIds;
    Find(*parent, ids.singleImageBox, singleImageBox);
    Find(*parent, ids.firstSpin, firstSpin);
    Find(*parent, ids.lastSpin, lastSpin);
    Find(*parent, ids.stepSpin, stepSpin);
    for (std::size_t i = 0; i < formatButtons.size(); ++i)
        Find(*parent, ids.formatButtons[i], formatButtons[i]);
    Find(*parent, ids.templateCaption, templateLabel);
    Find(*parent, ids.templateField, templateField);
    ShowIterator();
    BindEvents();
}

void ExportSequenceDialog::ShowIterator() {
    nameTemplate = wxString::FromUTF8(iterator.nameTemplate);
    fps = iterator.fps;
    singleImageBox->SetValue(false);
    for (wxSpinCtrl* const spin : {firstSpin, lastSpin})
        spin->SetRange(iterator.limitFirst, iterator.limitLast);
    firstSpin->SetValue(iterator.rangeFirst);
    lastSpin->SetValue(iterator.rangeLast);
    stepSpin->SetRange(1, iterator.rangeLast - iterator.rangeFirst + 1);
    stepSpin->SetValue(iterator.step);
    templateField->ChangeValue(nameTemplate);
}

void ExportSequenceDialog::BindEvents() {
    for (std::size_t i = 0; i < formatButtons.size(); ++i)
        parent->Bind(wxEVT_RADIOBUTTON, &ExportSequenceDialog::OnFormat, this, zel_sequenceIds.formatButtons[i]);
    parent->Bind(wxEVT_CHECKBOX, &ExportSequenceDialog::OnSingleImage, this, zel_sequenceIds.singleImageBox);
    parent->Bind(wxEVT_BUTTON, &ExportSequenceDialog::OnOk, this, wxID_OK);
}

bool ExportSequenceDialog::IsSingleImage() const {
    return singleImageBox->GetValue();
}

bool ExportSequenceDialog::IsImageSequence() const {
    return formatButtons[imageSequence]->GetValue();
}

bool ExportSequenceDialog::CheckTemplate() {
    const wxString text = templateField->GetValue();
    if (!text.Contains("X"))
        return AskToContinue(parent, "Strange teplate name",
                             "The template name does not include a number-replacement character 'X'.\n\nContinue with "
                             "the previous template name instead?");
    nameTemplate = text;
    return true;
}

bool ExportSequenceDialog::CheckFPS() {
    const std::optional<int> number = ParseInt(templateField->GetValue());
    if (!number || !mor::ImageIterator::IsFPSAllowed(*number))
        return AskToContinue(parent, "Strange FPS",
                             wxString(number ? "The FPS value must not be zero or negative."
                                             : "Unable to read the FPS which should be a positive integer number.") +
                                 "\n\nContinue with the previous value of the FPS instead?");
    fps = *number;
    return true;
}

void ExportSequenceDialog::OnFormat(wxCommandEvent& event) {
    const int pressed = event.GetId() - zel_sequenceIds.formatButtons[imageSequence];
    const bool wasSequence = lastFormat == imageSequence;
    if (wasSequence != (pressed == imageSequence)) {
        // The field changes its meaning.
        const wxWeakRef<wxWindow> self(this);
        const bool accepted = wasSequence ? CheckTemplate() : CheckFPS();
        if (!self)
            return;
        if (!accepted) {
            Select(pressed, lastFormat);
            return;
        }
        ShowMeaning(pressed == imageSequence);
    }
    lastFormat = pressed;
}

/// Goes back from one format to another.
void ExportSequenceDialog::Select(int from, int to) {
    formatButtons[static_cast<std::size_t>(from)]->SetValue(false); // no effect in a group on every platform
    formatButtons[static_cast<std::size_t>(to)]->SetValue(true);
}

void ExportSequenceDialog::ShowMeaning(bool isTemplate) {
    templateLabel->SetLabel(isTemplate ? "Name template:" : "FPS:");
    templateField->ChangeValue(isTemplate ? nameTemplate : wxString::Format("%d", fps));
}

void ExportSequenceDialog::OnSingleImage(wxCommandEvent&) {
    if (IsSingleImage() == singleImage)
        return;
    singleImage = IsSingleImage();
    for (wxWindow* const control :
         std::initializer_list<wxWindow*>{firstSpin, lastSpin, stepSpin, formatButtons[0], formatButtons[1],
                                          formatButtons[2], templateLabel, templateField})
        control->Enable(!singleImage);
}

void ExportSequenceDialog::OnOk(wxCommandEvent&) {
    if (IsSingleImage() || (IsImageSequence() ? CheckTemplate() : CheckFPS()))
        EndWithOk(parent);
}

void ExportSequenceDialog::ApplyToIterator() {
    iterator.SetRangeFirst(firstSpin->GetValue());
    iterator.SetRangeLast(lastSpin->GetValue());
    iterator.SetStep(stepSpin->GetValue());
    if (IsImageSequence())
        iterator.SetNameTemplate(nameTemplate.utf8_string());
    else
        iterator.SetFPS(fps);
}

} // namespace zel
