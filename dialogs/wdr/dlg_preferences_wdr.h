#pragma once

#include <cstddef>

class wxWindow;

namespace zel {

/// Controls that place something in a window.
struct PlacementIds {
    int cornerBox; ///< radio box: top left, top right, bottom left, bottom right
    int offsetXSpin;
    int offsetYSpin;
};

/// Controls of the annotation of one window.
struct AnnotationIds {
    int textCaption;
    int textField;
    PlacementIds placement;
};

/// Controls of the preferences. Some numbers are given twice, as hosts know them: 10002 is the sample, which is made
/// first and so is what FindWindow finds, and its button; 10025 and 10026 are three buttons each.
struct PreferencesIds {
    int notebook = 10000;
    int pointerBox = 10001; ///< radio box
    int pointerSample = 10002;
    int pointerButton = 10002;
    int axisCaption = 10003;
    int resolutionFields[3] = {10004, 10005, 10006};
    int aspectFields[3] = {10007, 10008, 10009};
    AnnotationIds annotations[3] = {{10010, 10011, {10012, 10013, 10014}},
                                    {10015, 10016, {10017, 10018, 10019}},
                                    {10020, 10021, {10022, 10023, 10024}}}; ///< XY, XZ, YZ
    int textColourButton = 10025;
    int textFontButton = 10026;
    int scaleBarLengthCaption = 10027;
    int scaleBarLengthField = 10028;
    int scaleBarWidthCaption = 10029;
    int scaleBarWidthSpin = 10030;
    int scaleBarColourButton = 10031;
    PlacementIds scaleBar = {10032, 10033, 10034};
    int timeBarLengthCaption = 10035;
    int timeBarLengthSpin = 10036;
    int timeBarWidthCaption = 10037;
    int timeBarWidthSpin = 10038;
    int timeBarColourButton = 10039;
    PlacementIds timeBar = {10040, 10041, 10042};
};
constexpr PreferencesIds zel_preferencesIds;

/// Lays out the preferences: a notebook with five pages, OK and Cancel.
void PreferencesFunc(wxWindow* dialog);

} // namespace zel
