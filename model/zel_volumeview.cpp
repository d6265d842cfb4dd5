#include "model/zel_volumeview.h"

#include "model/zel_trackball.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace zel {

namespace {

constexpr int sliceStep = 10;
constexpr float shareStep = 1.0F / 32.0F;

float More(float share) {
    return std::min(share + shareStep, 1.0F);
}
float Less(float share) {
    return std::max(share - shareStep, 0.0F);
}

} // namespace

void VolumeView::Step(VolumeStep step) {
    switch (step) {
    case VolumeStep::SwitchMode:
        isMovingPlane = !isMovingPlane;
        break;
    case VolumeStep::MoreSlices:
        sliceCount += sliceStep;
        break;
    case VolumeStep::FewerSlices:
        sliceCount = std::max(sliceCount - sliceStep, 0);
        break;
    case VolumeStep::MoreIntensity:
        intensity = More(intensity);
        break;
    case VolumeStep::LessIntensity:
        intensity = Less(intensity);
        break;
    case VolumeStep::MoreThreshold:
        threshold = More(threshold);
        break;
    case VolumeStep::LessThreshold:
        threshold = Less(threshold);
        break;
    }
}

void VolumeView::LookAlong(const ViewDirection& direction, float eyeDistance) {
    pose.objectMatrix = LookAlongMatrix(direction.forward, direction.up);
    pose.eyeDistance = eyeDistance;
}

void VolumeView::PressLeft(const Point& pointer, const Size& window) {
    isLeftDragging = true;
    action = isMovingPlane ? VolumeAction::RotatePlane : VolumeAction::RotateObject;
    lastSpherePoint = ProjectToSphere(pointer, window);
}

void VolumeView::ReleaseLeft() {
    isLeftDragging = false;
    action = VolumeAction::None;
    objectRotation.angle = planeRotation.angle = 0.0F;
}

void VolumeView::PressRight(const Point& pointer) {
    if (isRightDragging)
        return;
    isRightDragging = true;
    lastY = pointer.y;
}

void VolumeView::ReleaseRight() {
    isRightDragging = false;
}

bool VolumeView::Drag(const Point& pointer, const Size& window) {
    if (isLeftDragging) {
        const Vector3f place = ProjectToSphere(pointer, window);
        (isMovingPlane ? planeRotation : objectRotation) = RotationBetween(lastSpherePoint, place);
        lastSpherePoint = place;
    }
    if (isRightDragging) {
        const double moved = (pointer.y - lastY) * 0.01;
        lastY = pointer.y;
        if (isMovingPlane)
            pose.planeOffset -= moved;
        else
            pose.eyeDistance += static_cast<float>(moved);
    }
    return isLeftDragging || isRightDragging;
}

void VolumeView::Leave() {
    ReleaseLeft();
    ReleaseRight();
}

void VolumeView::Advance() {
    if (action == VolumeAction::RotateObject)
        pose.objectMatrix = Multiply(RotationMatrix(objectRotation), pose.objectMatrix);
    if (action == VolumeAction::RotatePlane) {
        // The plane turns with the object, so the eye's axis is wanted in the object's coordinates.
        const Vector3f axis = TurnDirection(InverseRotation(GetModelView()), planeRotation.axis);
        pose.planeMatrix = Multiply(RotationMatrix({planeRotation.angle, axis}), pose.planeMatrix);
    }
}

Matrix4 VolumeView::GetModelView() const {
    return Multiply(TranslationMatrix({0.0F, 0.0F, pose.eyeDistance}), pose.objectMatrix);
}

Vector3f VolumeView::GetEye() const {
    return TurnDirection(InverseRotation(pose.objectMatrix), {0.0F, 0.0F, -pose.eyeDistance});
}

std::string VolumeView::GetModeText() const {
    return isMovingPlane ? "Mode: Moving Plane" : "Mode: Moving Object";
}

std::string VolumeView::GetSettingsText() const {
    std::array<char, 128> text;
    const int length = std::snprintf(text.data(), text.size(), "# slices: %d, intensity: %f, threshold: %f", sliceCount,
                                     static_cast<double>(intensity), static_cast<double>(threshold));
    return {text.data(), static_cast<std::size_t>(length)};
}

} // namespace zel
