#pragma once

#include "core/kepalgo/kep_neighbourhood.h"
#include "core/kepcore/kep_image3d.h"

#include <cstddef>
#include <map>

/// Types of labels with the voxel types of the images that they come from; X is called with each pair.
#define KEP_LABEL_TYPES(X)                                                                                             \
    X(unsigned short, unsigned char)                                                                                   \
    X(unsigned short, unsigned short)                                                                                  \
    X(unsigned short, bool)

namespace kep {

/// What is known of one component of a labelled frame. L is the type of labels, V that of the source image's voxels.
template <typename L, typename V>
struct KEP_EXPORT ComponentInfo {
    using Box = VOI<T_pair<std::size_t, std::size_t>>; ///< in voxels of the frame

    ComponentInfo() = default;
    /// A component as it was counted.
    ComponentInfo(const Box& box, std::size_t voxels, V value, bool onBorder)
        : voi(box), volume(voxels), border(onBorder), voxel_value(value) {}

    Box voi;                ///< bounding box, voxels
    std::size_t volume = 0; ///< number of voxels
    bool border = false;    ///< some voxel lies on the frame's border, see Image3d::OnBorder
    V voxel_value{};        ///< of the first voxel, in index order, in the source image

    friend bool operator==(const ComponentInfo& a, const ComponentInfo& b) = default; ///< of all fields
};

/// A frame whose voxels are labels, with a table of what carries each label. Label 0 is the background and has no
/// entry. Whoever writes to voxels keeps the table true.
template <typename L, typename V>
class KEP_EXPORT LabeledImage3d : public Image3d<L> {
public:
    using Component = ComponentInfo<L, V>; ///< what the table holds

    /// An empty frame. Null pointers give offset (0, 0, 0) and no resolution; others are copied from.
    explicit LabeledImage3d(const Vector3d<float>* offset = nullptr, const Resolution* res = nullptr);
    /// @{
    /// Deep: voxels and table.
    LabeledImage3d(const LabeledImage3d& src);
    LabeledImage3d& operator=(const LabeledImage3d& src);
    /// @}
    /// What is moved from is an empty frame without components then.
    LabeledImage3d(LabeledImage3d&& src) noexcept;
    LabeledImage3d& operator=(LabeledImage3d&& src) noexcept; ///< as the move constructor; what was here goes
    ~LabeledImage3d() override;

    /// As in Image3d; with a new block of voxels the components go.
    void MakeRoom(std::size_t x, std::size_t y, std::size_t z);
    /// As in Image3d; the components go.
    void DisposeData();

    /// Makes this the labelled frame of an image: each connected set of voxels that are not 0, whatever their values,
    /// gets a label from 1 upward, in the order of the sets' first voxels. Takes the image's size, offset, resolution
    /// and description. What the frame held before goes. `image` may be this frame.
    ///
    /// A few passes over the image; takes 12 bytes for each run of such voxels along x.
    /// @throws LibException("CreateForegroundRegionsFF(): More than 65535 components."), or too many voxels;
    ///         std::bad_alloc. The frame is then left without voxels and components.
    void CreateForegroundRegionsFF(const Image3d<V>& image, const Neighbourhood& nb);

    /// Makes this the labelled frame of an image whose voxels are labels already: takes them as they are, with the
    /// image's size, offset, resolution and description, and makes the table of what it finds. One label may lie in
    /// many pieces. What the frame held before goes. `image` may be this frame. Two passes over the image.
    /// @throws std::bad_alloc; the frame is then left without voxels and components
    void CreateRegionsOfLabels(const Image3d<V>& image);

    using Image3d<L>::SaveImage;
    /// Writes the labels as 16-bit numbers, packed, into a file that appears only when it is whole. The table is not
    /// written: CreateRegionsOfLabels makes it anew.
    /// @param fileName  in the file system's encoding
    /// @param format    FF_LABELED and FF_BY_NAME go by the suffix of the name
    /// @return what the file lacks of the description, as Image3d's
    /// @throws IOException
    std::string SaveImage(const char* fileName, FileFormat format) const;

    std::map<L, Component> components; ///< the table, by label

private:
    void TakePlace(const Image3d<V>& image);
};

#define KEP_DECLARE(L, V) extern template class LabeledImage3d<L, V>;
KEP_LABEL_TYPES(KEP_DECLARE)
#undef KEP_DECLARE

} // namespace kep
