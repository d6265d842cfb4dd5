#pragma once

class wxWindow;

namespace zel {

/// Controls "Sequence parameters", which all dialogs of saving have.
struct SequenceIds {
    int singleImageBox = 10003;
    int firstCaption = 10004;
    int firstSpin = 10005;
    int lastCaption = 10006;
    int lastSpin = 10007;
    int stepCaption = 10008;
    int stepSpin = 10009;
    int formatCaption = 10010;
    int formatButtons[3] = {10011, 10012, 10013}; ///< image sequence, AVI video, animated GIF
    int templateCaption = 10014;
    int templateField = 10015;
};
constexpr SequenceIds zel_sequenceIds;

/// Controls of the dialog of a view.
struct DecorationIds {
    int projectionBox = 10000; ///< radio box: XY, XZ, YZ, all
    int borderCaption = 10001;
    int borderSpin = 10002;
};
constexpr DecorationIds zel_decorationIds;

/// Controls of the dialog of a gallery.
struct GalleryIds {
    int sliceCountText = 10016;
    int caption = 10017; ///< of every text that only explains
    int firstSpin = 10018;
    int lastSpin = 10019;
    int stepSpin = 10020;
    int rowsButton = 10021;
    int columnsButton = 10022;
    int countSpin = 10023;
    int spacingSpin = 10024;
};
constexpr GalleryIds zel_galleryIds;

/// Lays out the dialog of the voxels: "Sequence parameters" and nothing else.
void ExportSequenceFunc(wxWindow* dialog);
/// Lays out the dialog of a view.
void DecorationFunc(wxWindow* dialog);
/// Lays out the dialog of a gallery.
void GalleryFunc(wxWindow* dialog);

} // namespace zel
