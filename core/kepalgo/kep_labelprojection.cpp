#include "core/kepalgo/kep_labelprojection.h"

#include "core/kepalgo/kep_projection.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace kep {

namespace {

using Label = unsigned short;
using Picture = Image3d<Label>;

/// Clears every pixel of a picture that is surrounded by its like.
void KeepOutlines(Label* pixels, std::size_t width, std::size_t height) {
    const std::vector<Label> whole(pixels, pixels + width * height);
    for (std::size_t y = 1; y + 1 < height; ++y) {
        const Label* const row = whole.data() + y * width;
        const Label* const above = row - width;
        const Label* const below = row + width;
        Label* const to = pixels + y * width;
        for (std::size_t x = 1; x + 1 < width; ++x) {
            const Label label = row[x];
            const bool surrounded =
                row[x - 1] == label && row[x + 1] == label && above[x] == label && below[x] == label;
            to[x] = surrounded ? Label{0} : label;
        }
    }
}

/// A projection of plain frames, and how wide its pictures are.
struct Projection {
    void (*project)(const Picture& src, Picture& dst);
    std::size_t Vector3d<std::size_t>::*width;
};

void Project(const Projection& way, const Picture& src, Picture& dst, const bool* mask, bool outlinesAlone) {
    if (mask == nullptr) {
        way.project(src, dst);
    } else {
        Picture shown(src);
        std::replace_if(
            shown.begin(), shown.end(), [mask](Label label) { return !mask[label]; }, Label{0});
        way.project(shown, dst);
    }
    if (outlinesAlone && !dst.IsEmpty())
        KeepOutlines(dst.begin(), dst.size.*way.width, dst.GetNumVoxels() / dst.size.*way.width);
}

} // namespace

template <typename L, typename V>
void Get_Labeled_AF_XY(const LabeledImage3d<L, V>& src, Picture& dst, const bool* const mask, bool secondKind) {
    Project({Get_AF_XY<L>, &Vector3d<std::size_t>::x}, src, dst, mask, secondKind);
}

template <typename L, typename V>
void Get_Labeled_AF_XZ(const LabeledImage3d<L, V>& src, Picture& dst, const bool* const mask, bool secondKind) {
    Project({Get_AF_XZ<L>, &Vector3d<std::size_t>::x}, src, dst, mask, secondKind);
}

template <typename L, typename V>
void Get_Labeled_AF_YZ(const LabeledImage3d<L, V>& src, Picture& dst, const bool* const mask, bool secondKind) {
    Project({Get_AF_YZ<L>, &Vector3d<std::size_t>::y}, src, dst, mask, secondKind);
}

#define KEP_INSTANTIATE(L, V)                                                                                          \
    template void Get_Labeled_AF_XY<L, V>(const LabeledImage3d<L, V>&, Image3d<unsigned short>&, const bool*, bool);   \
    template void Get_Labeled_AF_XZ<L, V>(const LabeledImage3d<L, V>&, Image3d<unsigned short>&, const bool*, bool);   \
    template void Get_Labeled_AF_YZ<L, V>(const LabeledImage3d<L, V>&, Image3d<unsigned short>&, const bool*, bool);
KEP_LABEL_TYPES(KEP_INSTANTIATE)
#undef KEP_INSTANTIATE

} // namespace kep
