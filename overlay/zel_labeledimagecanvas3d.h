#pragma once

#include "overlay/zel_labeledtypes.h"
#include "overlay/zel_overlayer.h"
#include "viewer/zel_imagecanvas3d.h"

#include <optional>
#include <vector>

namespace zel {

class vol3D_VolVisCanvas;

/// The canvas of an image that has labels: it draws as its base does, and lets an overlayer paint labels over each
/// picture before it is turned for the screen. A frame without labels is drawn as if there were no overlayer. Exists
/// for ZEL_LABELED_TYPES.
///
/// A change of the overlay colours the pictures anew and resamples nothing.
template <typename T, typename L, typename V>
class ZEL_EXPORT zel_LabeledImageViewer3dCanvas : public zel_ImageViewer3dCanvas<T> {
public:
    /// @param parent, id, pos, size     as for any window of the toolkit
    /// @param mapper, image, ownsImage  as for the base; if this throws, the image is still the caller's
    /// @param overlayer                 gets six buffers here, of window types 1 to 6; must live as long as the canvas
    ///                                  is painted, and is not touched by the destructor
    zel_LabeledImageViewer3dCanvas(wxWindow* parent, const zel_Mapper<T>& mapper, zel_Overlayer<L, V>& overlayer,
                                   mor::Image4d<T>* image, bool ownsImage, int id, const wxPoint& pos,
                                   const wxSize& size);

    void OnDataChange() override;
    void OnTimeChange() override; ///< the surfaces in the volume window follow as well
    void OnSequenceChange() override;
    /// A reload asks the overlayer to load its labels anew, and all is resampled.
    void OverlayingChanged(zel_OverlayingEvent& event) override;
    /// Makes a surface for each label of the present frame, also while the volume window is hidden. The labels must
    /// have the image's size. A frame without labels leaves the surfaces that are there.
    ///
    /// In a volume window with whole meshes (zel_TruePictures) labels may have any size, and lie where their place in
    /// microns says. Meshes are closed at the labels' border, and a frame without labels has none.
    /// @throws std::bad_alloc; likewise
    void UpdateIsosurface() override;

    /// With a row for the label.
    void InfoFrame_Create() override;
    void InfoFrame_UpdatePixelInfo() override;
    /// The label under a pixel of a window's client area; "---" outside the picture, and where the frame has no labels.
    /// It is mirrored by the size of the XY picture in every window, also where the window's own picture has another
    /// size and therefore shows another label there; hosts rely on it. Any other type leaves the text alone.
    void GetLabelInfo(zel_ProjectionType type, int x, int y, wxString& text) const;

    zel_Overlayer<L, V>& GetOverlayer() const { return *m_overlayer; } ///< the one that the canvas was made with

protected:
    void OnResampled(const Plane& plane) override;
    bool IsOverlayStale(const Plane& plane) const override;
    void FillBuffer(const Plane& plane, ColourBuffer& buffer) override;

    /// Whether the labels must be painted over the picture anew.
    bool IsOverlayDirty(zel_ProjectionType type) const { return m_overlays[type].dirty; }
    /// Asks for the picture to be coloured anew in the next paint, with its labels, or not.
    void SetOverlayDirty(zel_ProjectionType type, bool dirty) { m_overlays[type].dirty = dirty; }

private:
    struct WindowOverlay {
        std::size_t cut = 0;                 // index of a buffer
        std::size_t autofocus = 0;           // likewise
        bool dirty = true;                   // the overlay of this picture must be done again
        bool placed = false;                 // the buffers lie where the slice does
        std::optional<std::size_t> rendered; // the buffer that has the labels of the present picture
    };

    bool HasLabels() const;
    const kep::LabeledImage3d<L, V>* FindSurfaceLabels() const;
    void UploadSurfaces(vol3D_VolVisCanvas& canvas, const kep::LabeledImage3d<L, V>& labels);
    void UploadMeshes(vol3D_VolVisCanvas& canvas);
    std::vector<kep::RGB_generic<unsigned char>> GetSurfaceColours() const;
    void PlaceBuffers(const Plane& plane);
    void Render(WindowOverlay& overlay, std::size_t buffer);
    void MakeOverlaysDirty();

    PerPlane<WindowOverlay> m_overlays;
    zel_Overlayer<L, V>* m_overlayer;
};

#define ZEL_DECLARE(T, L, V) extern template class zel_LabeledImageViewer3dCanvas<T, L, V>;
ZEL_LABELED_TYPES(ZEL_DECLARE)
#undef ZEL_DECLARE

} // namespace zel
