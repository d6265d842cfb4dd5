#include "model/zel_slice.h"
#include "viewer/draw/zel_autofocus.h"
#include "viewer/zel_commands.h"
#include "viewer/zel_imagecanvas3d.h"

#include <wx/dc.h>
#include <wx/image.h>

namespace zel {

namespace {

/// A bitmap of pixels that stay the caller's.
wxBitmap MakeBitmap(Colour* pixels, const Size& size) {
    static_assert(sizeof(Colour) == 3);
    return wxBitmap(wxImage(size.x, size.y, reinterpret_cast<unsigned char*>(pixels), true));
}

} // namespace

template <typename T>
const kep::Image3d<T>& zel_ImageViewer3dCanvas<T>::GetAutofocusImage(zel_ProjectionType type, std::size_t frame) {
    WindowPicture& picture = Window(type);
    if (picture.autofocusStale[frame]) {
        picture.autofocusStale[frame] = false;
        MakeAutofocus(type, *m_image->GetImage(frame), picture.autofocus[frame], *m_mapper);
    }
    return picture.autofocus[frame];
}

template <typename T>
void zel_ImageViewer3dCanvas<T>::Draw(wxDC& dc, zel_ProjectionType type) {
    if (IsMapperDetached() || !IsFrameThere()) // in this order: once detached, the image may be gone as well
        return;
    dc.SetTextForeground(*wxGREEN);
    if (const Plane* const plane = FindPlane(type)) {
        WindowPicture& picture = Window(type);
        if (picture.dataDirty && GetDrWin(type)->IsShown())
            Resample(*plane);
        if ((picture.colourDirty || IsOverlayStale(*plane)) && !picture.slice.IsEmpty())
            Colourise(*plane);
        if (picture.bitmap.IsOk())
            dc.DrawBitmap(picture.bitmap, 0, 0, false);
    }
    InfoFrame_UpdatePixelInfo();
}

template <typename T>
void zel_ImageViewer3dCanvas<T>::Resample(const Plane& plane) {
    WindowPicture& picture = Window(plane.type);
    const auto frame = static_cast<std::size_t>(m_time);
    const bool autofocus = GetContent(plane.type) == zel_PC_AUTOFOCUS;
    if (autofocus && frame >= picture.autofocusStale.size())
        return;
    picture.dataDirty = false;
    picture.colourDirty = true;

    const Size client = GetDrWin(plane.type)->GetClientSize();
    CutSlice(m_view, plane, client, autofocus ? GetAutofocusImage(plane.type, frame) : *m_image->GetImage(frame),
             picture.slice, picture.buffer);
    OnResampled(plane);
}

template <typename T>
void zel_ImageViewer3dCanvas<T>::OnResampled(const Plane&) {}

template <typename T>
bool zel_ImageViewer3dCanvas<T>::IsOverlayStale(const Plane&) const {
    return false;
}

template <typename T>
void zel_ImageViewer3dCanvas<T>::FillBuffer(const Plane& plane, ColourBuffer& buffer) {
    m_mapper->Map(Window(plane.type).slice.GetFirstVoxelAddr(), buffer);
}

template <typename T>
void zel_ImageViewer3dCanvas<T>::Colourise(const Plane& plane) {
    WindowPicture& picture = Window(plane.type);
    picture.colourDirty = false;
    ColourBuffer& buffer = picture.buffer;
    if (plane.type == zel_PT_XY) {
        const auto width = static_cast<int>(picture.slice.GetSize().x);
        const auto height = static_cast<int>(picture.slice.GetSize().y);
        if (buffer.width != width || buffer.height != height)
            buffer.Resize(width, height);
    }
    FillBuffer(plane, buffer);

    const SeenPicture seen =
        TurnPicture(plane, m_view.options, buffer.data, {buffer.width, buffer.height}, picture.turned);
    picture.bitmap = MakeBitmap(seen.pixels, seen.size);
    if (plane.type == zel_PT_XY)
        GetEventHandler()->AddPendingEvent(wxUpdateUIEvent(zel_CMD_REFRESH_ICON));
}

template <typename T>
void zel_ImageViewer3dCanvas<T>::ReverseAxis(int axis) {
    if (static_cast<unsigned>(axis) > 2)
        return;
    const Axis reversed = axes[static_cast<std::size_t>(axis)];
    for (const Plane& plane : planes) {
        wxBitmap& bitmap = Window(plane.type).bitmap;
        if (plane.third != reversed && IsDrWinShown(plane.type) && bitmap.IsOk())
            bitmap = wxBitmap(bitmap.ConvertToImage().Mirror(plane.horizontal == reversed));
    }
}

#define ZEL_INSTANTIATE(T)                                                                                             \
    template const kep::Image3d<T>& zel_ImageViewer3dCanvas<T>::GetAutofocusImage(zel_ProjectionType, std::size_t);    \
    template void zel_ImageViewer3dCanvas<T>::Draw(wxDC&, zel_ProjectionType);                                         \
    template void zel_ImageViewer3dCanvas<T>::Resample(const Plane&);                                                  \
    template void zel_ImageViewer3dCanvas<T>::OnResampled(const Plane&);                                               \
    template bool zel_ImageViewer3dCanvas<T>::IsOverlayStale(const Plane&) const;                                      \
    template void zel_ImageViewer3dCanvas<T>::FillBuffer(const Plane&, ColourBuffer&);                                 \
    template void zel_ImageViewer3dCanvas<T>::Colourise(const Plane&);                                                 \
    template void zel_ImageViewer3dCanvas<T>::ReverseAxis(int);
KEP_DISPLAY_TYPES(ZEL_INSTANTIATE)

} // namespace zel
