#include "model/zel_iconpicture.h"

#include "model/zel_truncate.h"

#include <algorithm>

namespace zel {

namespace {

Colour& PixelOf(ColourBuffer& buffer, int x, int y) {
    return buffer
        .data[static_cast<std::size_t>(y) * static_cast<std::size_t>(buffer.width) + static_cast<std::size_t>(x)];
}

const Colour& PixelOf(const ColourBuffer& buffer, int x, int y) {
    return buffer
        .data[static_cast<std::size_t>(y) * static_cast<std::size_t>(buffer.width) + static_cast<std::size_t>(x)];
}

void Blacken(ColourBuffer& buffer) {
    std::fill_n(buffer.data, buffer.GetCount(), Colour(0, 0, 0));
}

/// An extent divided by the proportion of the longer side of the picture to the shorter one.
int Shorter(int extent, int longer, int shorter) {
    const float proportion = static_cast<float>(longer) / static_cast<float>(shorter);
    return TruncToInt(static_cast<double>(static_cast<float>(extent) / proportion));
}

/// Size of the picture in the icon, where a side may be 0.
Size DrawnSize(const Size& picture, const Size& icon) {
    if (picture.x < 1 || picture.y < 1)
        return {};
    if (picture.x > picture.y)
        return {icon.x, Shorter(icon.y, picture.x, picture.y)};
    return {Shorter(icon.x, picture.y, picture.x), icon.y};
}

} // namespace

IconPlan PlanIcon(const Size& picture, const Size& icon) {
    IconPlan plan;
    const Size drawn = DrawnSize(picture, icon);
    plan.corner = {(icon.x - drawn.x + 1) / 2, (icon.y - drawn.y + 1) / 2};
    plan.opaque = picture.x > picture.y
                      ? Rect(0, plan.corner.y, icon.x, std::max(0, (drawn.y + icon.y) / 2 - plan.corner.y))
                      : Rect(plan.corner.x, 0, std::max(0, (drawn.x + icon.x) / 2 - plan.corner.x), icon.y);
    if (drawn.x < 1 || drawn.y < 1)
        return plan;
    plan.drawn = drawn;
    plan.step = {picture.x / drawn.x, picture.y / drawn.y};
    plan.firstFrom = {(picture.x - plan.step.x * drawn.x) / 2, (picture.y - plan.step.y * drawn.y) / 2};
    return plan;
}

void DrawIcon(const ColourBuffer& picture, const ViewOptions& options, ColourBuffer& icon) {
    Blacken(icon);
    const IconPlan plan = PlanIcon({picture.width, picture.height}, {icon.width, icon.height});
    for (int j = 0; j < plan.drawn.y; ++j) {
        const int row = plan.firstFrom.y + j * plan.step.y;
        for (int i = 0; i < plan.drawn.x; ++i) {
            const int column = plan.firstFrom.x + i * plan.step.x;
            PixelOf(icon, plan.corner.x + i, plan.corner.y + j) =
                PixelOf(picture, options.reversedX ? picture.width - 1 - column : column,
                        options.reversedY ? picture.height - 1 - row : row);
        }
    }
}

void DrawIconMask(const Size& picture, ColourBuffer& mask) {
    Blacken(mask);
    const Rect opaque = PlanIcon(picture, {mask.width, mask.height}).opaque;
    for (int y = opaque.y; y < opaque.y + opaque.height; ++y)
        for (int x = opaque.x; x < opaque.x + opaque.width; ++x)
            PixelOf(mask, x, y) = {255, 255, 255};
}

} // namespace zel
