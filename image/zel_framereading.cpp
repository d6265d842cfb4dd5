#include "image/zel_framereading.h"

#include "image/sequence/zel_frameconversion.h"

#include <utility>

namespace mor {

template <typename T>
void AppendFrame(Image4d<T>& sequence, std::unique_ptr<kep::Image3d<T>> frame, const wxString& name) {
    if (sequence.GetNumFrames() == 0) {
        sequence.SetOffset(frame->GetOffset());
        sequence.SetResolution(frame->GetResolution());
        sequence.MakeRoom(frame->GetSize(), 0);
    }
    sequence.InsertFrame(frame.get(), name, -1);
    frame.release(); // the sequence has taken it
}

template <typename T>
std::unique_ptr<kep::Image3d<T>> ReadFrame(kep::FrameReader& reader, std::size_t channel, std::size_t time,
                                           bool binary) {
    auto frame = std::make_unique<kep::Image3d<T>>();
    if (binary) {
        kep::Image3d<bool> twoValued;
        reader.ReadFrame(channel, time, twoValued);
        BinaryFrameToVoxels(twoValued, *frame);
        return frame;
    }
    reader.ReadFrame(channel, time, *frame);
    if constexpr (requires { ReplaceInvalidFloats(*frame); })
        ReplaceInvalidFloats(*frame);
    return frame;
}

#define ZEL_INSTANTIATE(T)                                                                                             \
    template ZEL_EXPORT void AppendFrame<T>(Image4d<T>&, std::unique_ptr<kep::Image3d<T>>, const wxString&);           \
    template ZEL_EXPORT std::unique_ptr<kep::Image3d<T>> ReadFrame<T>(kep::FrameReader&, std::size_t, std::size_t,     \
                                                                      bool);
KEP_CONTAINER_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE

} // namespace mor
