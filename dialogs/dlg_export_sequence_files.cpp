// What the export does after its dialog has ended: asking where to, and going through the frames.

#include "dialogs/dlg_export_sequence.h"
#include "image/kep.h"
#include "image/zel_modaldialog.h"
#include "model/zel_sequencename.h"

#include <wx/dirdlg.h>
#include <wx/filedlg.h>
#include <wx/filename.h>

#include <optional>

namespace zel {

namespace {

/// Takes a dialog that has ended from the window above it: that one may go while a file dialog is open, and would
/// delete the dialog, which is a local variable, with its children. Gives it back at the end.
class Detached {
public:
    explicit Detached(wxDialog& dialog) : m_dialog(dialog), m_above(dialog.GetParent()) {
        if (m_above)
            m_above->RemoveChild(&m_dialog);
    }
    ~Detached() {
        if (m_above)
            m_above->AddChild(&m_dialog);
    }
    Detached(const Detached&) = delete;
    Detached& operator=(const Detached&) = delete;

    wxWindow* GetAbove() const { return m_above; }

private:
    wxDialog& m_dialog;
    wxWeakRef<wxWindow> m_above;
};

/// Shows a dialog that chooses a file or a folder. It is gone on return: nobody runs it while files are written.
/// @return nothing if the user has cancelled it
template <typename Dialog>
std::optional<wxString> AskForPath(wxWindow* parent, const wxString& title, const auto&... arguments) {
    Dialog dialog(parent, title, arguments...);
    if (RunModal(dialog) != wxID_OK)
        return std::nullopt;
    return dialog.GetPath();
}

} // namespace

void ExportSequenceDialog::ProcessExport(ExportData_CanvasProcessor& processor) {
    const Detached detached(*parent);
    if (IsSingleImage())
        SaveSingleImage(processor, detached.GetAbove());
    else if (UpdateCanvas(detached.GetAbove()))
        SaveSequence(processor, detached.GetAbove());
}

/// The canvas is there, and so is its image.
bool ExportSequenceDialog::CanSave() const {
    return canvas && !canvas->IsMapperDetached();
}

void ExportSequenceDialog::SaveSingleImage(ExportData_CanvasProcessor& processor, wxWindow* above) {
    const auto file = AskForPath<wxFileDialog>(above, "Save single 3D image", wxEmptyString, wxEmptyString,
                                               "Image cytometry standard (*.ics)|*.ics|TIFF image (*.tif)|*.tif",
                                               wxFD_SAVE | wxFD_OVERWRITE_PROMPT | wxFD_CHANGE_DIR);
    if (file && CanSave())
        processor(*file);
}

/// Takes over what was chosen, and brings the canvas to the first frame. @return false, after a message, if the
/// iterator refuses it
bool ExportSequenceDialog::UpdateCanvas(wxWindow* above) {
    if (!CanSave())
        return false;
    try {
        ApplyToIterator();
        canvas->UpdateImageIterator(iterator);
    } catch (const kep::InternalException& e) {
        ShowMessage(wxString::FromUTF8(e.GetText()), "Error processing the dialog",
                    wxICON_EXCLAMATION | wxOK | wxCENTRE, above);
        return false;
    }
    iterator.GoToFirst();
    iterator.loopMode = false;
    return true;
}

void ExportSequenceDialog::SaveSequence(ExportData_CanvasProcessor& processor, wxWindow* above) {
    if (!IsImageSequence()) {
        ShowMessage("This function is not yet implemeted, sorry.\nYou may only save image sequence at the moment.",
                    "Not implemented yet", wxOK | wxCENTRE, above);
        return;
    }
    auto folder = AskForPath<wxDirDialog>(above, "Choose folder to save 3D image sequence", wxEmptyString,
                                          wxDD_CHANGE_DIR | wxDD_DIR_MUST_EXIST);
    if (!folder || !CanSave())
        return;
    if (!wxEndsWithPathSeparator(*folder))
        *folder += wxFILE_SEP_PATH;
    do {
        processor(*folder + MakeFileName(iterator.nameTemplate, iterator.current));
        if (!CanSave())
            return;
        canvas->ShowNextImage();
        iterator.Advance();
    } while (iterator.moved && CanSave());
}

wxString ExportSequenceDialog::MakeFileName(const std::string& nameTemplate, int index) {
    return wxString::FromUTF8(MakeSequenceName(nameTemplate, index));
}

} // namespace zel
