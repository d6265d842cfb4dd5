#pragma once

#include "host/labels.h"
#include "image/zel_image4d.h"
#include "model/zel_composition.h"
#include "model/zel_mapper.h"
#include "model/zel_view.h"
#include "overlay/zel_basicoverlayingmodule.h"

#include <memory>
#include <vector>

namespace zelviewer {

/// Makes the pictures of an image's planes without a window, by the steps that a window's go through: the voxels under
/// the pixels are cut out of a frame, mapped to colours, outlined where there are labels, and turned for the eye.
/// Exists for the types of KEP_DISPLAY_TYPES.
template <typename T>
class PlanePainter {
public:
    /// @param image, mapper  must live as long as this
    /// @param labels         null for none
    PlanePainter(const mor::Image4d<T>& image, const zel::zel_Mapper<T>& mapper, std::unique_ptr<Labels> labels);

    /// @param window  size of the picture, pixels
    /// @return pixels that are valid until the next picture of this plane
    zel::PictureSource Paint(const zel::View& view, const zel::Plane& plane, const zel::Size& window,
                             std::size_t frame);

private:
    struct Picture {
        Picture() = default;
        kep::Image3d<T> slice;
        zel::ColourBuffer buffer{0, 0};
        std::vector<zel::Colour> turned;
        std::size_t labels = 0; ///< the overlayer's buffer
    };

    void Outline(Picture& picture, std::size_t frame);

    const mor::Image4d<T>& m_image;
    const zel::zel_Mapper<T>& m_mapper;
    std::unique_ptr<zel::zel_BasicOverlayingModule<unsigned short, unsigned short>> m_overlayer;
    zel::PerPlane<Picture> m_pictures;
};

} // namespace zelviewer
