#pragma once

#include "image/kep.h"
#include "model/zel_mapper.h"
#include "model/zel_palette.h"
#include "overlay/zel_overlaybuffer.h"

#include <wx/gdicmn.h>
#include <wx/string.h>

#include <cstddef>

namespace zel {

/// Paints labels over the pictures of a labelled canvas, which needs not know where they come from. A host can derive
/// its own; zel_BasicOverlayingModule is the library's. Exists for the types of KEP_LABEL_TYPES.
///
/// For each drawing window there are buffers, told by their index. A window gives its pixels' place to Buffer_SetDim,
/// has the labels there put into the buffer by Buffer_Render, and lets Overlay paint them over its picture.
template <typename L, typename V>
class ZEL_EXPORT zel_Overlayer {
public:
    zel_Overlayer() = default;
    /// Shallow, as the assignment: both then hold one palette, and only one of them may be destroyed.
    zel_Overlayer(const zel_Overlayer& other) = default;
    zel_Overlayer& operator=(const zel_Overlayer& other) = default; ///< shallow

    virtual ~zel_Overlayer();

    /// Paints the labels of a buffer over a picture of the same size, rows from top to bottom. Does nothing while
    /// overlaying is off.
    virtual void Overlay(std::size_t buffer, ColourBuffer& picture) const = 0;
    /// For overlayers that find their labels by place and name.
    virtual bool SetPosition(bool, const wxString& name, const wxRect* rectangle) = 0;
    /// Loads the labels anew; the user has asked for it. The size is that of the image, offset in microns.
    virtual bool LoadOverlay(bool, const kep::Vector3d<std::size_t>& size, const kep::Vector3d<float>& offset,
                             const kep::Resolution& resolution) = 0;
    /// Whether a frame has no labels at all. It is then shown as if there were no overlayer.
    virtual bool IsEmpty(bool, std::size_t frame) const = 0;
    /// @return the new buffer's index
    virtual std::size_t Buffer_Create(zel_OverlayWindowType type) = 0;
    /// Tells a buffer what its window shows.
    /// @param buffer      as Buffer_Create has numbered it
    /// @param size        flat, one voxel a pixel
    /// @param offset      microns
    /// @param resolution  pixels per micron
    virtual void Buffer_SetDim(std::size_t buffer, const kep::Vector3d<std::size_t>& size,
                               const kep::Vector3d<float>& offset, const kep::Vector3d<float>& resolution) = 0;
    /// Puts the labels of a frame into a buffer.
    virtual void Buffer_Render(std::size_t buffer, std::size_t frame) = 0;
    /// The labels of a frame, which stay the overlayer's; null for none.
    virtual const kep::LabeledImage3d<L, V>* GetLabeledImage(bool, bool, std::size_t frame) const = 0;
    /// The label of a voxel in a buffer, 0 for none.
    virtual L Buffer_GetValue(std::size_t buffer, const kep::Vector3d<std::size_t>& position) const = 0;

    // What the user has chosen. The setters repaint nothing: a zel_OverlayingEvent at the frame does.

    /// Whether labels are painted.
    bool GetOverlaying() const { return m_overlaying; }
    /// Whether labels are painted, and surfaces in the volume window drawn.
    void SetOverlaying(bool overlaying) { m_overlaying = overlaying; }
    /// 0: labels cover the image. 1: only their boundaries are left.
    float GetTransparency() const { return m_transparency; }
    void SetTransparency(float transparency) { m_transparency = transparency; } ///< 0 to 1
    /// Colours of the labels, GetPaletteSize() of them; null at first.
    const kep::RGB_generic<unsigned char>* GetPalette() const { return m_palette; }
    std::size_t GetPaletteSize() const { return m_paletteSize; } ///< 0 at first

protected:
    /// Copies a palette, in place of the one before.
    void SetPalette(const Palette& palette);

private:
    bool m_overlaying = false;
    float m_transparency = 0.0F;
    kep::RGB_generic<unsigned char>* m_palette = nullptr; // owned; copied as it is, for hosts that do
    std::size_t m_paletteSize = 0;
};

#define ZEL_DECLARE(L, V) extern template class zel_Overlayer<L, V>;
KEP_LABEL_TYPES(ZEL_DECLARE)
#undef ZEL_DECLARE

} // namespace zel
