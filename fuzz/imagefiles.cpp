#include "core/kepcore/kep_colourreader.h"
#include "core/kepcore/kep_exceptions.h"
#include "core/kepcore/kep_fileaxes.h"
#include "core/kepcore/kep_framereader.h"
#include "core/kepcore/kep_image3d.h"
#include "core/kepcore/kep_imageinfo.h"
#include "fuzz/input.h"
#include "fuzz/targets.h"
#include "tests/support/voxel_type.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <type_traits>

namespace fuzz {

namespace {

using kep::Image3d;
using kep::RGB_generic;

const char* MakeFile(std::string_view bytes) {
    static MemoryFile file;
    file.Set(bytes);
    return file.GetName();
}

/// Calls an action, which may refuse the file. @return whether it did not
template <typename Act>
bool Accepts(const Act& act) {
    try {
        act();
        return true;
    } catch (const kep::IOException& refusal) {
        Require(!refusal.GetText().empty(), "a refusal says why");
        return false;
    }
}

/// Passes over all voxels, so that a sanitizer sees whether the block is as long as the frame says.
template <typename T>
void Touch(const Image3d<T>& frame) {
    const kep::Vector3d<std::size_t> size = frame.GetSize();
    Require(frame.GetNumVoxels() == size.x * size.y * size.z, "a frame has as many voxels as its size says");
    const auto* bytes = reinterpret_cast<const unsigned char*>(frame.begin());
    unsigned char sum = 0;
    for (std::size_t i = 0; i < frame.GetNumVoxels() * sizeof(T); ++i)
        sum = static_cast<unsigned char>(sum ^ bytes[i]);
    asm volatile("" : : "r"(sum)); // as far as the compiler knows, it is used
}

template <typename T>
bool HaveSameVoxels(const Image3d<T>& a, const Image3d<T>& b) {
    return a.GetSize() == b.GetSize() && std::memcmp(a.begin(), b.begin(), a.GetNumVoxels() * sizeof(T)) == 0;
}

/// The same values; NaN is the same as NaN.
bool AreSame(const kep::Vector3d<float>& a, const kep::Vector3d<float>& b) {
    const auto same = [](float p, float q) { return p == q || (std::isnan(p) && std::isnan(q)); };
    return same(a.x, b.x) && same(a.y, b.y) && same(a.z, b.z);
}

template <typename T>
void ReadOwnType(const char* name, const kep::ImageInfo& info) {
    Image3d<T> frame;
    if (!Accepts([&] { frame.ReadImage(name, nullptr, false, -1, nullptr, nullptr); })) {
        Require(frame.IsEmpty(), "a file that is refused leaves the frame as it was");
        return;
    }
    Touch(frame);
    Require(frame.GetSize() == info.size, "a file's information has its size");
    Require(frame.GetDescription() == info.description, "a file's information has its description");
    Require(AreSame(frame.GetOffset(), info.offset), "a file's information has its offset");
    Require(AreSame(frame.GetResolution().GetRes(), info.resolution.GetRes()),
            "a file's information has its resolution");
    typename Image3d<T>::PixelBox box; // from a column beside the picture on, to one within
    box.offset = {-1, 1, 0};
    box.size = frame.GetSize();
    Image3d<T> part;
    Require(Accepts([&] { part.ReadImage(name, &box, false, -1, nullptr, nullptr); }),
            "a file that is read whole can be read in part");
    Touch(part);
    Image3d<T> copy;
    copy.CopyFromVOI(frame, box, false, T());
    Require(HaveSameVoxels(part, copy), "a part of a file is the part of its frame");
}

template <typename T>
void Read(const char* name) {
    Image3d<T> frame;
    if (Accepts([&] { frame.ReadImage(name, nullptr, false, -1, nullptr, nullptr); }))
        Touch(frame);
}

template <typename T>
void ReadFramesAs(kep::FrameReader& reader, const char* name) {
    constexpr std::size_t most = 12; // a small file may promise thousands
    const kep::FileAxes& axes = reader.GetAxes();
    std::size_t count = 0;
    for (std::size_t time = axes.times; time-- > 0;) // backwards, as packed data then begin anew
        for (std::size_t channel = 0; channel < axes.channels && count < most; ++channel, ++count) {
            Image3d<T> frame;
            if (!Accepts([&] { reader.ReadFrame(channel, time, frame); }))
                continue;
            Touch(frame);
            Require(frame.GetSize() == axes.frame.size, "each frame is as large as the file says");
        }
    Image3d<T> whole;
    Image3d<T> first;
    if (axes.channels * axes.times == 1 &&
        Accepts([&] { whole.ReadImage(name, nullptr, false, -1, nullptr, nullptr); }) &&
        Accepts([&] { reader.ReadFrame(0, 0, first); }))
        Require(HaveSameVoxels(whole, first), "a file of one frame is read alike as an image and as a frame");
}

template <typename T>
void SaveAndRead(const Image3d<T>& frame, const std::string& name, bool compress) {
    std::string notice;
    Image3d<T> back;
    if (!Accepts([&] { notice = frame.SaveImage(name.c_str(), kep::FF_BY_NAME, compress, nullptr); }))
        return;
    Require(Accepts([&] { back.ReadImage(name.c_str(), nullptr, false, -1, nullptr, nullptr); }),
            "what was saved can be read");
    Require(HaveSameVoxels(frame, back), "what was saved comes back with its voxels");
    Require(AreSame(frame.GetOffset(), back.GetOffset()), "what was saved comes back with its offset");
    Require(AreSame(frame.GetResolution().GetRes(), back.GetResolution().GetRes()),
            "what was saved comes back with its resolution");
    Require(!notice.empty() || frame.GetDescription() == back.GetDescription(),
            "what was saved comes back with its description");
}

} // namespace

void ReadImage(std::string_view bytes) {
    const char* const name = MakeFile(bytes);
    kep::ImageInfo info;
    if (!Accepts([&] { info = kep::ReadImageInfo(name); }))
        return;
    VisitVoxelType(info.voxelType, [&]<typename T>() { ReadOwnType<T>(name, info); });
}

void ReadConverted(std::string_view bytes) {
    const char* const name = MakeFile(bytes);
    Read<std::complex<double>>(name);
    Read<float>(name);
    Read<int>(name);
    Read<unsigned char>(name);
    Read<RGB_generic<unsigned char>>(name);
    Read<bool>(name);
}

void ReadFrames(std::string_view bytes) {
    const char* const name = MakeFile(bytes);
    Accepts([&] {
        kep::FrameReader reader(name);
        VisitVoxelType(reader.GetAxes().frame.voxelType, [&]<typename T>() { ReadFramesAs<T>(reader, name); });
        if (reader.GetAxes().channels < 2)
            return;
        kep::ColourReader colours(name, {1, 0});
        Image3d<RGB_generic<unsigned short>> frame;
        colours.ReadFrame(0, frame);
        Touch(frame);
    });
}

void ReadInfo(std::string_view bytes) {
    const char* const name = MakeFile(bytes);
    kep::ImageInfo info;
    if (Accepts([&] { info = kep::ReadImageInfo(name); }))
        Require(info.size.x > 0 && info.size.y > 0 && info.size.z > 0, "an image has voxels");
    kep::FileAxes axes;
    if (Accepts([&] { axes = kep::ReadFileAxes(name); })) {
        Require(axes.channels > 0 && axes.times > 0, "a file of frames has at least one");
        Require(axes.channelInfos.size() <= axes.channels, "no more channels are told of than there are");
    }
}

void RoundTrip(std::string_view bytes) {
    const char* const name = MakeFile(bytes);
    kep::ImageInfo info;
    if (!Accepts([&] { info = kep::ReadImageInfo(name); }))
        return;
    VisitVoxelType(info.voxelType, [&]<typename T>() {
        Image3d<T> frame;
        if (!Accepts([&] { frame.ReadImage(name, nullptr, false, -1, nullptr, nullptr); }))
            return;
        SaveAndRead(frame, GetScratchFolder() + "/saved.tif", bytes.size() % 2 == 0);
        SaveAndRead(frame, GetScratchFolder() + "/saved.ics", bytes.size() % 2 == 1);
    });
}

} // namespace fuzz
