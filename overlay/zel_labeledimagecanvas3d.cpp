#include "overlay/zel_labeledimagecanvas3d.h"

#include "image/zel_voxeltext.h"
#include "model/zel_palette.h"
#include "model/zel_pixelquery.h"
#include "model/zel_volumesurfaces.h"
#include "model/zel_wholemeshes.h"
#include "volume/vol3D_canvas.h"
#include "volume/zel_updatenotice.h"

#include <cstddef>
#include <map>

namespace zel {

namespace {

zel_OverlayWindowType CutOf(const Plane& plane) {
    return static_cast<zel_OverlayWindowType>(zel_OverlayWindowCutXY + static_cast<int>(IndexOf(plane.type)));
}

zel_OverlayWindowType AutofocusOf(const Plane& plane) {
    return static_cast<zel_OverlayWindowType>(zel_OverlayWindowAutofocusXY + static_cast<int>(IndexOf(plane.type)));
}

/// Which surface is whose: one for each label, in ascending order.
template <typename L, typename V>
std::map<L, std::size_t> SurfacesOf(const kep::LabeledImage3d<L, V>& labels) {
    std::map<L, std::size_t> surfaceOf;
    for (const auto& [label, component] : labels.components)
        surfaceOf.emplace(label, surfaceOf.size());
    return surfaceOf;
}

} // namespace

template <typename T, typename L, typename V>
zel_LabeledImageViewer3dCanvas<T, L, V>::zel_LabeledImageViewer3dCanvas(wxWindow* parent, const zel_Mapper<T>& mapper,
                                                                        zel_Overlayer<L, V>& overlayer,
                                                                        mor::Image4d<T>* image, bool ownsImage, int id,
                                                                        const wxPoint& pos, const wxSize& size)
    : zel_ImageViewer3dCanvas<T>(parent, mapper, image, false, id, pos, size), m_overlayer(&overlayer) {
    for (const Plane& plane : planes)
        m_overlays[plane.type].cut = overlayer.Buffer_Create(CutOf(plane));
    for (const Plane& plane : planes)
        m_overlays[plane.type].autofocus = overlayer.Buffer_Create(AutofocusOf(plane));
    if (ownsImage)
        this->TakeImage(); // last, so that the caller still owns it when something throws
}

template <typename T, typename L, typename V>
void zel_LabeledImageViewer3dCanvas<T, L, V>::MakeOverlaysDirty() {
    for (WindowOverlay& overlay : m_overlays)
        overlay.dirty = true;
}

template <typename T, typename L, typename V>
bool zel_LabeledImageViewer3dCanvas<T, L, V>::HasLabels() const {
    return !m_overlayer->IsEmpty(false, static_cast<std::size_t>(this->m_time));
}

template <typename T, typename L, typename V>
void zel_LabeledImageViewer3dCanvas<T, L, V>::OnDataChange() {
    MakeOverlaysDirty();
    zel_ImageViewer3dCanvas<T>::OnDataChange();
}

template <typename T, typename L, typename V>
void zel_LabeledImageViewer3dCanvas<T, L, V>::OnTimeChange() {
    MakeOverlaysDirty();
    zel_ImageViewer3dCanvas<T>::OnTimeChange();
    this->UpdateIsosurface();
}

template <typename T, typename L, typename V>
void zel_LabeledImageViewer3dCanvas<T, L, V>::OnSequenceChange() {
    MakeOverlaysDirty();
    zel_ImageViewer3dCanvas<T>::OnSequenceChange();
}

template <typename T, typename L, typename V>
void zel_LabeledImageViewer3dCanvas<T, L, V>::OverlayingChanged(zel_OverlayingEvent& event) {
    MakeOverlaysDirty();
    const mor::Image4d<T>* const image = this->GetImage();
    if (event.GetReload() && image != nullptr && !this->IsMapperDetached()) {
        m_overlayer->LoadOverlay(false, image->GetSize(), image->GetOffset(), image->GetResolution());
        this->MakeDirtyAndRefresh(zel_PT_ALL);
        if (this->IsVolVisShown())
            UpdateIsosurface();
    } else {
        this->Refresh(false);
    }
    vol3D_VolVisFrame* const frame = this->GetVolVisFrame();
    if (frame != nullptr && !this->IsMapperDetached()) { // the overlayer goes with the mapper
        frame->GetCanvas()->SetSurfaceColours(m_overlayer->GetOverlaying(), GetSurfaceColours());
        frame->GetCanvas()->Refresh(false);
    }
}

template <typename T, typename L, typename V>
std::vector<kep::RGB_generic<unsigned char>> zel_LabeledImageViewer3dCanvas<T, L, V>::GetSurfaceColours() const {
    const auto* const palette = m_overlayer->GetPalette();
    if (palette != nullptr)
        return {palette, palette + m_overlayer->GetPaletteSize()};
    Palette standard;
    CreatePalette(zel_whiteFirstPalette, standard);
    return standard;
}

/// The labels of which surfaces can be made, or null.
template <typename T, typename L, typename V>
const kep::LabeledImage3d<L, V>* zel_LabeledImageViewer3dCanvas<T, L, V>::FindSurfaceLabels() const {
    const mor::Image4d<T>* const image = this->GetImage();
    if (image == nullptr || image->IsEmpty() || this->IsMapperDetached() || !FitsIsosurface(image->GetSize()))
        return nullptr;
    const auto* const labels = m_overlayer->GetLabeledImage(false, false, static_cast<std::size_t>(this->m_time));
    const bool enough = labels != nullptr && labels->GetNumVoxels() >= image->GetFrameSize();
    return enough ? labels : nullptr;
}

template <typename T, typename L, typename V>
void zel_LabeledImageViewer3dCanvas<T, L, V>::UpdateIsosurface() {
    vol3D_VolVisFrame* const frame = this->GetVolVisFrame();
    if (frame == nullptr)
        return;
    vol3D_VolVisCanvas& canvas = *frame->GetCanvas();
    if (canvas.GetMeshDrawing() == MeshDrawing::Whole) {
        UploadMeshes(canvas);
    } else if (const kep::LabeledImage3d<L, V>* const labels = FindSurfaceLabels(); labels != nullptr) {
        const zel_UpdateNotice notice("Updating isosurface data...", frame);
        UploadSurfaces(canvas, *labels);
    }
}

template <typename T, typename L, typename V>
void zel_LabeledImageViewer3dCanvas<T, L, V>::UploadSurfaces(vol3D_VolVisCanvas& canvas,
                                                             const kep::LabeledImage3d<L, V>& labels) {
    const kep::Vector3d<std::size_t> size = this->GetImage()->GetSize();
    const Vector3f cell = ComputeIsosurfaceCells(size, labels.GetResolution());
    IsosurfaceGenerator generator;
    generator.GenerateSurfaces(labels.GetFirstVoxelAddr(), SurfacesOf(labels), size.x, size.y, size.z, cell.x, cell.y,
                               cell.z);
    if (!generator.IsValid()) {
        this->ReportVolumeError("Error occured during creation of an isosurface!");
        return;
    }
    canvas.SetSurfaceColours(m_overlayer->GetOverlaying(), GetSurfaceColours());
    canvas.MakeCurrent();
    canvas.SetIsosurfaces(generator, ComputeIsosurfaceTranslation(size, cell));
}

/// The meshes of the present frame, whole. Those of another frame do not stay where there are no labels.
template <typename T, typename L, typename V>
void zel_LabeledImageViewer3dCanvas<T, L, V>::UploadMeshes(vol3D_VolVisCanvas& canvas) {
    const mor::Image4d<T>* const image = this->GetImage();
    if (image == nullptr || image->IsEmpty() || this->IsMapperDetached())
        return;
    const zel_UpdateNotice notice("Updating isosurface data...", this->GetVolVisFrame());
    IsosurfaceGenerator generator;
    Matrix4 toObject = identityMatrix;
    const auto* const labels = m_overlayer->GetLabeledImage(false, false, static_cast<std::size_t>(this->m_time));
    if (labels != nullptr && !labels->IsEmpty()) {
        const kep::Vector3d<std::size_t> size = labels->GetSize();
        const MeshPlacement placement = PlaceMeshes({image->GetSize(), image->GetOffset(), image->GetResolution()},
                                                    {size, labels->GetOffset(), labels->GetResolution()});
        generator.GenerateClosedSurfaces(labels->GetFirstVoxelAddr(), SurfacesOf(*labels), size.x, size.y, size.z,
                                         placement.cell.x, placement.cell.y, placement.cell.z);
        toObject = placement.toObject;
    }
    canvas.SetSurfaceColours(m_overlayer->GetOverlaying(), GetSurfaceColours());
    if (canvas.MakeCurrent()) // after the notice, which may have let another volume window paint
        canvas.SetWholeIsosurfaces(generator, toObject);
}

template <typename T, typename L, typename V>
void zel_LabeledImageViewer3dCanvas<T, L, V>::OnResampled(const Plane& plane) {
    WindowOverlay& overlay = m_overlays[plane.type];
    overlay.dirty = true;
    overlay.placed = false;
    overlay.rendered.reset();
    if (HasLabels())
        PlaceBuffers(plane);
}

template <typename T, typename L, typename V>
bool zel_LabeledImageViewer3dCanvas<T, L, V>::IsOverlayStale(const Plane& plane) const {
    return IsOverlayDirty(plane.type) && HasLabels();
}

template <typename T, typename L, typename V>
void zel_LabeledImageViewer3dCanvas<T, L, V>::FillBuffer(const Plane& plane, ColourBuffer& buffer) {
    if (!HasLabels()) {
        zel_ImageViewer3dCanvas<T>::FillBuffer(plane, buffer);
        return;
    }
    WindowOverlay& overlay = m_overlays[plane.type];
    if (!overlay.placed)
        PlaceBuffers(plane); // the labels have come after the voxels
    const bool isAutofocus = this->GetContent(plane.type) == zel_PC_AUTOFOCUS;
    if (isAutofocus)
        Render(overlay, overlay.autofocus);
    zel_ImageViewer3dCanvas<T>::FillBuffer(plane, buffer);
    m_overlayer->Overlay(isAutofocus ? overlay.autofocus : overlay.cut, buffer);
    overlay.dirty = false;
}

/// Gives the window's buffers the slice's place, and the labels there to that of the cut.
template <typename T, typename L, typename V>
void zel_LabeledImageViewer3dCanvas<T, L, V>::PlaceBuffers(const Plane& plane) {
    WindowOverlay& overlay = m_overlays[plane.type];
    const kep::Image3d<T>& slice = this->GetSlice(plane.type);
    for (const std::size_t buffer : {overlay.cut, overlay.autofocus})
        m_overlayer->Buffer_SetDim(buffer, slice.GetSize(), slice.GetOffset(), slice.GetResolution().GetRes());
    if (this->GetContent(plane.type) == zel_PC_CUT)
        Render(overlay, overlay.cut);
    overlay.placed = true;
}

template <typename T, typename L, typename V>
void zel_LabeledImageViewer3dCanvas<T, L, V>::Render(WindowOverlay& overlay, std::size_t buffer) {
    m_overlayer->Buffer_Render(buffer, static_cast<std::size_t>(this->m_time));
    overlay.rendered = buffer;
}

template <typename T, typename L, typename V>
void zel_LabeledImageViewer3dCanvas<T, L, V>::InfoFrame_Create() {
    this->InfoFrame_Make(true);
}

template <typename T, typename L, typename V>
void zel_LabeledImageViewer3dCanvas<T, L, V>::InfoFrame_UpdatePixelInfo() {
    if (!this->IsPixelInfoAsked())
        return;
    const std::optional<zel_PixelInfo> info = this->LookUnderPointer();
    wxString label;
    this->GetNoColourInfo(label);
    if (info)
        GetLabelInfo(info->window, info->pixel.x, info->pixel.y, label);
    this->WritePixelInfo(info, {{zel_INFO_OVERLAY, label}});
}

template <typename T, typename L, typename V>
void zel_LabeledImageViewer3dCanvas<T, L, V>::GetLabelInfo(zel_ProjectionType type, int x, int y,
                                                           wxString& text) const {
    const Plane* const plane = FindPlane(type);
    if (plane == nullptr || this->IsMapperDetached())
        return;
    this->GetNoColourInfo(text);
    const WindowOverlay& overlay = m_overlays[type];
    const ColourBuffer& xy = this->GetBuffer(zel_PT_XY);
    const auto at =
        FindInSlice(*plane, this->m_view.options, {xy.width, xy.height}, this->GetSlice(type).GetSize(), {x, y});
    const std::size_t shown = this->GetContent(type) == zel_PC_AUTOFOCUS ? overlay.autofocus : overlay.cut;
    if (at && overlay.rendered == shown && HasLabels())
        text = VoxelToStr(m_overlayer->Buffer_GetValue(shown, *at));
}

#define ZEL_INSTANTIATE(T, L, V) template class zel_LabeledImageViewer3dCanvas<T, L, V>;
ZEL_LABELED_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE

} // namespace zel
