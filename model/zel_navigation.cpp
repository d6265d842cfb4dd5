#include "model/zel_navigation.h"

#include <algorithm>

namespace zel {

std::optional<float> ScrollBack(float visibleOffset, float boxOffset, float step) {
    if (visibleOffset > boxOffset)
        return std::max(visibleOffset - step, boxOffset);
    return std::nullopt;
}

std::optional<float> ScrollForward(float visibleOffset, float visibleSize, float boxOffset, float boxSize, float step) {
    const float top = boxOffset + boxSize - visibleSize;
    if (visibleOffset < top)
        return std::min(visibleOffset + step, top);
    return std::nullopt;
}

std::optional<float> StepCutBack(float cut, float boxOffset, float step) {
    const float low = boxOffset + step * 0.5F;
    if (cut > low)
        return std::max(cut - step, low);
    return std::nullopt;
}

std::optional<float> StepCutForward(float cut, float boxOffset, float boxSize, float step) {
    const float high = boxOffset + boxSize - step * 0.5F;
    if (cut < high)
        return std::min(cut + step, high);
    return std::nullopt;
}

float HoldInBox(float at, float boxOffset, float boxSize) {
    return std::min(std::max(boxOffset, at), boxOffset + boxSize); // in this order, which NaN does not pass
}

} // namespace zel
