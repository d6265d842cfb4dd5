#include "overlay/zel_basicoverlayingmodule.h"

#include "model/zel_labelpicture.h"

#include <algorithm>
#include <type_traits>

namespace zel {

template <typename L, typename V>
void zel_BasicOverlayingModule<L, V>::Projections::Resize(std::size_t frames) {
    labels.resize(frames);
    outlines.resize(frames);
    computed.resize(frames, false);
}

template <typename L, typename V>
zel_BasicOverlayingModule<L, V>::zel_BasicOverlayingModule(wxFrame* frame, mor::LabeledImage4d<L, V>* image,
                                                           bool ownsImage)
    : zel_OverlayingModule<L, V>(frame), m_image(image), m_ownsImage(ownsImage) {
    static_assert(std::is_same_v<L, LabelPixel>);
    if (image != nullptr)
        for (Projections& projections : m_projections)
            projections.Resize(image->GetNumFrames());
}

template <typename L, typename V>
zel_BasicOverlayingModule<L, V>::~zel_BasicOverlayingModule() {
    if (m_ownsImage)
        delete m_image;
}

template <typename L, typename V>
L zel_BasicOverlayingModule<L, V>::GetHighestBit() {
    return boundaryBit;
}

template <typename L, typename V>
void zel_BasicOverlayingModule<L, V>::Overlay(std::size_t buffer, ColourBuffer& picture) const {
    if (!this->GetOverlaying() || buffer >= m_buffers.size())
        return;
    const zel_OverlayBuffer<L>& labels = *m_buffers[buffer];
    const kep::Image3d<L>& layer = labels.GetLayer(0);
    const kep::Image3d<L>& outlines = labels.GetLayer(1);
    const std::size_t pixels = static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height);
    const std::size_t count = std::min(pixels, layer.GetNumVoxels());
    const ColourOfLabel colourOf = [this, buffer](L label) { return this->GetLabelColour(label, buffer); };
    if (labels.GetLayersCount() == 1)
        BlendCut(layer.begin(), count, this->GetTransparency(), colourOf, picture.data);
    else if (labels.GetLayersCount() == 2)
        BlendProjection(layer.begin(), outlines.begin(), std::min(count, outlines.GetNumVoxels()),
                        this->GetTransparency(), colourOf, picture.data);
}

template <typename L, typename V>
bool zel_BasicOverlayingModule<L, V>::SetPosition(bool, const wxString&, const wxRect*) {
    return false;
}

template <typename L, typename V>
bool zel_BasicOverlayingModule<L, V>::LoadOverlay(bool, const kep::Vector3d<std::size_t>&, const kep::Vector3d<float>&,
                                                  const kep::Resolution&) {
    return false;
}

template <typename L, typename V>
bool zel_BasicOverlayingModule<L, V>::IsEmpty(bool whole, std::size_t frame) const {
    const kep::LabeledImage3d<L, V>* const labels = this->GetLabeledImage(whole, false, frame);
    return labels == nullptr || labels->IsEmpty();
}

template <typename L, typename V>
const kep::LabeledImage3d<L, V>* zel_BasicOverlayingModule<L, V>::GetLabeledImage(bool, bool, std::size_t frame) const {
    const mor::LabeledImage4d<L, V>* const image = m_image;
    return image != nullptr && frame < image->GetNumFrames() ? image->GetImage(frame) : nullptr;
}

template <typename L, typename V>
std::size_t zel_BasicOverlayingModule<L, V>::Buffer_Create(zel_OverlayWindowType type) {
    m_buffers.push_back(std::make_unique<zel_OverlayBuffer<L>>(type));
    return m_buffers.size() - 1;
}

template <typename L, typename V>
void zel_BasicOverlayingModule<L, V>::Buffer_SetDim(std::size_t buffer, const kep::Vector3d<std::size_t>& size,
                                                    const kep::Vector3d<float>& offset,
                                                    const kep::Vector3d<float>& resolution) {
    for (const std::size_t index : {0U, 1U}) {
        kep::Image3d<L>& layer = m_buffers[buffer]->GetLayer(index);
        layer.MakeRoom(size.x, size.y, size.z);
        layer.SetOffset(offset);
        layer.SetResolution(kep::Resolution(resolution));
    }
}

template <typename L, typename V>
L zel_BasicOverlayingModule<L, V>::Buffer_GetValue(std::size_t buffer,
                                                   const kep::Vector3d<std::size_t>& position) const {
    return LabelOf(m_buffers[buffer]->GetLayer(0).GetVoxel(position));
}

