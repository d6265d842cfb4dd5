#include "bench/support/comparison.h"
#include "bench/support/sample_frames.h"
#include "core/kepalgo/kep_labeledimage3d.h"
#include "core/kepalgo/kep_labelprojection.h"

#include <algorithm>
#include <memory>

namespace {

/// A corner of the sample frame, 256 x 256 x 64, set where it is brighter than a threshold.
template <typename V>
std::shared_ptr<const kep::Image3d<V>> MakeThresholded(int threshold) {
    const kep::VOI<kep::T_pair<int, std::size_t>> corner(0, 0, 0, 256, 256, 64);
    const kep::Image3d<unsigned short> cells(*GetSampleFrame<unsigned short>(), &corner);
    const auto image = std::make_shared<kep::Image3d<V>>();
    image->MakeRoom(256, 256, 64);
    std::transform(cells.begin(), cells.end(), image->begin(),
                   [threshold](unsigned short number) { return static_cast<V>(number > threshold ? 1 : 0); });
    return image;
}

template <typename V>
using Labels = kep::LabeledImage3d<unsigned short, V>;

/// @param work  called with labels and the image that they are made of
template <typename V, typename Work>
void AddLabelling(const std::string& name, int threshold, bool newFrame, double limit, Work work) {
    AddComparison(name, [=] {
        const auto image = MakeThresholded<V>(threshold);
        const std::size_t bytes = image->GetNumVoxels() * sizeof(V);
        const auto kept = std::make_shared<Labels<V>>();
        return Comparison{.work = [=] { work(newFrame ? *std::make_shared<Labels<V>>() : *kept, *image); },
                          .yardstick = [=] { ReadOnce(image->begin(), bytes); },
                          .unit = "passes",
                          .limit = limit,
                          .bytes = bytes};
    });
}

template <typename V>
void AddLabellings(const std::string& type) {
    const auto fill = [](Labels<V>& labels, const kep::Image3d<V>& image) {
        labels.CreateForegroundRegionsFF(image, kep::nb3D_6);
    };
    const auto take = [](Labels<V>& labels, const kep::Image3d<V>& image) { labels.CreateRegionsOfLabels(image); };
    // Cells alone, and with the noise that a low threshold lets through.
    AddLabelling<V>("flood fill of cells " + type, 300, false, 10, fill);
    AddLabelling<V>("flood fill of specks " + type, 140, false, 10, fill);
    AddLabelling<V>("flood fill into a new frame " + type, 300, true, 10, fill);
    AddLabelling<V>("labels as stored " + type, 300, false, 10, take);
}

void AddLabelProjection(const std::string& name, bool secondKind) {
    AddComparison(name, [secondKind] {
        const auto labels = std::make_shared<Labels<unsigned char>>();
        labels->CreateForegroundRegionsFF(*MakeThresholded<unsigned char>(300), kep::nb3D_6);
        const auto dst = std::make_shared<kep::Image3d<unsigned short>>();
        const std::size_t bytes = labels->GetNumVoxels() * sizeof(unsigned short);
        return Comparison{.work = [=] { kep::Get_Labeled_AF_XY(*labels, *dst, nullptr, secondKind); },
                          .yardstick = [=] { ReadOnce(labels->begin(), bytes); },
                          .unit = "passes",
                          .limit = 1.5,
                          .bytes = bytes};
    });
}

[[maybe_unused]] const bool added = [] {
    AddLabellings<unsigned char>("uint8");
    AddLabellings<unsigned short>("uint16");
    AddLabellings<bool>("bool");
    AddLabelProjection("Get_Labeled_AF_XY", false);
    AddLabelProjection("Get_Labeled_AF_XY outlines", true);
    return true;
}();

} // namespace
