#pragma once

#include "image/zel_labeledimage4d.h"
#include "model/zel_planes.h"
#include "overlay/zel_overlayingmodule.h"

#include <memory>
#include <vector>

namespace zel {

/// The library's overlayer: paints the labels of a sequence over the pictures of an image, matched by their place in
/// microns. Exists for the types of KEP_LABEL_TYPES.
///
/// Of a cut the labels under the pixels are kept with their boundaries marked; it is made anew each time. The
/// projections of a frame's labels are computed once and kept for good: they do not follow changes of the voxels.
/// Labels from 32768 on lose their highest bit in a picture, and look like boundaries there.
template <typename L, typename V>
class ZEL_EXPORT zel_BasicOverlayingModule : public zel_OverlayingModule<L, V> {
public:
    /// @param frame      gets the events; null until the module is added to one
    /// @param image      one labelled frame for each frame of the picture; a frame beyond the last has no labels, and
    ///                   frames may be added later. May be null: then there are no labels at all
    /// @param ownsImage  the module deletes the image when it goes; else the host keeps it alive as long as the module
    zel_BasicOverlayingModule(wxFrame* frame, mor::LabeledImage4d<L, V>* image, bool ownsImage);
    ~zel_BasicOverlayingModule() override;

    void Overlay(std::size_t buffer, ColourBuffer& picture) const override;
    /// Does nothing. @return false
    bool SetPosition(bool, const wxString& name, const wxRect* rectangle) override;
    /// Does nothing: there is nothing to load anew. @return false
    bool LoadOverlay(bool, const kep::Vector3d<std::size_t>& size, const kep::Vector3d<float>& offset,
                     const kep::Resolution& resolution) override;
    /// True for a frame beyond the last, and for one without voxels.
    bool IsEmpty(bool, std::size_t frame) const override;
    std::size_t Buffer_Create(zel_OverlayWindowType type) override;
    /// @param buffer                    is not checked
    /// @param size, offset, resolution  as in zel_Overlayer
    void Buffer_SetDim(std::size_t buffer, const kep::Vector3d<std::size_t>& size, const kep::Vector3d<float>& offset,
                       const kep::Vector3d<float>& resolution) override;
    /// An index beyond the last buffer and a frame without labels do nothing; the buffer then keeps what it has.
    void Buffer_Render(std::size_t buffer, std::size_t frame) override;
    /// Null for a frame beyond the last.
    const kep::LabeledImage3d<L, V>* GetLabeledImage(bool, bool, std::size_t frame) const override;
    /// @param buffer, position  are not checked; the buffer has been rendered
    L Buffer_GetValue(std::size_t buffer, const kep::Vector3d<std::size_t>& position) const override;

    /// Null beyond the last.
    const zel_OverlayBuffer<L>* GetBuffer(std::size_t buffer) const;

    /// Hands the image over to the module, or back to the caller.
    void SetOwnsImage(bool ownsImage) { m_ownsImage = ownsImage; }

    /// The bit of a label picture's pixel that marks a boundary.
    static L GetHighestBit();

protected:
    /// Marks the boundaries in layer 0 of a buffer. @param buffer  is not checked
    void ComputeBoundary(std::size_t buffer);

private:
    /// The projections of all frames on one plane.
    struct Projections {
        std::vector<kep::Image3d<unsigned short>> labels;   ///< the largest label along the line of sight
        std::vector<kep::Image3d<unsigned short>> outlines; ///< what of it borders on another label
        std::vector<bool> computed;                         ///< one for each frame
        void Resize(std::size_t frames);
    };

    void RenderWhole(zel_OverlayBuffer<L>& buffer, std::size_t frame);
    void RenderCut(std::size_t buffer, std::size_t frame);
    void RenderProjection(zel_OverlayBuffer<L>& buffer, std::size_t frame);
    const Projections& GetProjections(zel_ProjectionType plane, const kep::LabeledImage3d<L, V>& labels,
                                      std::size_t frame);

    mor::LabeledImage4d<L, V>* m_image;
    bool m_ownsImage;
    PerPlane<Projections> m_projections;
    std::vector<std::unique_ptr<zel_OverlayBuffer<L>>> m_buffers;
};

#define ZEL_DECLARE(L, V) extern template class zel_BasicOverlayingModule<L, V>;
KEP_LABEL_TYPES(ZEL_DECLARE)
#undef ZEL_DECLARE

} // namespace zel
