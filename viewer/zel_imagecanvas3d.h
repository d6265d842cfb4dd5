#pragma once

#include "image/zel_image4d.h"
#include "model/zel_composition.h"
#include "model/zel_mapper.h"
#include "model/zel_picture.h"
#include "model/zel_volumetexture.h"
#include "viewer/zel_viewer3dcanvas.h"

#include <wx/bitmap.h>

#include <memory>
#include <optional>
#include <vector>

namespace zel {

/// The canvas with voxels: it turns the frames of an image into the three pictures. Exists for the types of
/// KEP_DISPLAY_TYPES.
///
/// A picture is made in three stages, of which a paint runs only those that are needed: the visible plane is resampled
/// from the frame to the window's pixels, the voxels are mapped to colours, and the finished bitmap is drawn. Scrolling
/// one window therefore leaves the others alone, and a change of mapping resamples nothing.
template <typename T>
class ZEL_EXPORT zel_ImageViewer3dCanvas : public zel_Viewer3dCanvas {
public:
    using zel_Viewer3dCanvas::GetSettings;
    using zel_Viewer3dCanvas::SetSettings;

    /// @param parent, id, pos, size  as for any window of the toolkit
    /// @param mapper                 must live until the canvas is no longer painted; not touched by the destructor
    /// @param image                  may be null: the canvas then stays empty; a host that changes the number of its
    ///                               frames calls OnSequenceChange before any other event comes
    /// @param ownsImage              the destructor deletes the image; otherwise the host keeps it alive as long as the
    ///                               canvas
    /// @throws kep::InternalException for an image without frames; hosts test IsEmpty()
    zel_ImageViewer3dCanvas(wxWindow* parent, const zel_Mapper<T>& mapper, mor::Image4d<T>* image, bool ownsImage,
                            int id, const wxPoint& pos, const wxSize& size);
    ~zel_ImageViewer3dCanvas() override;

    void ReverseAxis(int axis) override;
    void Draw(wxDC& dc, zel_ProjectionType type) override;
    /// Two icons of the present XY picture, 16 by 16 and 32 by 32; transparent ones before the first picture.
    void GetIcons(wxIconBundle& bundle) override;
    kep::Vector3d<std::size_t> GetImageSize() override; ///< voxels; 0 on all axes without an image
    int GetTime() override;                             ///< number of the frame that is shown
    int GetImageCount() override;                       ///< frames of the image; 0 without one
    kep::Resolution GetResolution() override;           ///< pixels per micron; not defined without an image
    void Save3dData(const wxString& fileName) override;
    void SaveActualView(const char* fileName, int spacing, zel_ProjectionType projections) override;
    void SaveGalleryView(const char* fileName, int first, int last, int step, bool byRows, int count,
                         int spacing) override;
    void OnCutChange(zel_ProjectionType mask) override;
    void OnVis3dChange(zel_ProjectionType mask) override;   ///< resamples the windows of the mask
    void OnContentChange(zel_ProjectionType mask) override; ///< resamples the windows of the mask
    void MappingChanged(zel_MappingEvent& event) override;  ///< colours all pictures anew; a preview is painted at once
    /// The image's contents were changed from outside. The view becomes isotropic at X's resolution; autofocus images
    /// that exist are kept.
    void OnDataChange() override;
    /// Shows the frame that the state of browsing names, and sets the parent's title to its file name.
    void OnTimeChange() override;
    /// The image has more or fewer frames than before. Pictures and projections are made anew. A range of browsing that
    /// reached to the end reaches to the new end; the number of the frame that is shown stays, if there is such a
    /// frame. The volume window keeps what it shows unless that number changes: see OnFrameChange.
    virtual void OnSequenceChange();
    /// The voxels of a frame have changed: its projections are made anew, and all that is shown of it.
    void OnFrameChange(std::size_t frame);
    void UpdateVolVis() override;
    void InfoFrame_UpdatePixelInfo() override;
    void InfoFrame_UpdateImageInfo() override;        ///< writes its page, if it is shown
    void InfoFrame_UpdateCutAndVisBoxInfo() override; ///< writes its page, if it is shown
    void MakeDirtyAndRefresh(zel_ProjectionType mask) override;
    /// File name and extension of the current frame.
    wxString CreateTitle() override;

    /// "GRAY8", "GRAY16", "float", "RGB", "RGB16", "complex"; "Unknown" for int.
    wxString GetImageTypeName() const;

    /// What lies under a pixel of a window's client area: place, voxel, value and colour, from the one mapping by which
    /// the picture was made. Nothing for pixels beside the image, and without an image.
    /// In autofocus the value is that of the projection.
    std::optional<zel_PixelInfo> GetPixelInfo(zel_ProjectionType type, const wxPoint& pixel) const;
    /// The value of the voxel that a pixel of a window's client area shows, and its colour with alpha 255. Both are
    /// left alone for pixels outside the picture, and before the first picture.
    void GetColourInfo(zel_ProjectionType type, int x, int y, wxString& text, wxColour& colour) const;
    /// A voxel's value as the info window writes it; of complex images with the part that is shown.
    /// @param voxel, frame  of the image
    wxString GetVoxelText(const kep::Vector3d<std::size_t>& voxel, std::size_t frame) const;
    /// What is shown where there is no value: "---".
    void GetNoColourInfo(wxString& text) const;
    /// @param point     on the screen
    /// @param window    not null
    /// @param fallback  may be null
    /// @return the window if it is shown and the point lies in its client area, else the fallback
    zel_DrWin3d* MouseInProjection(const wxPoint& point, zel_DrWin3d* window, zel_DrWin3d* fallback) const;
    /// Makes an icon of a picture as it was made, mirrored as the XY window is, with a transparent margin.
    /// @param icon    gets the picture
    /// @param w, h    of the icon
    /// @param bitmap  not used
    /// @param buffer  the picture
    void CreateIcon(wxIcon& icon, int w, int h, const wxBitmap& bitmap, const ColourBuffer& buffer) const;

