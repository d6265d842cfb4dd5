#include "model/zel_view.h"

#include "model/zel_navigation.h"
#include "model/zel_truncate.h"

#include <algorithm>
#include <limits>

namespace zel {

namespace {

using Kind = ViewChange::Kind;

} // namespace

void View::TakeBox(const ImageGeometry& image) {
    boundingBox = {image.offset, kep::PixelsToMicrons(image.voxels, image.resolution)};
    for (const Axis axis : axes)
        At(cutStep, axis) = At(boundingBox.size, axis) / static_cast<float>(At(image.voxels, axis));
}

void View::Open(const ImageGeometry& image) {
    TakeBox(image);
    options.baseScale = image.resolution.GetUsable().GetRes();
    for (const Axis axis : axes) {
        const std::size_t middleVoxel = At(image.voxels, axis) / 2;
        At(options.cut, axis) =
            At(boundingBox.offset, axis) + (static_cast<float>(middleVoxel) + 0.5F) * At(cutStep, axis);
    }
}

void View::TakeChangedImage(const ImageGeometry& image) {
    TakeBox(image);
    const float isotropic = image.resolution.GetUsable().GetRes().x;
    options.baseScale = {isotropic, isotropic, isotropic};
}

void View::SetOptions(const ViewOptions& newOptions) {
    options = newOptions;
    if (IsStrictlyInside(options.cut))
        return;
    for (const Axis axis : axes)
        At(options.cut, axis) = At(boundingBox.offset, axis) + At(boundingBox.size, axis) / 2.0F;
}

std::optional<PerPlane<Rect>> View::Arrange(const Size& client, int border) {
    scale = ScaleAtZoom(options.baseScale, options.zoom);
    ViewLayoutInput input;
    input.client = client;
    input.border = border;
    for (const Plane& plane : planes)
        input.shown[plane.type] = options.Shown(plane.type);
    input.boundingBox = boundingBox;
    input.visibleBox = visibleBox;
    input.scale = scale;
    ViewLayout layout;
    if (!ComputeViewLayout(input, layout))
        return std::nullopt;
    visibleBox = layout.visibleBox;
    scrollStep = layout.scrollStep;
    return layout.windows;
}

Size View::GetFullSize(const Plane& plane) const {
    const auto along = [this](Axis axis) { return PixelsAlong(At(boundingBox.size, axis), At(scale, axis)); };
    return {along(plane.horizontal), along(plane.vertical)};
}

ViewChange View::SetZoom(int zoom) {
    options.zoom = zoom;
    return {Kind::Layout, zel_PT_ALL};
}

ViewChange View::ZoomIn() {
    return SetZoom(options.zoom < std::numeric_limits<int>::max() ? options.zoom + 1 : options.zoom);
}

ViewChange View::ZoomOut() {
    return SetZoom(options.zoom > std::numeric_limits<int>::min() ? options.zoom - 1 : options.zoom);
}

ViewChange View::NormalZoom() {
    return SetZoom(0);
}

ViewChange View::Show(zel_ProjectionType mask, bool show) {
    for (const Plane& plane : planes)
        if ((mask & plane.type) != 0)
            options.Shown(plane.type) = show;
    return {Kind::Layout, zel_PT_ALL};
}

ViewChange View::SetContent(zel_ProjectionContent content, zel_ProjectionType mask) {
    for (const Plane& plane : planes)
        if ((mask & plane.type) != 0)
            options.Content(plane.type) = content;
    return {Kind::Content, mask};
}

ViewChange View::ToggleReversed(Axis axis) {
    options.Reversed(axis) = !options.Reversed(axis);
    return {Kind::Mirrored, PlanesAlong(axis), axis};
}

bool View::IsStrictlyInside(const kep::Vector3d<float>& point) const {
    return std::all_of(axes.begin(), axes.end(), [&](Axis axis) {
        const float low = At(boundingBox.offset, axis);
        return low < At(point, axis) && At(point, axis) < low + At(boundingBox.size, axis);
    });
}

ViewChange View::MoveCut(const kep::Vector3d<float>& point) {
    if (!IsStrictlyInside(point))
        return {};
    options.cut = point;
    return {Kind::Cut, zel_PT_ALL};
}

void View::MoveCutAlong(Axis axis, float at) {
    At(options.cut, axis) = HoldInBox(at, At(boundingBox.offset, axis), At(boundingBox.size, axis));
}

ViewChange View::MoveCutIn(const Plane& plane, float horizontal, float vertical) {
    MoveCutAlong(plane.horizontal, horizontal);
    MoveCutAlong(plane.vertical, vertical);
    return {Kind::Cut, PlanesBeside(plane)};
}

ViewChange View::MoveCutThrough(const Plane& plane, float third) {
    MoveCutAlong(plane.third, third);
    return {Kind::Cut, plane.type};
}

ViewChange View::StepCutBack(const Plane& plane) {
    float& cut = At(options.cut, plane.third);
    const auto moved = zel::StepCutBack(cut, At(boundingBox.offset, plane.third), At(cutStep, plane.third));
    if (!moved)
        return {};
    cut = *moved;
    return {Kind::Cut, plane.type};
}

ViewChange View::StepCutForward(const Plane& plane) {
    float& cut = At(options.cut, plane.third);
    const auto moved = zel::StepCutForward(cut, At(boundingBox.offset, plane.third), At(boundingBox.size, plane.third),
                                           At(cutStep, plane.third));
    if (!moved)
        return {};
    cut = *moved;
    return {Kind::Cut, plane.type};
}

ViewChange View::ScrollBack(Axis axis) {
    float& offset = At(visibleBox.offset, axis);
    const auto moved = zel::ScrollBack(offset, At(boundingBox.offset, axis), At(scrollStep, axis));
    if (!moved)
        return {};
    offset = *moved;
    return {Kind::Visible, PlanesAlong(axis)};
}

ViewChange View::ScrollForward(Axis axis) {
    float& offset = At(visibleBox.offset, axis);
    const auto moved = zel::ScrollForward(offset, At(visibleBox.size, axis), At(boundingBox.offset, axis),
                                          At(boundingBox.size, axis), At(scrollStep, axis));
    if (!moved)
        return {};
    offset = *moved;
    return {Kind::Visible, PlanesAlong(axis)};
}

void View::CentreAxisOn(Axis axis, float at) {
    const float boxOffset = At(boundingBox.offset, axis);
    const float boxSize = At(boundingBox.size, axis);
    const float inBox = HoldInBox(at, boxOffset, boxSize); // for NaN; else ClampCenter holds it anyway
    At(visibleBox.offset, axis) = ClampCenter(inBox, At(visibleBox.size, axis), boxOffset, boxSize);
}

ViewChange View::CentreOn(const Plane& plane, float horizontal, float vertical) {
    CentreAxisOn(plane.horizontal, horizontal);
    CentreAxisOn(plane.vertical, vertical);
    return {Kind::Visible, zel_PT_ALL};
}

ViewChange View::CentreOnCut() {
    for (const Axis axis : axes)
        CentreAxisOn(axis, At(options.cut, axis));
    return {Kind::Visible, zel_PT_ALL};
}

ViewChange View::CentreOnCutIfOut() {
    const bool isVisible = std::all_of(axes.begin(), axes.end(), [this](Axis axis) {
        const float low = At(visibleBox.offset, axis);
        return low <= At(options.cut, axis) && At(options.cut, axis) <= low + At(visibleBox.size, axis);
    });
    return isVisible ? ViewChange{} : CentreOnCut();
}

kep::Vector3d<float> View::GetSliceOffset(const Plane& plane) const {
    kep::Vector3d<float> offset = visibleBox.offset;
    const bool isAutofocus = options.Content(plane.type) == zel_PC_AUTOFOCUS;
    At(offset, plane.third) = isAutofocus ? 0.0F : At(options.cut, plane.third);
    return offset;
}

bool View::IsShown(zel_ProjectionType mask) const {
    return std::all_of(planes.begin(), planes.end(),
                       [&](const Plane& plane) { return (mask & plane.type) == 0 || options.Shown(plane.type); });
}

bool View::IsAnyShown() const {
    return std::any_of(planes.begin(), planes.end(), [&](const Plane& plane) { return options.Shown(plane.type); });
}

zel_ProjectionContent View::GetContent(zel_ProjectionType type) const {
    if (FindPlane(type) != nullptr)
        return options.Content(type);
    const bool isAllAutofocus = std::all_of(planes.begin(), planes.end(), [&](const Plane& plane) {
        return options.Content(plane.type) == zel_PC_AUTOFOCUS;
    });
    return isAllAutofocus ? zel_PC_AUTOFOCUS : zel_PC_CUT;
}

float View::HorizontalMicrons(const Plane& plane, int x, int windowWidth) const {
    const int unmirrored = MirrorWindowCoordinate(x, windowWidth, options.reversedX);
    return static_cast<float>(unmirrored) / At(scale, plane.horizontal) + At(visibleBox.offset, plane.horizontal);
}

float View::VerticalMicrons(const Plane& plane, int y, int windowHeight) const {
    const int unmirrored = MirrorWindowCoordinate(y, windowHeight, options.reversedY);
    return static_cast<float>(unmirrored) / At(scale, plane.vertical) + At(visibleBox.offset, plane.vertical);
}

} // namespace zel
