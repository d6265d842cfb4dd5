#pragma once

#include <cstddef>

namespace zelviewer {

/// One axis of the image, as a drawing window shows it.
struct ViewAxis {
    std::size_t voxels = 1;     ///< of the image
    float boxOffset = 0.0F;     ///< microns, where the image begins
    float resolution = 1.0F;    ///< voxels per micron
    float visibleOffset = 0.0F; ///< microns, where the window begins
    float visibleSize = 1.0F;   ///< microns
    float scale = 1.0F;         ///< pixels per micron
    int pixels = 1;             ///< of the window
    bool reversed = false;      ///< the window shows it mirrored
};

/// Where the pixel that is seen at a place of the window begins, microns.
float MicronsAt(const ViewAxis& axis, int pixel);

/// Middle of the voxel that is seen at a place of the window, microns; the nearest one for places beside the image.
float MiddleOfVoxelAt(const ViewAxis& axis, int pixel);

/// Middle of the voxel that lies `steps` voxels from the one that holds a position, or of the image's first or last.
float MiddleOfVoxelBeside(const ViewAxis& axis, float position, int steps);

/// What must be in the middle of the window so that a position, in microns as of MicronsAt, is seen at a pixel.
float CentreToShowAt(const ViewAxis& axis, float position, int pixel);

/// Makes whole notches of a wheel's turns, some of which come in parts of one.
class WheelNotches {
public:
    /// @param rotation  of one event, above 0 away from the user
    /// @param delta     of a whole notch
    /// @return how many notches became full
    int Turn(int rotation, int delta);

private:
    int m_rest = 0;
};

} // namespace zelviewer
