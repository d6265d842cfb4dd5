#include "image/zel_labeledimage4d.h"

#include "image/sequence/zel_framelist.h"

#include <wx/log.h>

#include <complex>
#include <utility>

namespace mor {

namespace {

template <typename V>
kep::Image3d<V> ReadImageOfLabels(const wxString& name) {
    wxLogMessage("%s", "L_Reading: " + name);
    return kep::Image3d<V>(name.fn_str(), nullptr, false, -1, nullptr, nullptr);
}

template <typename T>
detail::FrameGeometry GeometryOfSequence(const Image4d<T>& image) {
    return {image.GetOffset(), image.GetResolution(), image.GetSize()};
}

} // namespace

template <typename L, typename V>
LabeledImage4d<L, V>::LabeledImage4d(bool connected, const kep::Vector3d<float>* anOffset,
                                     const kep::Resolution* aResolution, float aTimeStep)
    : offset(anOffset != nullptr ? *anOffset : kep::Vector3d<float>()),
      resolution(aResolution != nullptr ? *aResolution : kep::Resolution()),
      timeStep(aTimeStep),
      useConnectedComponents(connected) {}

template <typename L, typename V>
LabeledImage4d<L, V>::LabeledImage4d(const LabeledImage4d& src) = default;

template <typename L, typename V>
LabeledImage4d<L, V>& LabeledImage4d<L, V>::operator=(const LabeledImage4d& src) = default;

template <typename L, typename V>
LabeledImage4d<L, V>::~LabeledImage4d() {
    DestroyData();
}

template <typename L, typename V>
void LabeledImage4d<L, V>::SetOffset(const kep::Vector3d<float>& newOffset) {
    offset = newOffset;
    for (Frame* frame : frames)
        frame->SetOffset(offset);
}

template <typename L, typename V>
void LabeledImage4d<L, V>::SetResolution(const kep::Resolution& newResolution) {
    resolution = newResolution;
    for (Frame* frame : frames)
        frame->SetResolution(resolution);
}

template <typename L, typename V>
void LabeledImage4d<L, V>::MakeRoom(std::size_t x, std::size_t y, std::size_t z, std::size_t t) {
    detail::MakeSequence({offset, resolution, {x, y, z}}, t, size, sizeT, frames, names);
}

template <typename L, typename V>
void LabeledImage4d<L, V>::DestroyData() {
    size = {};
    detail::CutFrames(frames, names, 0);
    sizeT = 0;
}

template <typename L, typename V>
void LabeledImage4d<L, V>::DisposeData() {
    size = {};
    for (Frame* frame : frames)
        frame->DisposeData();
}

template <typename L, typename V>
int LabeledImage4d<L, V>::TestConsistency() const {
    return detail::TestFrames(GetGeometry(), sizeT, frames, names.size());
}

template <typename L, typename V>
template <typename T>
void LabeledImage4d<L, V>::ReadSequence(const wxArrayString& Names, const Image4d<T>* const reference) {
    const wxArrayString list = Names; // it may be this container's own, which the first step empties
    ReadSequence_First(list, reference);
    while (sizeT < list.size())
        ReadSequence_Next(list);
}

template <typename L, typename V>
template <typename T>
void LabeledImage4d<L, V>::ReadSequence_First(const wxArrayString& Names, const Image4d<T>* const reference) {
    detail::CheckNames(Names);
    const wxString name = Names[0];
    DestroyData();
    const kep::Image3d<V> image = ReadImageOfLabels<V>(name);
    if (reference != nullptr && detail::GeometryOf(image) != GeometryOfSequence(*reference))
        throw kep::InternalException("ReadSequence(): The frame metadata differs from the reference metadata!");
    std::unique_ptr<Frame> frame(CreateRegions(image, kep::nb3D_6));
    AppendFrame(std::move(frame), name);
    offset = image.GetOffset();
    resolution = image.GetResolution();
    size = image.GetSize();
}

template <typename L, typename V>
void LabeledImage4d<L, V>::ReadSequence_Next(const wxArrayString& Names) {
    detail::CheckNames(Names);
    const wxString name = Names[sizeT];
    const kep::Image3d<V> image = ReadImageOfLabels<V>(name);
    detail::CheckGeometry(detail::GeometryOf(image), GetGeometry());
    AppendFrame(std::unique_ptr<Frame>(CreateRegions(image, kep::nb3D_6)), name);
}

template <typename L, typename V>
void LabeledImage4d<L, V>::SaveSequence(const char* prefix, int digits, const char* suffix, int StartIndex,
                                        int StopIndex) const {
    const auto save = [](const Frame& frame, const char* name) { return frame.SaveImage(name, kep::FF_LABELED); };
    detail::SaveFrames(frames, prefix, digits, suffix, StartIndex, StopIndex, TestConsistency(), save);
}

template <typename L, typename V>
void LabeledImage4d<L, V>::InsertFrame(Frame* const frame, const wxString& name, int t) {
    detail::InsertFrameAt(t, frame, name, GetGeometry(), sizeT, frames, names);
    ++sizeT;
}

template <typename L, typename V>
void LabeledImage4d<L, V>::RemoveFrame(int t) {
    detail::RemoveFrameAt(t, sizeT, frames, names);
    --sizeT;
}

template <typename L, typename V>
kep::LabeledImage3d<L, V>* LabeledImage4d<L, V>::CreateRegions(const kep::Image3d<V>& image,
                                                               const kep::Neighbourhood& nb) {
    auto frame = std::make_unique<Frame>();
    if (useConnectedComponents)
        frame->CreateForegroundRegionsFF(image, nb);
    else
        frame->CreateRegionsOfLabels(image);
    return frame.release();
}

template <typename L, typename V>
detail::FrameGeometry LabeledImage4d<L, V>::GetGeometry() const {
    return {offset, resolution, size};
}

template <typename L, typename V>
void LabeledImage4d<L, V>::AppendFrame(std::unique_ptr<Frame> frame, const wxString& name) {
    detail::AppendFrame(std::move(frame), name, frames, names);
    ++sizeT;
}

#define ZEL_INSTANTIATE_READING(L, V, T)                                                                               \
    template ZEL_EXPORT void LabeledImage4d<L, V>::ReadSequence<T>(const wxArrayString&, const Image4d<T>*);           \
    template ZEL_EXPORT void LabeledImage4d<L, V>::ReadSequence_First<T>(const wxArrayString&, const Image4d<T>*);
#define ZEL_INSTANTIATE(L, V)                                                                                          \
    template class LabeledImage4d<L, V>;                                                                               \
    ZEL_REFERENCE_TYPES(ZEL_INSTANTIATE_READING, L, V)
KEP_LABEL_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE
#undef ZEL_INSTANTIATE_READING

} // namespace mor
