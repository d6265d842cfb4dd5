#pragma once

#include "dialogs/zel_styles.h"

#include <wx/dialog.h>

#include <array>

class WXDLLIMPEXP_FWD_CORE wxColourData;
class WXDLLIMPEXP_FWD_CORE wxNotebook;
class WXDLLIMPEXP_FWD_CORE wxRadioBox;
class WXDLLIMPEXP_FWD_CORE wxSpinCtrl;
class WXDLLIMPEXP_FWD_CORE wxStaticText;
class WXDLLIMPEXP_FWD_CORE wxTextCtrl;

namespace zel {

struct PlacementIds;

/// The dialog "Screen options dialog": the scale on the screen, the cut pointer, the annotations, the scale bar and the
/// time bar. Changes go into the record as they are made, except those of the scale and of the scale bar's length,
/// which go there on OK. So the caller hands in a copy and drops it on Cancel.
class ZEL_EXPORT PreferencesDialog : public wxDialog {
public:
    /// @param parent    the dialog goes with it
    /// @param settings  not owned; must live as long as the dialog is open
    /// @param colours   of the colour dialogs, which change the custom colours in it; not owned
    PreferencesDialog(wxWindow* parent, zel_CanvasSettings* settings, wxColourData* colours);

    /// Selects the page of the first field that is refused.
    bool Validate() override;
    bool TransferDataFromWindow() override; ///< stores what the fields of the scale and the scale bar show

private:
    /// A field whose number follows from that of another one, and the other way round.
    struct LinkedField {
        wxTextCtrl* field = nullptr;
        wxString agreed; ///< its text when the two last agreed

        bool IsUntouched() const;
        void Agree();
    };
    /// The field of a window's annotation.
    struct AnnotationText {
        wxTextCtrl* field = nullptr;
        wxString* text = nullptr; ///< of the record

        void Store() const;
    };

    void ConnectScreen();
    double GetScaleX() const;
    /// Shows in one field what follows from that which the focus has left.
    template <typename Rule>
    void Link(LinkedField& left, LinkedField& other, const Rule& rule);
    void ConnectPointer();
    void ShowPointerColour();
    void ConnectAnnotations();
    void ConnectScaleBar();
    void ConnectTimeBar();
    void ConnectPlacement(const PlacementIds& placement, int& corner, wxPoint& offset);
    void ConnectRadioBox(int id, int& selection);
    void ConnectSpin(int id, int& number);
    void ConnectColour(int button, wxColour& colour);
    bool ChooseColour(wxColour& colour);
    void ChooseFont();
    wxTextCtrl* FindWrongNumber() const;

    zel_CanvasSettings* settings;
    wxColourData* colours;
    wxNotebook* notebook;
    wxStaticText* pointerSample;
    wxTextCtrl* lengthField;
    std::array<LinkedField, 3> resolutions; ///< X, Y, Z
    std::array<LinkedField, 3> aspects;
    std::array<AnnotationText, 3> annotations; ///< XY, XZ, YZ
};

} // namespace zel