    void GetSettings(zel_ImageCanvasSettings& settings) const; ///< as zel_Viewer3dCanvas::GetSettings
    void SetSettings(const zel_ImageCanvasSettings& settings); ///< as zel_Viewer3dCanvas::SetSettings

    mor::Image4d<T>* GetImage() const { return m_image; }        ///< null without one, and once the mapper is detached
    const zel_Mapper<T>& GetMapper() const { return *m_mapper; } ///< the one that the canvas was made with

protected:
    void OnMapperDetached() override { m_image = nullptr; } // m_ownedImage still deletes it
    /// The voxels under a window's pixels: XY (w, h, 1), XZ (w, 1, h), YZ (1, h, w).
    const kep::Image3d<T>& GetSlice(zel_ProjectionType type) const { return Window(type).slice; }
    /// The colours of the slice, not mirrored: w by h in XY and XZ, h by w in YZ.
    ColourBuffer& GetBuffer(zel_ProjectionType type) { return Window(type).buffer; }
    const ColourBuffer& GetBuffer(zel_ProjectionType type) const { return Window(type).buffer; } ///< to read
    /// The finished picture, mirrored as the reversed axes ask.
    const wxBitmap& GetBitmap(zel_ProjectionType type) const { return Window(type).bitmap; }
    /// The autofocus image of a frame, computed when it is first asked for.
    const kep::Image3d<T>& GetAutofocusImage(zel_ProjectionType type, std::size_t frame);
    bool IsDataDirty(zel_ProjectionType type) const { return Window(type).dataDirty; } ///< the slice must be resampled
    /// Asks for the slice to be resampled in the next paint, or not.
    void SetDataDirty(zel_ProjectionType type, bool dirty) { Window(type).dataDirty = dirty; }
    bool IsColourDirty(zel_ProjectionType type) const { return Window(type).colourDirty; } ///< the slice must be mapped
    /// Asks for the slice to be mapped in the next paint, or not.
    void SetColourDirty(zel_ProjectionType type, bool dirty) { Window(type).colourDirty = dirty; }

    // Where a derived canvas adds its own to the drawing of a window. They are called in a paint, with a frame to show
    // and a mapper.

    /// The window's slice has just got its place and its voxels.
    virtual void OnResampled(const Plane& plane);
    /// Whether the window must be coloured anew although voxels and mapping are the same.
    virtual bool IsOverlayStale(const Plane& plane) const;
    /// Writes the colours of the window's slice into its buffer, which has the same size.
    virtual void FillBuffer(const Plane& plane, ColourBuffer& buffer);

    // For the page "Pixel info" of the info window.

    /// It is on view, and there is an image.
    bool IsPixelInfoAsked() const;
    /// Nothing while the pointer is not over the image.
    std::optional<zel_PixelInfo> LookUnderPointer() const;
    /// @param info     nothing writes "---"
    /// @param further  values of a derived canvas
    void WritePixelInfo(const std::optional<zel_PixelInfo>& info, std::vector<zel_InfoText> further);

    /// From here on the destructor deletes the image.
    void TakeImage() { m_ownedImage.reset(m_image); }

private:
    struct WindowPicture {
        WindowPicture() = default;
        kep::Image3d<T> slice;
        std::vector<kep::Image3d<T>> autofocus; // one for each frame
        ColourBuffer buffer{0, 0};
        std::vector<Colour> turned; // the buffer as it is seen in the window; kept between paints
        wxBitmap bitmap;
        bool dataDirty = true;            // the slice must be resampled from the image
        bool colourDirty = false;         // the slice must be mapped again
        std::vector<bool> autofocusStale; // one for each frame
    };

    WindowPicture& Window(zel_ProjectionType type) { return m_pictures[type]; }
    const WindowPicture& Window(zel_ProjectionType type) const { return m_pictures[type]; }
    Sheet MakeGallery(const GalleryOptions& gallery);
    Sheet MakeTrueGallery(GalleryOptions gallery);
    void ForgetProjections();
    ImageGeometry GetGeometry() const;
    bool IsFrameThere() const;
    VolumeTexture MakeFrameVolume() const;
    void Resample(const Plane& plane);
    void Colourise(const Plane& plane);

    PerPlane<WindowPicture> m_pictures;
    const zel_Mapper<T>* m_mapper;
    mor::Image4d<T>* m_image;
    std::unique_ptr<mor::Image4d<T>> m_ownedImage;
};

#define ZEL_DECLARE(T) extern template class zel_ImageViewer3dCanvas<T>;
KEP_DISPLAY_TYPES(ZEL_DECLARE)
#undef ZEL_DECLARE

} // namespace zel
