#pragma once

class wxWindow;

namespace zel {

/// Controls of one range, as the layouts number them.
struct RangeBoxIds {
    int minLimitText; ///< static text: the lower limit
    int maxLimitText;
    int minField;
    int maxField;
};

constexpr RangeBoxIds zel_rangeIds{10001, 10002, 10004, 10005};

/// The same, with the button that copies the range to the other channels.
struct ChannelRangeIds {
    const char* label;
    RangeBoxIds range;
    int applyButton;
};

/// Red, green, blue.
constexpr ChannelRangeIds zel_channelRangeIds[] = {{"Red Channel", {10006, 10007, 10008, 10009}, 10010},
                                                   {"Green Channel", {10011, 10012, 10013, 10014}, 10015},
                                                   {"Blue Channel", {10016, 10017, 10018, 10019}, 10020}};

/// Lays out a dialog that asks for one range.
void SetRangeFunc(wxWindow* dialog);
/// Lays out a dialog that asks for a range for each colour channel.
void SetRGBRangeFunc(wxWindow* dialog);

} // namespace zel
