#include "viewer/zel_autofocus.h"
#include "viewer/zel_commands.h"
#include "viewer/zel_imagecanvas3d.h"
#include "viewer/zel_picture.h"

#include <wx/dc.h>
#include <wx/image.h>

namespace zel {

namespace {

/// A bitmap of pixels that stay the caller's.
wxBitmap MakeBitmap(Colour* pixels, int width, int height) {
    static_assert(sizeof(Colour) == 3);
    return wxBitmap(wxImage(width, height, reinterpret_cast<unsigned char*>(pixels), true));
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
    if (!IsFrameThere() || IsMapperDetached())
        return;
    dc.SetTextForeground(*wxGREEN);
    if (zel_DrWin3d* const window = GetDrWin(type)) {
        WindowPicture& picture = Window(type);
        if (picture.dataDirty && window->IsShown())
            Resample(type);
        if (picture.colourDirty && !picture.slice.IsEmpty())
            Colourise(type);
        if (picture.bitmap.IsOk())
            dc.DrawBitmap(picture.bitmap, 0, 0, false);
    }
    InfoFrame_UpdatePixelInfo();
}

template <typename T>
void zel_ImageViewer3dCanvas<T>::Resample(zel_ProjectionType type) {
    WindowPicture& picture = Window(type);
    const auto frame = static_cast<std::size_t>(m_time);
    const bool autofocus = GetContent(type) == zel_PC_AUTOFOCUS;
    if (autofocus && frame >= picture.autofocusStale.size())
        return;
    picture.dataDirty = false;
    picture.colourDirty = true;

    const wxSize client = GetDrWin(type)->GetClientSize();
    const bool turned = type == zel_PT_YZ; // its buffer holds Y along the rows, as the voxels lie
    const int width = turned ? client.y : client.x;
    const int height = turned ? client.x : client.y;
    kep::Image3d<T>& slice = picture.slice;
    if (picture.buffer.width != width || picture.buffer.height != height) {
        const auto w = static_cast<std::size_t>(width);
        const auto h = static_cast<std::size_t>(height);
        if (type == zel_PT_XY)
            slice.MakeRoom(w, h, 1);
        else if (type == zel_PT_XZ)
            slice.MakeRoom(w, 1, h);
        else
            slice.MakeRoom(1, w, h);
        picture.buffer.Resize(width, height);
    }

    kep::Vector3d<float> offset = m_visibleBox.offset;
    float& third = type == zel_PT_XY ? offset.z : type == zel_PT_XZ ? offset.y : offset.x;
    const float cut = type == zel_PT_XY ? m_cut.z : type == zel_PT_XZ ? m_cut.y : m_cut.x;
    third = autofocus ? 0.0F : cut;
    slice.SetOffset(offset);
    slice.SetResolution(kep::Resolution(m_scale));
    kep::CopyToImage(autofocus ? GetAutofocusImage(type, frame) : *m_image->GetImage(frame), slice);
}

template <typename T>
void zel_ImageViewer3dCanvas<T>::Colourise(zel_ProjectionType type) {
    WindowPicture& picture = Window(type);
    picture.colourDirty = false;
    ColourBuffer& buffer = picture.buffer;
    const auto& size = picture.slice.GetSize();
    if (type == zel_PT_XY) {
        const auto width = static_cast<int>(size.x);
        const auto height = static_cast<int>(size.y);
        if (buffer.width != width || buffer.height != height)
            buffer.Resize(width, height);
    }
    m_mapper->Map(picture.slice.GetFirstVoxelAddr(), buffer);

    const std::size_t pixels = static_cast<std::size_t>(buffer.width) * static_cast<std::size_t>(buffer.height);
    if (type == zel_PT_YZ) {
        picture.turned.resize(pixels);
        TransposePicture(buffer.data, buffer.width, buffer.height, IsReversed(2), IsReversed(1), picture.turned.data());
        picture.bitmap = MakeBitmap(picture.turned.data(), buffer.height, buffer.width);
        return;
    }
    const bool horizontally = IsReversed(0);
    const bool vertically = IsReversed(type == zel_PT_XY ? 1 : 2);
    Colour* seen = buffer.data;
    if (horizontally || vertically) {
        picture.turned.resize(pixels);
        seen = picture.turned.data();
        MirrorPicture(buffer.data, buffer.width, buffer.height, horizontally, vertically, seen);
    }
    picture.bitmap = MakeBitmap(seen, buffer.width, buffer.height);
    if (type == zel_PT_XY)
        GetEventHandler()->AddPendingEvent(wxUpdateUIEvent(zel_CMD_REFRESH_ICON));
}

template <typename T>
void zel_ImageViewer3dCanvas<T>::ReverseAxis(int axis) {
    const auto mirror = [this](zel_ProjectionType type, bool horizontally) {
        wxBitmap& bitmap = Window(type).bitmap;
        if (IsDrWinShown(type) && bitmap.IsOk())
            bitmap = wxBitmap(bitmap.ConvertToImage().Mirror(horizontally));
    };
    switch (axis) {
    case 0:
        mirror(zel_PT_XY, true);
        mirror(zel_PT_XZ, true);
        break;
    case 1:
        mirror(zel_PT_XY, false);
        mirror(zel_PT_YZ, false);
        break;
    case 2:
        mirror(zel_PT_XZ, false);
        mirror(zel_PT_YZ, true);
        break;
    default:
        break;
    }
}

#define ZEL_INSTANTIATE(T)                                                                                             \
    template const kep::Image3d<T>& zel_ImageViewer3dCanvas<T>::GetAutofocusImage(zel_ProjectionType, std::size_t);    \
    template void zel_ImageViewer3dCanvas<T>::Draw(wxDC&, zel_ProjectionType);                                         \
    template void zel_ImageViewer3dCanvas<T>::Resample(zel_ProjectionType);                                            \
    template void zel_ImageViewer3dCanvas<T>::Colourise(zel_ProjectionType);                                           \
    template void zel_ImageViewer3dCanvas<T>::ReverseAxis(int);
KEP_DISPLAY_TYPES(ZEL_INSTANTIATE)

} // namespace zel
