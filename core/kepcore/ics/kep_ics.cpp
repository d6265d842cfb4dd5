#include "core/kepcore/convert/kep_number.h"
#include "core/kepcore/convert/kep_unit.h"
#include "core/kepcore/file/kep_file.h"
#include "core/kepcore/ics/kep_icsbyteorder.h"
#include "core/kepcore/ics/kep_icsdata.h"
#include "core/kepcore/ics/kep_icsfiles.h"
#include "core/kepcore/ics/kep_icsframe.h"
#include "core/kepcore/ics/kep_icsframes.h"
#include "core/kepcore/ics/kep_icsgeometry.h"
#include "core/kepcore/ics/kep_icsheader.h"
#include "core/kepcore/ics/kep_icslayout.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

namespace kep::detail {

namespace {

IcsHeader ReadHeader(const InputFile& file) {
    std::string text(static_cast<std::size_t>(std::min<std::uint64_t>(file.GetLength(), largestIcsHeader)), '\0');
    text.resize(file.ReadAt(0, text.data(), text.size()));
    return ParseIcsHeader(text, text.size() == file.GetLength(), file.GetName());
}

/// For the user.
std::string GetCompressionName(IcsCompression compression) {
    return compression == IcsCompression::None ? "none" : compression == IcsCompression::Gzip ? "gzip" : "compress";
}

/// An ICS file that was found good so far.
struct OpenedIcs {
    FrameHeader frame;
    IcsLayout layout;
    std::vector<int> byteOrder;
    std::optional<double> frameInterval; ///< seconds
    std::unique_ptr<InputFile> file;     ///< with the voxels
    IcsCompression compression = IcsCompression::None;
    std::uint64_t at = 0; ///< the first voxel's place

    std::uint64_t GetBytes() const { return layout.samples * frame.sample.GetSampleBytes(); }
};

std::optional<double> FindFrameInterval(const IcsHeader& header) {
    for (const IcsAxis& axis : header.axes) {
        if (axis.name == "t")
            return FindInterval(ParseNumber<double>(axis.scale), axis.unit);
    }
    return std::nullopt;
}

/// Opens a file whose frames are held to a rule before the file beside it is looked for.
template <typename Rule>
OpenedIcs OpenIcs(std::unique_ptr<InputFile> file, const Rule& rule) {
    const IcsHeader header = ReadHeader(*file);
    OpenedIcs opened;
    FrameHeader& frame = opened.frame;
    frame.format = FF_ICS;
    frame.sample = GetIcsSampleType(header, file->GetName());
    frame.storedBits = header.bits;
    opened.layout = FindIcsLayout(header, file->GetName(), frame);
    rule(opened.layout, file->GetName(), frame);
    TakeIcsGeometry(header, frame);
    opened.byteOrder = header.byteOrder;
    opened.frameInterval = FindFrameInterval(header);

    IcsVoxelFile voxels = FindIcsVoxels(*file, header);
    frame.fileSize = file->GetLength();
    if (voxels.file) {
        if (!voxels.file->IsSame(*file))
            frame.fileSize += voxels.file->GetLength();
        frame.dataFile = voxels.file->GetName();
        file = std::move(voxels.file);
    }
    frame.compression = GetCompressionName(voxels.compression);
    opened.file = std::move(file);
    opened.compression = voxels.compression;
    opened.at = voxels.at;
    return opened;
}

} // namespace

bool LooksLikeIcs(const unsigned char* head, std::size_t bytes) {
    return StartsLikeIcsHeader({reinterpret_cast<const char*>(head), bytes});
}

std::unique_ptr<FrameSource> OpenIcsFrame(std::unique_ptr<InputFile> file) {
    OpenedIcs opened = OpenIcs(std::move(file), &TakeIcsLayout);
    const IcsByteOrder order(opened.byteOrder, opened.frame.sample);
    auto data = OpenIcsData(std::move(opened.file), opened.compression, opened.at, opened.GetBytes());
    return MakeIcsFrame(std::move(opened.frame), opened.layout.strides, order, std::move(data));
}

std::unique_ptr<FrameSet> OpenIcsFrames(std::unique_ptr<InputFile> file) {
    OpenedIcs opened = OpenIcs(std::move(file), [](const IcsLayout&, const std::string&, const FrameHeader&) {});
    const IcsByteOrder order(opened.byteOrder, opened.frame.sample);
    IcsStream stream(std::move(opened.file), opened.compression, opened.at, opened.GetBytes());
    FrameAxes axes;
    axes.channels = opened.layout.channels;
    axes.times = opened.layout.times;
    axes.frameInterval = opened.frameInterval;
    return MakeIcsFrames(std::move(opened.frame), std::move(axes), opened.layout, order, std::move(stream));
}

} // namespace kep::detail
