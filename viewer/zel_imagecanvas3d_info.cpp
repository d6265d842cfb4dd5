// What lies under a pixel, for the info window and for hosts, and the icons.

#include "image/zel_voxeltext.h"
#include "model/zel_complexparts.h"
#include "model/zel_iconpicture.h"
#include "model/zel_infotexts.h"
#include "model/zel_pixelquery.h"
#include "viewer/zel_imagecanvas3d.h"

#include <wx/icon.h>
#include <wx/iconbndl.h>
#include <wx/image.h>
#include <wx/utils.h>

#include <complex>

namespace zel {

namespace {

const wxColour noColour(255, 255, 255, 0);

template <typename T>
wxString TextOf(const T& voxel, const zel_Mapper<T>&) {
    return VoxelToStr(voxel);
}

wxString TextOf(const std::complex<float>& voxel, const zel_Mapper<std::complex<float>>& mapper) {
    return VoxelToStr(voxel, ShownPartOf(mapper));
}

Size SizeOf(const ColourBuffer& buffer) {
    return {buffer.width, buffer.height};
}

wxBitmap BitmapOf(const ColourBuffer& buffer) {
    return wxBitmap(wxImage(buffer.width, buffer.height, reinterpret_cast<unsigned char*>(buffer.data), true));
}

} // namespace

template <typename T>
void zel_ImageViewer3dCanvas<T>::GetColourInfo(zel_ProjectionType type, int x, int y, wxString& text,
                                               wxColour& colour) const {
    const Plane* const plane = FindPlane(type);
    if (plane == nullptr || IsMapperDetached())
        return;
    const WindowPicture& picture = Window(type);
    const auto at = FindInSlice(*plane, m_view.options, SizeOf(picture.buffer), picture.slice.GetSize(), {x, y});
    if (!at || picture.buffer.GetCount() != picture.slice.GetNumVoxels())
        return;
    const std::size_t index = picture.slice.GetIndex(at->x, at->y, at->z);
    const Colour& pixel = picture.buffer.data[index];
    text = TextOf(picture.slice.GetVoxel(index), *m_mapper);
    colour.Set(pixel.red, pixel.green, pixel.blue);
}

template <typename T>
wxString zel_ImageViewer3dCanvas<T>::GetVoxelText(const kep::Vector3d<std::size_t>& voxel, std::size_t frame) const {
    if (m_image == nullptr) {
        wxString text;
        GetNoColourInfo(text);
        return text;
    }
    return TextOf(m_image->GetImage(frame)->GetVoxel(voxel.x, voxel.y, voxel.z), *m_mapper);
}

template <typename T>
void zel_ImageViewer3dCanvas<T>::GetNoColourInfo(wxString& text) const {
    text = "---";
}

template <typename T>
std::optional<zel_PixelInfo> zel_ImageViewer3dCanvas<T>::GetPixelInfo(zel_ProjectionType type,
                                                                      const wxPoint& pixel) const {
    const Plane* const plane = FindPlane(type);
    if (plane == nullptr || IsMapperDetached() || !IsFrameThere())
        return std::nullopt;
    const zel_DrWin3d& window = *GetDrWin(type);
    const auto place = LocatePixel(m_view, GetGeometry(), *plane, window.GetSize(), window.GetClientSize(), pixel);
    if (!place)
        return std::nullopt;
    zel_PixelInfo info{type, pixel, place->position, place->voxel, static_cast<int>(m_time), {}, noColour};
    GetNoColourInfo(info.value);
    GetColourInfo(type, pixel.x, pixel.y, info.value, info.colour);
    return info;
}

template <typename T>
zel_DrWin3d* zel_ImageViewer3dCanvas<T>::MouseInProjection(const wxPoint& point, zel_DrWin3d* window,
                                                           zel_DrWin3d* fallback) const {
    const bool isInside = window->IsShown() && wxRect(window->GetClientSize()).Contains(window->ScreenToClient(point));
    return isInside ? window : fallback;
}

template <typename T>
bool zel_ImageViewer3dCanvas<T>::IsPixelInfoAsked() const {
    return InfoFrame_IsPixelPageShown() && !IsMapperDetached() && IsFrameThere();
}

template <typename T>
std::optional<zel_PixelInfo> zel_ImageViewer3dCanvas<T>::LookUnderPointer() const {
    const wxPoint pointer = wxGetMousePosition();
    zel_DrWin3d* window = nullptr;
    for (const Plane& plane : planes)
        window = MouseInProjection(pointer, GetDrWin(plane.type), window);
    if (window == nullptr)
        return std::nullopt;
    return GetPixelInfo(window->GetProjectionType(), window->ScreenToClient(pointer));
}

template <typename T>
void zel_ImageViewer3dCanvas<T>::WritePixelInfo(const std::optional<zel_PixelInfo>& info,
                                                std::vector<zel_InfoText> further) {
    wxString nothing;
    GetNoColourInfo(nothing);
    const bool isColoured = info && info->colour.Alpha() != wxALPHA_TRANSPARENT;
    const wxColour& colour = info ? info->colour : noColour;
    const std::string numbers = ColourText({colour.Red(), colour.Green(), colour.Blue()});
    further.insert(further.end(),
                   {{zel_INFO_POSITION, info ? wxString(PositionText(info->position)) : nothing},
                    {zel_INFO_VOXEL, info ? wxString(VoxelNumberText(info->voxel, info->time)) : nothing},
                    {zel_INFO_VALUE, info ? info->value : nothing},
                    {zel_INFO_COLOUR, isColoured ? wxString(numbers) : nothing}});
    InfoFrame_WriteColour(colour);
    InfoFrame_Write(further);
}

template <typename T>
void zel_ImageViewer3dCanvas<T>::InfoFrame_UpdatePixelInfo() {
    if (IsPixelInfoAsked())
        WritePixelInfo(LookUnderPointer(), {});
}

template <typename T>
void zel_ImageViewer3dCanvas<T>::InfoFrame_UpdateImageInfo() {
    if (!InfoFrame_IsShown() || IsMapperDetached() || m_image == nullptr)
        return;
    const ImageGeometry image = GetGeometry();
    InfoFrame_Write({{zel_INFO_TYPE, GetImageTypeName()},
                     {zel_INFO_SIZE, ImageSizeText(image.voxels, m_image->GetNumFrames())},
                     {zel_INFO_VOXEL_SIZE, VoxelSizeText(image.resolution)},
                     {zel_INFO_EXTENT, ImageExtentText(image.voxels, image.resolution)},
                     {zel_INFO_BOX_OFFSET, PositionText(m_view.boundingBox.offset)},
                     {zel_INFO_BOX_SIZE, ExtentText(m_view.boundingBox.size)}});
}

template <typename T>
void zel_ImageViewer3dCanvas<T>::InfoFrame_UpdateCutAndVisBoxInfo() {
    if (!InfoFrame_IsShown() || IsMapperDetached() || m_image == nullptr)
        return;
    InfoFrame_Write({{zel_INFO_VISIBLE_OFFSET, PositionText(m_view.visibleBox.offset)},
                     {zel_INFO_VISIBLE_SIZE, ExtentText(m_view.visibleBox.size)},
                     {zel_INFO_CUT, PositionText(m_view.options.cut)}});
}

template <typename T>
void zel_ImageViewer3dCanvas<T>::GetIcons(wxIconBundle& bundle) {
    for (const int extent : {16, 32}) {
        wxIcon icon;
        CreateIcon(icon, extent, extent, GetBitmap(zel_PT_XY), GetBuffer(zel_PT_XY));
        bundle.AddIcon(icon);
    }
}

template <typename T>
void zel_ImageViewer3dCanvas<T>::CreateIcon(wxIcon& icon, int w, int h, const wxBitmap&,
                                            const ColourBuffer& buffer) const {
    ColourBuffer colours(w, h);
    DrawIcon(buffer, m_view.options, colours);
    ColourBuffer opaque(w, h);
    DrawIconMask(SizeOf(buffer), opaque);
    wxBitmap small = BitmapOf(colours);
    small.SetMask(new wxMask(BitmapOf(opaque), *wxBLACK));
    icon.CopyFromBitmap(small);
}

#define ZEL_INSTANTIATE(T)                                                                                             \
    template void zel_ImageViewer3dCanvas<T>::GetColourInfo(zel_ProjectionType, int, int, wxString&, wxColour&) const; \
    template wxString zel_ImageViewer3dCanvas<T>::GetVoxelText(const kep::Vector3d<std::size_t>&, std::size_t) const;  \
    template void zel_ImageViewer3dCanvas<T>::GetNoColourInfo(wxString&) const;                                        \
    template std::optional<zel_PixelInfo> zel_ImageViewer3dCanvas<T>::GetPixelInfo(zel_ProjectionType, const wxPoint&) \
        const;                                                                                                         \
    template zel_DrWin3d* zel_ImageViewer3dCanvas<T>::MouseInProjection(const wxPoint&, zel_DrWin3d*, zel_DrWin3d*)    \
        const;                                                                                                         \
    template bool zel_ImageViewer3dCanvas<T>::IsPixelInfoAsked() const;                                                \
    template std::optional<zel_PixelInfo> zel_ImageViewer3dCanvas<T>::LookUnderPointer() const;                        \
    template void zel_ImageViewer3dCanvas<T>::WritePixelInfo(const std::optional<zel_PixelInfo>&,                      \
                                                             std::vector<zel_InfoText>);                               \
    template void zel_ImageViewer3dCanvas<T>::InfoFrame_UpdatePixelInfo();                                             \
    template void zel_ImageViewer3dCanvas<T>::InfoFrame_UpdateImageInfo();                                             \
    template void zel_ImageViewer3dCanvas<T>::InfoFrame_UpdateCutAndVisBoxInfo();                                      \
    template void zel_ImageViewer3dCanvas<T>::GetIcons(wxIconBundle&);                                                 \
    template void zel_ImageViewer3dCanvas<T>::CreateIcon(wxIcon&, int, int, const wxBitmap&, const ColourBuffer&) const;
KEP_DISPLAY_TYPES(ZEL_INSTANTIATE)

} // namespace zel
