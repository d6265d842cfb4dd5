#include "viewer/zel_imagecanvas3d.h"

#include <wx/filename.h>

#include <algorithm>
#include <cstdint>

namespace zel {

namespace {

template <typename T>
constexpr const char* typeName = "Unknown";
template <>
constexpr const char* typeName<unsigned char> = "GRAY8";
template <>
constexpr const char* typeName<unsigned short> = "GRAY16";
template <>
constexpr const char* typeName<float> = "float";
template <>
constexpr const char* typeName<kep::RGB_generic<unsigned char>> = "RGB";
template <>
constexpr const char* typeName<kep::RGB_generic<unsigned short>> = "RGB16";
template <>
constexpr const char* typeName<std::complex<float>> = "complex";

} // namespace

template <typename T>
zel_ImageViewer3dCanvas<T>::zel_ImageViewer3dCanvas(wxWindow* parent, const zel_Mapper<T>& mapper,
                                                    mor::Image4d<T>* image, bool ownsImage, int id, const wxPoint& pos,
                                                    const wxSize& size)
    : zel_Viewer3dCanvas(parent, id, pos, size), m_mapper(&mapper), m_image(image) {
    if (image == nullptr)
        return;
    const auto frames = static_cast<int>(image->GetNumFrames());
    m_iterator.SetLimits(0, frames - 1);
    m_iterator.SetRangeLast(frames - 1);
    m_view.Open(GetGeometry());
    ForgetProjections();
    RecomputeVisible();
    m_view.CentreOnCutIfOut();
    if (ownsImage)
        TakeImage(); // last, so that the caller still owns it when something throws
}

template <typename T>
zel_ImageViewer3dCanvas<T>::~zel_ImageViewer3dCanvas() {
    m_sequenceTimer.Stop();
}

template <typename T>
ImageGeometry zel_ImageViewer3dCanvas<T>::GetGeometry() const {
    return {m_image->GetOffset(), m_image->GetSize(), m_image->GetResolution()};
}

template <typename T>
bool zel_ImageViewer3dCanvas<T>::IsFrameThere() const {
    return m_image != nullptr && m_time >= 0 && static_cast<std::size_t>(m_time) < m_image->GetNumFrames();
}

template <typename T>
kep::Vector3d<std::size_t> zel_ImageViewer3dCanvas<T>::GetImageSize() {
    return m_image != nullptr ? m_image->GetSize() : kep::Vector3d<std::size_t>();
}

template <typename T>
int zel_ImageViewer3dCanvas<T>::GetTime() {
    return static_cast<int>(m_time);
}

template <typename T>
int zel_ImageViewer3dCanvas<T>::GetImageCount() {
    return m_image != nullptr ? static_cast<int>(m_image->GetNumFrames()) : 0;
}

template <typename T>
kep::Resolution zel_ImageViewer3dCanvas<T>::GetResolution() {
    return m_image != nullptr ? m_image->GetResolution() : kep::Resolution();
}

template <typename T>
void zel_ImageViewer3dCanvas<T>::OnCutChange(zel_ProjectionType mask) {
    MakeDirtyAndRefresh(mask);
    InfoFrame_UpdateCutAndVisBoxInfo();
}

template <typename T>
void zel_ImageViewer3dCanvas<T>::OnVis3dChange(zel_ProjectionType mask) {
    zel_ImageViewer3dCanvas<T>::OnCutChange(mask);
}

template <typename T>
void zel_ImageViewer3dCanvas<T>::OnContentChange(zel_ProjectionType mask) {
    MakeDirtyAndRefresh(mask);
}

template <typename T>
void zel_ImageViewer3dCanvas<T>::MappingChanged(zel_MappingEvent& event) {
    for (WindowPicture& picture : m_pictures)
        picture.colourDirty = true;
    Refresh(false);
    if (event.IsCommitted())
        UpdateVolVis();
    else
        RepaintNow(); // a preview has repainted by the time the dialog's handler returns
}

template <typename T>
void zel_ImageViewer3dCanvas<T>::OnDataChange() {
    if (m_image == nullptr)
        return;
    m_view.TakeChangedImage(GetGeometry());
    RecomputeVisible();
    m_view.CentreOnCutIfOut();
    MakeDirtyAndRefresh(zel_PT_ALL);
    UpdateVolVis();
    InfoFrame_Move();
    InfoFrame_UpdateImageInfo();
    InfoFrame_UpdateCutAndVisBoxInfo();
}

template <typename T>
void zel_ImageViewer3dCanvas<T>::OnTimeChange() {
    if (m_image == nullptr) {
        zel_Viewer3dCanvas::OnTimeChange();
        return;
    }
    m_iterator.Clamp();
    m_time = m_iterator.current;
    MakeDirtyAndRefresh(zel_PT_ALL);
    UpdateVolVis();
    GetParent()->SetLabel(CreateTitle());
}

template <typename T>
void zel_ImageViewer3dCanvas<T>::OnSequenceChange() {
    if (m_image == nullptr)
        return;
    ForgetProjections();
    if (m_image->GetNumFrames() == 0) {
        m_sequenceTimer.Stop();
        Refresh(false);
        return;
    }
    const auto last = static_cast<int>(m_image->GetNumFrames()) - 1;
    const bool reachesToTheEnd = m_iterator.rangeLast == m_iterator.limitLast;
    if (m_iterator.rangeFirst > last)
        m_iterator.SetRangeFirst(0);
    m_iterator.SetLimits(0, last);
    if (reachesToTheEnd)
        m_iterator.SetRangeLast(last);
    m_iterator.SetStep(std::min(m_iterator.step, m_iterator.rangeLast - m_iterator.rangeFirst + 1));
    InfoFrame_UpdateImageInfo();
    if (m_iterator.current != m_time)
        OnTimeChange();
    else
        MakeDirtyAndRefresh(zel_PT_ALL);
}

template <typename T>
void zel_ImageViewer3dCanvas<T>::OnFrameChange(std::size_t frame) {
    for (WindowPicture& picture : m_pictures)
        if (frame < picture.autofocusStale.size())
            picture.autofocusStale[frame] = true;
    if (static_cast<long long>(frame) != m_time || IsMapperDetached())
        return;
    MakeDirtyAndRefresh(zel_PT_ALL);
    UpdateVolVis();
}

/// All projections are made when they are next asked for.
template <typename T>
void zel_ImageViewer3dCanvas<T>::ForgetProjections() {
    const std::size_t frames = m_image->GetNumFrames();
    for (WindowPicture& picture : m_pictures) {
        picture.autofocus.clear();
        picture.autofocus.resize(frames);
        picture.autofocusStale.assign(frames, true);
    }
}

template <typename T>
void zel_ImageViewer3dCanvas<T>::MakeDirtyAndRefresh(zel_ProjectionType mask) {
    for (const Plane& plane : planes)
        if ((mask & plane.type) != 0)
            Window(plane.type).dataDirty = true;
    Refresh(false);
}

template <typename T>
wxString zel_ImageViewer3dCanvas<T>::CreateTitle() {
    if (!IsFrameThere())
        return {};
    return wxFileName(m_image->GetImageName(static_cast<std::size_t>(m_time))).GetFullName();
}

template <typename T>
wxString zel_ImageViewer3dCanvas<T>::GetImageTypeName() const {
    return typeName<T>;
}

template <typename T>
void zel_ImageViewer3dCanvas<T>::GetSettings(zel_ImageCanvasSettings& settings) const {
    zel_Viewer3dCanvas::GetSettings(settings);
}

template <typename T>
void zel_ImageViewer3dCanvas<T>::SetSettings(const zel_ImageCanvasSettings& settings) {
    zel_Viewer3dCanvas::SetSettings(settings);
}

// Drawing, saving, the pixel queries and the volume window are instantiated in files of their own.
#define ZEL_INSTANTIATE(T) template class zel_ImageViewer3dCanvas<T>;
KEP_DISPLAY_TYPES(ZEL_INSTANTIATE)

} // namespace zel
