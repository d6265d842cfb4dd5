#pragma once

#include "host/linearmapper.h"
#include "viewer/zel_frame.h"
#include "viewer/zel_imagecanvas3d.h"

#include <memory>

namespace zelviewer {

/// Makes a frame with its canvas ready to be shown by this program: titled, in true proportions unless `inVoxels` asks
/// for one pixel a voxel, with a use for the mouse, and as large as the image needs and the display has.
void PrepareFrame(zel::zel_Viewer3dFrame& frame, bool inVoxels);

/// The window of an image, with a mapper of its own. Takes the image.
template <typename T>
class ImageFrame : public zel::zel_Viewer3dFrame {
public:
    ImageFrame(std::unique_ptr<mor::Image4d<T>> image, bool inVoxels)
        : zel_Viewer3dFrame(nullptr, wxID_ANY, wxEmptyString, wxDefaultPosition, wxDefaultSize, wxDEFAULT_FRAME_STYLE),
          m_mapper(image->GetExtremes()) {
        auto* const canvas = new zel::zel_ImageViewer3dCanvas<T>(this, m_mapper, image.get(), true, wxID_ANY,
                                                                 wxDefaultPosition, wxDefaultSize);
        image.release(); // the canvas owns it
        SetCanvas(canvas);
        PrepareFrame(*this, inVoxels);
    }

private:
    LinearMapper<T> m_mapper;
};

} // namespace zelviewer
