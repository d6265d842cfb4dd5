#include "image/zel_modaldialog.h"
#include "model/zel_composition.h"
#include "viewer/zel_imagecanvas3d.h"

#include <wx/image.h>
#include <wx/log.h>

#include <algorithm>
#include <limits>

namespace zel {

namespace {

/// The pixels of an image, which stay its own.
PictureSource SourceOf(const wxImage& image) {
    static_assert(sizeof(Colour) == 3);
    return {reinterpret_cast<const Colour*>(image.GetData()), image.GetSize()};
}

/// Calls what saves, and logs what it could not write.
template <typename Save>
void LogFailure(const Save& save) {
    try {
        save();
    } catch (const kep::IOException& failure) {
        wxLogError("%s", wxString::FromUTF8(failure.GetText()));
    }
}

/// Writes a frame or a sheet in the format that the name asks for, and logs what of its description was cut.
template <typename T>
void Write(const kep::Image3d<T>& image, const char* fileName) {
    const std::string loss = image.SaveImage(fileName, kep::FF_BY_NAME, true, nullptr);
    if (!loss.empty())
        wxLogWarning("%s", wxString(fileName, *wxConvFileName) + ": " + wxString::FromUTF8(loss));
}

void TellOfHiddenWindows(zel_Viewer3dCanvas& canvas) {
    ShowMessage("Selected projection(s) can not be saved\nbecause they are not visible!", "Error", wxICON_ERROR | wxOK,
                &canvas);
}

/// The side of a picture with one pixel a voxel.
int SideOf(std::size_t voxels) {
    constexpr int most = std::numeric_limits<int>::max();
    return voxels < static_cast<std::size_t>(most) ? static_cast<int>(voxels) : most;
}

/// Brings a canvas's cut back at the end, wherever it lay: also to a face of the box, where ChangeCut does not go.
class CutGuard {
public:
    explicit CutGuard(zel_Viewer3dCanvas& canvas) : m_canvas(canvas), m_cut(canvas.GetCut()) {}
    ~CutGuard() {
        m_canvas.GetView().options.cut = m_cut;
        m_canvas.OnCutChange(zel_PT_ALL);
    }
    CutGuard(const CutGuard&) = delete;
    CutGuard& operator=(const CutGuard&) = delete;

private:
    zel_Viewer3dCanvas& m_canvas;
    kep::Vector3d<float> m_cut;
};

} // namespace

template <typename T>
void zel_ImageViewer3dCanvas<T>::Save3dData(const wxString& fileName) {
    if (IsMapperDetached() || !IsFrameThere())
        return;
    wxLogMessage("%s", "Saving: " + fileName);
    LogFailure([&] { Write(*m_image->GetImage(static_cast<std::size_t>(m_time)), fileName.mb_str(*wxConvFileName)); });
}

template <typename T>
void zel_ImageViewer3dCanvas<T>::SaveActualView(const char* fileName, int spacing, zel_ProjectionType projections) {
    if (IsMapperDetached() || !IsFrameThere())
        return;
    RenderNow();
    PerPlane<bool> shown;
    PerPlane<wxImage> images;
    PerPlane<PictureSource> pictures;
    for (const Plane& plane : planes) {
        shown[plane.type] = IsDrWinShown(plane.type);
        images[plane.type] = GetDrWin(plane.type)->GetPointerImage();
        pictures[plane.type] = SourceOf(images[plane.type]);
    }
    const PerPlane<bool> isIn = WindowsToSave(projections, shown);
    if (!isIn[zel_PT_XY] && !isIn[zel_PT_XZ] && !isIn[zel_PT_YZ]) {
        TellOfHiddenWindows(*this);
        return;
    }
    LogFailure([&] { Write(ComposeView(pictures, isIn, spacing), fileName); });
}

template <typename T>
void zel_ImageViewer3dCanvas<T>::SaveGalleryView(const char* fileName, int first, int last, int step, bool byRows,
                                                 int count, int spacing) {
    if (IsMapperDetached() || !IsFrameThere() || first > last)
        return;
    if (GetTruePictures().gallery && !IsDrWinShown(zel_PT_XY)) {
        TellOfHiddenWindows(*this);
        return;
    }
    const CutGuard guard(*this);
    const GalleryOptions gallery{first, last, step, byRows, count, spacing};
    LogFailure([&] { Write(GetTruePictures().gallery ? MakeTrueGallery(gallery) : MakeGallery(gallery), fileName); });
}

template <typename T>
Sheet zel_ImageViewer3dCanvas<T>::MakeGallery(const GalleryOptions& gallery) {
    const kep::Vector3d<std::size_t> voxels = m_image->GetSize();
    const float resolution = m_image->GetResolution().GetUsable().GetRes().z;
    wxImage picture; // that of the slice at hand
    const auto pictureOf = [&](int slice) {
        // From the first voxel's edge on, without the image's offset; a place on the box's face or beyond is refused,
        // and the slice before is taken once more.
        kep::Vector3d<float> cut = GetCut();
        cut.z = static_cast<float>(slice) / resolution;
        ChangeCut(cut);
        RenderNow();
        picture = GetDrWin(zel_PT_XY)->GetPointerImage();
        return SourceOf(picture);
    };
    return ComposeGallery(gallery, {SideOf(voxels.x), SideOf(voxels.y)}, pictureOf);
}

template <typename T>
Sheet zel_ImageViewer3dCanvas<T>::MakeTrueGallery(GalleryOptions gallery) {
    const auto slices = static_cast<int>(m_image->GetSizeZ());
    gallery.first = std::clamp(gallery.first, 0, slices - 1);
    gallery.last = std::clamp(gallery.last, 0, slices - 1);
    const float resolution = m_image->GetResolution().GetUsable().GetRes().z;
    wxImage picture; // that of the slice at hand
    const auto pictureOf = [&](int slice) {
        m_view.options.cut.z = m_image->GetOffset().z + (static_cast<float>(slice) + 0.5F) / resolution;
        OnCutChange(zel_PT_ALL);
        RenderNow();
        picture = GetDrWin(zel_PT_XY)->GetPointerImage();
        return SourceOf(picture);
    };
    pictureOf(gallery.first);
    return ComposeGallery(WithRoomForAll(gallery), picture.GetSize(), pictureOf);
}

#define ZEL_INSTANTIATE(T)                                                                                             \
    template void zel_ImageViewer3dCanvas<T>::Save3dData(const wxString&);                                             \
    template void zel_ImageViewer3dCanvas<T>::SaveActualView(const char*, int, zel_ProjectionType);                    \
    template void zel_ImageViewer3dCanvas<T>::SaveGalleryView(const char*, int, int, int, bool, int, int);             \
    template Sheet zel_ImageViewer3dCanvas<T>::MakeGallery(const GalleryOptions&);                                     \
    template Sheet zel_ImageViewer3dCanvas<T>::MakeTrueGallery(GalleryOptions);
KEP_DISPLAY_TYPES(ZEL_INSTANTIATE)

} // namespace zel
