#pragma once

#include "histogram/zel_histogramset.h"
#include "host/labels.h"
#include "host/options.h"
#include "image/zel_image4d.h"
#include "model/zel_complexparts.h"
#include "viewer/zel_frame.h"

#include <functional>
#include <memory>
#include <optional>

class WXDLLIMPEXP_FWD_BASE wxFileConfig;

namespace zelviewer {

/// How a window shows its image at the start.
struct FirstLook {
    std::optional<Stretch> stretch = std::nullopt;       ///< none: as suits the image
    bool inVoxels = false;                               ///< one pixel a voxel instead of true proportions
    std::optional<zel::ComplexMode> part = std::nullopt; ///< of complex images; none: the first that varies
    bool outlines = false;                               ///< labels are outlined from the start, instead of hidden
    bool fillsDisplay = false;                           ///< the picture is scaled to fill two thirds of the display
};

/// Makes the window of an image, ready to be shown: titled, with a use for the mouse, and as large as the image needs
/// and the display has. Exists for the types of KEP_DISPLAY_TYPES.
///
/// Opening makes no copy of the image; its histograms take some megabytes.
/// @param image   the window takes it
/// @param labels  likewise, and then it has a menu for them; null for none
/// @param progress  told how much of the image is counted; false from it stops. None: the library shows a notice.
/// @param counted   the histograms of the whole image; null: they are counted here
/// @throws kep::InternalException in words for the user, for a part that is asked for and does not vary;
///         kep::ReadingStopped; std::bad_alloc. No window is left then.
template <typename T>
zel::zel_Viewer3dFrame* MakeFrame(std::unique_ptr<mor::Image4d<T>> image, const FirstLook& look,
                                  std::unique_ptr<Labels> labels = nullptr, std::function<bool(double)> progress = {},
                                  const zel::HistogramSet<T>* counted = nullptr);

/// The part of it that does not ask what the voxels are: takes any frame of the viewer that has its canvas.
void PrepareFrame(zel::zel_Viewer3dFrame& frame, const FirstLook& look);

/// Shows a colour image by the mapping that an earlier run has left in the configuration, if there is one; other
/// images have none. To be called before the frame is shown.
void ReadColours(zel::zel_Viewer3dFrame& frame, wxFileConfig& config);
/// Leaves it there.
void WriteColours(zel::zel_Viewer3dFrame& frame, wxFileConfig& config);

} // namespace zelviewer
