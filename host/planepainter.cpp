#include "host/planepainter.h"

#include "model/zel_slice.h"

namespace zelviewer {

template <typename T>
PlanePainter<T>::PlanePainter(const mor::Image4d<T>& image, const zel::zel_Mapper<T>& mapper,
                              std::unique_ptr<Labels> labels)
    : m_image(image), m_mapper(mapper) {
    if (labels == nullptr)
        return;
    m_overlayer =
        std::make_unique<zel::zel_BasicOverlayingModule<unsigned short, unsigned short>>(nullptr, labels.get(), true);
    labels.release();
    m_overlayer->SetOverlaying(true);
    m_overlayer->SetTransparency(1.0F); // outlines alone
    for (const zel::Plane& plane : zel::planes)
        m_pictures[plane.type].labels = m_overlayer->Buffer_Create(static_cast<zel::zel_OverlayWindowType>(
            zel::zel_OverlayWindowCutXY + static_cast<int>(zel::IndexOf(plane.type))));
}

template <typename T>
zel::PictureSource PlanePainter<T>::Paint(const zel::View& view, const zel::Plane& plane, const zel::Size& window,
                                          std::size_t frame) {
    Picture& picture = m_pictures[plane.type];
    zel::CutSlice(view, plane, window, *m_image.GetImage(frame), picture.slice, picture.buffer);
    m_mapper.Map(picture.slice.GetFirstVoxelAddr(), picture.buffer);
    if (m_overlayer != nullptr && !m_overlayer->IsEmpty(false, frame))
        Outline(picture, frame);
    const zel::SeenPicture seen = zel::TurnPicture(plane, view.options, picture.buffer.data,
                                                   {picture.buffer.width, picture.buffer.height}, picture.turned);
    return {seen.pixels, seen.size};
}

template <typename T>
void PlanePainter<T>::Outline(Picture& picture, std::size_t frame) {
    const kep::Image3d<T>& slice = picture.slice;
    m_overlayer->Buffer_SetDim(picture.labels, slice.GetSize(), slice.GetOffset(), slice.GetResolution().GetRes());
    m_overlayer->Buffer_Render(picture.labels, frame);
    m_overlayer->Overlay(picture.labels, picture.buffer);
}

#define ZEL_INSTANTIATE(T) template class PlanePainter<T>;
KEP_DISPLAY_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE

} // namespace zelviewer
