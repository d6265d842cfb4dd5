#pragma once

#include "dialogs/zel_canvasprocessor.h"
#include "dialogs/zel_sequencecanvas.h"

#include <wx/dialog.h>
#include <wx/panel.h>
#include <wx/weakref.h>

#include <array>
#include <string>

class WXDLLIMPEXP_FWD_CORE wxCheckBox;
class WXDLLIMPEXP_FWD_CORE wxRadioButton;
class WXDLLIMPEXP_FWD_CORE wxSpinCtrl;
class WXDLLIMPEXP_FWD_CORE wxStaticText;
class WXDLLIMPEXP_FWD_CORE wxTextCtrl;

namespace zel {

/// The dialog "Save 3D image data as...": the controls "Sequence parameters", and OK and Cancel.
class ZEL_EXPORT Save3dDataDialog : public wxDialog {
public:
    explicit Save3dDataDialog(wxWindow* parent); ///< an ExportSequenceDialog is to be attached to it
};

/// Gives the controls "Sequence parameters" of a dialog their behaviour, and exports what was chosen in them. It is an
/// invisible panel: make it after the dialog has been laid out, and as a local variable after the dialog, so that it
/// goes first. It ends the dialog on OK, before any handler in the dialog's own event table.
///
///     const wxWeakRef<wxWindow> self(this);
///     GalleryDialog dialog(this, sliceCount);
///     ExportSequenceDialog exporter(&dialog, canvas);
///     if (RunModal(dialog) != wxID_OK || !self)
///         return;
///     exporter.ProcessExport(processor);
///
/// The last output format and the state of "Save only a single image?" are remembered for the whole process, apart from
/// the controls: those of a new dialog start as if neither had ever been changed.
class ZEL_EXPORT ExportSequenceDialog : public wxPanel {
public:
    /// Takes a copy of the canvas's state of browsing and shows it in the controls.
    /// @param parent  a dialog with the controls 10003 to 10015
    /// @param canvas  must not be null, but may go before this
    ExportSequenceDialog(wxDialog* parent, zel_SequenceCanvas* canvas);

    /// The private copy of the state of browsing.
    const mor::ImageIterator& GetIterator() const { return iterator; }
    /// "Save only a single image?" is checked.
    bool IsSingleImage() const;
    /// "Image sequence" is selected.
    bool IsImageSequence() const;

    /// Takes over the text as the template of file names, if it has an upper-case "X"; otherwise asks whether to
    /// go on with the last one. @return false if the user says No
    bool CheckTemplate();
    /// Takes over the text as frames per second, if it is a number from 1; otherwise asks whether to go on with the
    /// last one. @return false if the user says No
    bool CheckFPS();
    /// Copies range and step, and the last accepted template or speed, into the private iterator.
    /// @throws kep::InternalException from the setters, in the order first, last, step, template or speed
    void ApplyToIterator();

    /// To be called once the dialog has ended with OK. Asks for a file or a folder, and calls the processor for the
    /// present frame, or for each frame of the sequence while the canvas browses through it. A canvas that goes
    /// meanwhile ends the export after the file at hand.
    /// @throws kep::InternalException "Missing suffix in the template name."; what the processor throws passes through
    void ProcessExport(ExportData_CanvasProcessor& processor);

    /// The name of a frame's file: the first run of "X" in the template becomes the number, with as many digits.
    /// @param nameTemplate  UTF-8; at least one "X"
    /// @param index         0 or greater
    /// @throws kep::InternalException "Missing suffix in the template name."
    static wxString MakeFileName(const std::string& nameTemplate, int index);

private:
    /// Output formats, as places in formatButtons.
    enum Format { imageSequence, aviVideo, animatedGif, formatCount };

    void ShowIterator();
    void BindEvents();
    void OnFormat(wxCommandEvent& event);
    void Select(int from, int to);
    void ShowMeaning(bool isTemplate);
    void OnSingleImage(wxCommandEvent& event);
    void OnOk(wxCommandEvent& event);
    bool CanSave() const;
    void SaveSingleImage(ExportData_CanvasProcessor& processor, wxWindow* above);
    bool UpdateCanvas(wxWindow* above);
    void SaveSequence(ExportData_CanvasProcessor& processor, wxWindow* above);

    wxDialog* parent;
    wxCheckBox* singleImageBox;
    wxSpinCtrl* firstSpin;
    wxSpinCtrl* lastSpin;
    wxSpinCtrl* stepSpin;
    std::array<wxRadioButton*, formatCount> formatButtons;
    wxStaticText* templateLabel;
    wxTextCtrl* templateField; ///< the template of file names or the frames per second
    wxString nameTemplate;     ///< as last accepted
    int fps;                   ///< as last accepted
    mor::ImageIterator iterator;
    wxWeakRefDynamic<zel_SequenceCanvas> canvas;

    static int lastFormat;
    static bool singleImage;
};

} // namespace zel
