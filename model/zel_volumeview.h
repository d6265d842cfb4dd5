#pragma once

#include "model/zel_clippingplane.h"
#include "model/zel_export.h"
#include "model/zel_geometry.h"
#include "model/zel_matrix.h"

#include <array>
#include <string>

namespace zel {

/// Where the volume and its clipping plane stand: what a view file keeps.
struct VolumePose {
    float eyeDistance = -5.0F;             ///< z of the whole scene before the eye
    Matrix4 objectMatrix = identityMatrix; ///< a rotation, column by column
    double planeOffset = 1.0;              ///< of the clipping plane, along the first column of its matrix
    Matrix4 planeMatrix = identityMatrix;  ///< in the object's coordinates

    friend bool operator==(const VolumePose&, const VolumePose&) = default; ///< exact
};

/// A direction to look along, and what is upwards on the screen then.
struct ViewDirection {
    Vector3f forward; ///< of length 1
    Vector3f up;      ///< of length 1, at a right angle to `forward`
};

/// Along x, against x, along y, against y, along z, against z: the order of the menu.
inline constexpr std::array<ViewDirection, 6> viewDirections{{{{1, 0, 0}, {0, 1, 0}},
                                                              {{-1, 0, 0}, {0, 1, 0}},
                                                              {{0, 1, 0}, {0, 0, -1}},
                                                              {{0, -1, 0}, {0, 0, -1}},
                                                              {{0, 0, 1}, {0, 1, 0}},
                                                              {{0, 0, -1}, {0, 1, 0}}}};
/// Eye distance of these views.
inline constexpr float viewDirectionDistance = -5.0F;

/// What a drag with the left button turns.
enum class VolumeAction : int { None = 0, RotateObject = 1, RotatePlane = 2 };

/// What a key does to the view.
enum class VolumeStep {
    SwitchMode,    ///< the mouse moves the plane, or the object again
    MoreSlices,    ///< by 10
    FewerSlices,   ///< by 10, down to 0
    MoreIntensity, ///< by 1/32, up to 1
    LessIntensity, ///< by 1/32, down to 0
    MoreThreshold, ///< by 1/32, up to 1
    LessThreshold  ///< by 1/32, down to 0
};

/// What is drawn in the volume view and how the mouse changes it. A new one is the view as it is after a reset.
struct ZEL_EXPORT VolumeView {
    int sliceCount = 100;         ///< sheets on which the volume is drawn
    float intensity = 0.5F;       ///< alpha of the sheets, 0 to 1
    float threshold = 0.5F;       ///< share of the intensity that a voxel's alpha must exceed to be seen, 0 to 1
    bool isLeftDragging = false;  ///< the left button is down
    bool isRightDragging = false; ///< the right button is down
    Vector3f lastSpherePoint;     ///< of the pointer in a left drag
    int lastY = 0;                ///< of the pointer in a right drag, pixels
    Rotation objectRotation;      ///< pending: each Advance applies it as long as the object is rotated
    Rotation planeRotation;       ///< likewise, for the plane
    VolumeAction action = VolumeAction::None; ///< what a left drag turns
    bool isMovingPlane = false;               ///< the mouse moves the plane and not the object
    VolumePose pose;                          ///< what a view file keeps
    bool showsBox = true;                     ///< the edges of the volume are drawn
    bool showsPlane = true;                   ///< the square of the clipping plane is drawn
    std::array<float, 3> background{};        ///< red, green, blue, 0 to 1

    void Step(VolumeStep step); ///< what a key does

    /// Turns the object so that it is seen along a direction. The plane keeps its place in the object.
    void LookAlong(const ViewDirection& direction, float eyeDistance);

    // The mouse. Pointers are in pixels from the window's top left corner.

    void PressLeft(const Point& pointer, const Size& window); ///< begins to turn the object, or the plane
    void ReleaseLeft();                                       ///< ends it and the pending rotations
    void PressRight(const Point& pointer); ///< begins to move the object, or the plane; ignored while it is down
    void ReleaseRight();                   ///< ends it
    /// A left drag makes a pending rotation of what is moved, a right drag moves it: the object along the line of sight
    /// by 0.01 a pixel, towards the viewer when dragged downwards, the plane against its offset.
    /// @return whether anything is dragged, so that the picture changes
    bool Drag(const Point& pointer, const Size& window);
    /// The pointer leaves the window: nothing is dragged any more.
    void Leave();

    /// Applies the pending rotation, from the left: about axes of the eye. It belongs at the start of every paint, and
    /// the rotation stays pending, so a picture that is painted twice turns twice.
    void Advance();

    /// From the object to places before the eye.
    Matrix4 GetModelView() const;
    /// Where the eye is, in the object's coordinates.
    Vector3f GetEye() const;

    /// "Mode: Moving Object" or "Mode: Moving Plane".
    std::string GetModeText() const;
    /// "# slices: 100, intensity: 0.500000, threshold: 0.500000", with the decimal point of the C library's locale.
    std::string GetSettingsText() const;
};

} // namespace zel