template <typename L, typename V>
const zel_OverlayBuffer<L>* zel_BasicOverlayingModule<L, V>::GetBuffer(std::size_t buffer) const {
    return buffer < m_buffers.size() ? m_buffers[buffer].get() : nullptr;
}

template <typename L, typename V>
void zel_BasicOverlayingModule<L, V>::ComputeBoundary(std::size_t buffer) {
    zel_OverlayBuffer<L>& labels = *m_buffers[buffer];
    if (!labels.GetLayer(0).IsEmpty()) // it may be without voxels by the axis that the picture lacks
        MarkBoundaries(labels.GetLayer(0).begin(), labels.GetWidth(), labels.GetHeight());
}

template <typename L, typename V>
void zel_BasicOverlayingModule<L, V>::Buffer_Render(std::size_t buffer, std::size_t frame) {
    if (buffer >= m_buffers.size())
        return;
    switch (m_buffers[buffer]->GetWindowType()) {
    case zel_OverlayWindowWhole:
        RenderWhole(*m_buffers[buffer], frame);
        break;
    case zel_OverlayWindowCutXY:
    case zel_OverlayWindowCutXZ:
    case zel_OverlayWindowCutYZ:
        RenderCut(buffer, frame);
        break;
    case zel_OverlayWindowAutofocusXY:
    case zel_OverlayWindowAutofocusXZ:
    case zel_OverlayWindowAutofocusYZ:
        RenderProjection(*m_buffers[buffer], frame);
        break;
    }
}

template <typename L, typename V>
void zel_BasicOverlayingModule<L, V>::RenderWhole(zel_OverlayBuffer<L>& buffer, std::size_t frame) {
    const kep::LabeledImage3d<L, V>* const labels = this->GetLabeledImage(true, false, frame);
    const kep::LabeledImage3d<L, V>* const outlines = this->GetLabeledImage(true, true, frame);
    if (labels == nullptr || outlines == nullptr)
        return;
    kep::CopyToImage<L>(*labels, buffer.GetLayer(0));
    kep::CopyToImage<L>(*outlines, buffer.GetLayer(1));
    buffer.SetLayersCount(2);
}

template <typename L, typename V>
void zel_BasicOverlayingModule<L, V>::RenderCut(std::size_t buffer, std::size_t frame) {
    const kep::LabeledImage3d<L, V>* const labels = this->GetLabeledImage(false, false, frame);
    if (labels == nullptr)
        return;
    kep::CopyToImage<L>(*labels, m_buffers[buffer]->GetLayer(0));
    ComputeBoundary(buffer);
    m_buffers[buffer]->SetLayersCount(1);
}

template <typename L, typename V>
void zel_BasicOverlayingModule<L, V>::RenderProjection(zel_OverlayBuffer<L>& buffer, std::size_t frame) {
    const kep::LabeledImage3d<L, V>* const labels = this->GetLabeledImage(false, false, frame);
    if (labels == nullptr)
        return;
    const zel_ProjectionType plane = buffer.GetWindowType() == zel_OverlayWindowAutofocusXY   ? zel_PT_XY
                                     : buffer.GetWindowType() == zel_OverlayWindowAutofocusXZ ? zel_PT_XZ
                                                                                              : zel_PT_YZ;
    const Projections& projections = GetProjections(plane, *labels, frame);
    kep::CopyToImage<L>(projections.labels[frame], buffer.GetLayer(0));
    kep::CopyToImage<L>(projections.outlines[frame], buffer.GetLayer(1));
    buffer.SetLayersCount(2);
}

template <typename L, typename V>
const typename zel_BasicOverlayingModule<L, V>::Projections& zel_BasicOverlayingModule<L, V>::GetProjections(
    zel_ProjectionType plane, const kep::LabeledImage3d<L, V>& labels, std::size_t frame) {
    Projections& projections = m_projections[plane];
    if (frame >= projections.computed.size())
        projections.Resize(frame + 1); // a host has added frames
    if (!projections.computed[frame]) {
        const auto project = plane == zel_PT_XY   ? kep::Get_Labeled_AF_XY<L, V>
                             : plane == zel_PT_XZ ? kep::Get_Labeled_AF_XZ<L, V>
                                                  : kep::Get_Labeled_AF_YZ<L, V>;
        project(labels, projections.labels[frame], nullptr, false);
        project(labels, projections.outlines[frame], nullptr, true);
        projections.computed[frame] = true;
    }
    return projections;
}

#define ZEL_INSTANTIATE(L, V) template class zel_BasicOverlayingModule<L, V>;
KEP_LABEL_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE

} // namespace zel
