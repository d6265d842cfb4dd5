#include "core/kepcore/file/kep_file.h"
#include "core/kepcore/ics/kep_icsbyteorder.h"
#include "core/kepcore/ics/kep_icsdata.h"
#include "core/kepcore/ics/kep_icsfiles.h"
#include "core/kepcore/ics/kep_icsframe.h"
#include "core/kepcore/ics/kep_icsgeometry.h"
#include "core/kepcore/ics/kep_icsheader.h"
#include "core/kepcore/ics/kep_icslayout.h"

#include <algorithm>
#include <utility>

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

} // namespace

bool LooksLikeIcs(const unsigned char* head, std::size_t bytes) {
    return StartsLikeIcsHeader({reinterpret_cast<const char*>(head), bytes});
}

std::unique_ptr<FrameSource> OpenIcsFrame(std::unique_ptr<InputFile> file) {
    const IcsHeader header = ReadHeader(*file);
    FrameHeader frame;
    frame.format = FF_ICS;
    frame.sample = GetIcsSampleType(header, file->GetName());
    frame.storedBits = header.bits;
    const IcsStrides strides = TakeIcsLayout(header, file->GetName(), frame);
    TakeIcsGeometry(header, frame);

    IcsVoxelFile voxels = FindIcsVoxels(*file, header);
    frame.fileSize = file->GetLength();
    if (voxels.file) {
        if (!voxels.file->IsSame(*file))
            frame.fileSize += voxels.file->GetLength();
        frame.dataFile = voxels.file->GetName();
        file = std::move(voxels.file);
    }
    frame.compression = GetCompressionName(voxels.compression);
    auto data = OpenIcsData(std::move(file), voxels.compression, voxels.at, frame.GetSliceBytes() * frame.size.z);
    const IcsByteOrder order(header.byteOrder, frame.sample);
    return MakeIcsFrame(std::move(frame), strides, order, std::move(data));
}

} // namespace kep::detail
