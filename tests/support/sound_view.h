#pragma once

// What holds of a canvas whatever was done to it.

#include "viewer/zel_viewer3dcanvas.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace zel::test {

inline void ExpectSoundBrowsing(zel_Viewer3dCanvas& canvas) {
    const mor::ImageIterator iterator = canvas.GetImageIterator();
    ASSERT_LE(0, iterator.limitFirst);
    ASSERT_LE(iterator.limitFirst, iterator.rangeFirst);
    ASSERT_LE(iterator.rangeFirst, iterator.current);
    ASSERT_LE(iterator.current, iterator.rangeLast);
    ASSERT_LE(iterator.rangeLast, iterator.limitLast);
    ASSERT_LT(iterator.limitLast, canvas.GetImageCount());
    ASSERT_GE(iterator.step, 1);
    ASSERT_LE(iterator.step, iterator.rangeLast - iterator.rangeFirst + 1);
    ASSERT_GE(iterator.fps, 1);
    ASSERT_EQ(canvas.GetTime(), iterator.current);
}

inline void ExpectSoundBoxes(const zel_Viewer3dCanvas& canvas) {
    // The preferences take any number for the base scale. At 0 and below there is nothing to show, and no box of it.
    const kep::Vector3d<float>& base = canvas.GetBaseScale();
    if (!(std::min({base.x, base.y, base.z}) > 0))
        return;
    // Else the visible part is that of the last arrangement, even if the image has been changed since.
    const bool isArranged = canvas.GetView().IsAnyShown() && canvas.GetClientSize() != wxSize(0, 0);
    const MicronBox& box = canvas.GetBoundingBox();
    const MicronBox& visible = canvas.GetVisibleBox();
    for (const auto axis : {&kep::Vector3d<float>::x, &kep::Vector3d<float>::y, &kep::Vector3d<float>::z}) {
        const float low = box.offset.*axis;
        const float high = low + box.size.*axis;
        const float tiny = 1e-5F * std::max(std::abs(low), std::abs(high)); // a few units in the last place
        ASSERT_GE(canvas.GetCut().*axis, low);
        ASSERT_LE(canvas.GetCut().*axis, high + tiny);
        ASSERT_GT(canvas.GetScale().*axis, 0.0F);
        ASSERT_GT(visible.size.*axis, 0.0F);
        if (isArranged && visible.size.*axis <= box.size.*axis) { // else, far out, a pixel is larger than the box
            ASSERT_GE(visible.offset.*axis, low - tiny);
            ASSERT_LE(visible.offset.*axis + visible.size.*axis, high + tiny);
        }
    }
}

inline void ExpectSoundWindows(const zel_Viewer3dCanvas& canvas) {
    if (canvas.GetClientSize() == wxSize(0, 0))
        return; // nothing is arranged until there is room
    for (const zel_ProjectionType type : {zel_PT_XY, zel_PT_XZ, zel_PT_YZ}) {
        const zel_DrWin3d& window = *canvas.GetDrWin(type);
        ASSERT_EQ(window.IsShown(), canvas.IsDrWinShown(type)) << type;
        if (window.IsShown()) {
            ASSERT_GE(window.GetClientSize().x, 1) << type;
            ASSERT_GE(window.GetClientSize().y, 1) << type;
        }
    }
}

/// Of a canvas that has an image.
inline void ExpectSoundView(zel_Viewer3dCanvas& canvas) {
    ASSERT_NO_FATAL_FAILURE(ExpectSoundBrowsing(canvas));
    ASSERT_NO_FATAL_FAILURE(ExpectSoundBoxes(canvas));
    ASSERT_NO_FATAL_FAILURE(ExpectSoundWindows(canvas));
}

} // namespace zel::test
