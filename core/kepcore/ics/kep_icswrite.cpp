#include "core/kepcore/convert/kep_bytes.h"
#include "core/kepcore/convert/kep_description.h"
#include "core/kepcore/file/kep_file.h"
#include "core/kepcore/file/kep_path.h"
#include "core/kepcore/ics/kep_icsbyteorder.h"
#include "core/kepcore/ics/kep_icsfiles.h"
#include "core/kepcore/ics/kep_icsgeometry.h"
#include "core/kepcore/ics/kep_icsheader.h"
#include "core/kepcore/kep_atomicfile.h"
#include "core/kepcore/pack/kep_deflate.h"
#include "core/kepcore/pack/kep_inorder.h"

#include <algorithm>
#include <array>
#include <limits>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kep::detail {

namespace {

/// Takes the bytes of the voxels in the order of the file.
class IcsOutput {
public:
    explicit IcsOutput(AtomicFile& to) : file(to) {}
    IcsOutput(const IcsOutput&) = delete;
    IcsOutput& operator=(const IcsOutput&) = delete;
    virtual ~IcsOutput() = default;

    virtual void Write(const std::byte* bytes, std::size_t count) { file.Write(bytes, count); }
    virtual void Finish() {}

protected:
    AtomicFile& file;
};

/// One gzip stream, made of stretches that are packed beside each other.
class GzipOutput final : public IcsOutput {
public:
    explicit GzipOutput(AtomicFile& to) : IcsOutput(to), packers(GetThreadLimit()) {
        // Deflate data, without name and time; 4 says that the fastest level was used, 255 that no system matters.
        constexpr std::array<unsigned char, 10> head = {0x1F, 0x8B, 8, 0, 0, 0, 0, 0, 4, 255};
        file.Write(head.data(), head.size());
    }

    void Write(const std::byte* bytes, std::size_t count) override {
        const auto pack = [&](std::size_t i, std::size_t lane) {
            const std::size_t before = i * stretchBytes;
            const std::size_t here = std::min(stretchBytes, count - before);
            return Stretch{packers[lane].PackStretch(bytes + before, here, before),
                           ExtendChecksum(0, bytes + before, here), here};
        };
        const auto write = [&](std::size_t, const Stretch& stretch) {
            file.Write(stretch.packed.data(), stretch.packed.size());
            checksum = JoinChecksums(checksum, stretch.checksum, stretch.unpacked);
            length += stretch.unpacked;
        };
        MakeInOrder((count + stretchBytes - 1) / stretchBytes, packers.size(), pack, write);
    }

    void Finish() override {
        std::array<unsigned char, 10> tail = {3, 0}; // an empty last block
        for (unsigned i = 0; i < 4; ++i) {
            tail[2 + i] = static_cast<unsigned char>(checksum >> (8 * i));
            tail[6 + i] = static_cast<unsigned char>(length >> (8 * i));
        }
        file.Write(tail.data(), tail.size());
    }

    static constexpr std::size_t stretchBytes = std::size_t{512} << 10;

private:
    /// Bytes packed by themselves.
    struct Stretch {
        std::vector<std::byte> packed;
        std::uint32_t checksum;
        std::size_t unpacked;
    };

    std::vector<Deflater> packers; // one a lane
    std::uint32_t checksum = 0;
    std::uint64_t length = 0;
};

/// Makes a line of the header. No value has a separator in it but the last one.
void AddLine(std::string& header, std::string_view category, std::string_view key,
             const std::vector<std::string>& values) {
    header.append(category).append("\t").append(key);
    for (const std::string& value : values)
        header.append("\t").append(value);
    header += '\n';
}

/// The name without folder and suffix, which the format wants to see in the header.
std::string TitleOf(const std::string& fileName) {
    std::string title = RemoveIcsSuffix(GetBaseName(fileName));
    std::replace_if(
        title.begin(), title.end(), [](unsigned char c) { return c < ' '; }, ' ');
    return title;
}

const char* FormatName(const SampleType& sample) {
    if (sample.IsComplex())
        return "complex";
    return sample.kind == NumberKind::Float ? "real" : "integer";
}

std::string FormatHistory(const IcsHistory& history) {
    std::string lines;
    for (const auto& [key, value] : history) {
        // Read back, a line without a key comes under this one.
        if (key == "history" && value.find('\t') == std::string::npos)
            AddLine(lines, "history", value, {});
        else
            AddLine(lines, "history", key, {value});
    }
    return lines;
}

std::string MakeHeader(const std::string& fileName, const FrameHeader& about, bool compress) {
    const std::string bits = std::to_string(8 * about.sample.GetSampleBytes());
    const Vector3d<float> res = about.resolution.GetRes();
    const IcsAxisTexts x = MakeIcsAxisTexts(res.x, about.offset.x);
    const IcsAxisTexts y = MakeIcsAxisTexts(res.y, about.offset.y);
    const IcsAxisTexts z = MakeIcsAxisTexts(res.z, about.offset.z);

    std::vector<std::string> order = {"bits", "x", "y", "z"};
    std::vector<std::string> sizes = {bits, std::to_string(about.size.x), std::to_string(about.size.y),
                                      std::to_string(about.size.z)};
    std::vector<std::string> origins = {"0", x.origin, y.origin, z.origin};
    std::vector<std::string> scales = {"1", x.scale, y.scale, z.scale};
    std::vector<std::string> units = {"relative", x.unit, y.unit, z.unit};
    std::vector<std::string> labels = {"intensity", "x-position", "y-position", "z-position"};
    if (about.components == 3) {
        order.emplace_back("probe");
        sizes.emplace_back("3");
        origins.emplace_back("0");
        scales.emplace_back("1");
        units.emplace_back("undefined");
        labels.emplace_back("probe");
    }
    const bool isUnsigned = about.sample.kind == NumberKind::Unsigned;

    std::string header = "\t\nics_version\t2.0\n";
    AddLine(header, "filename", TitleOf(fileName), {});
    AddLine(header, "layout", "parameters", {std::to_string(order.size())});
    AddLine(header, "layout", "order", order);
    AddLine(header, "layout", "sizes", sizes);
    AddLine(header, "layout", "coordinates", {"video"}); // the first row is the uppermost
    AddLine(header, "layout", "significant_bits", {bits});
    AddLine(header, "representation", "format", {FormatName(about.sample)});
    AddLine(header, "representation", "sign", {isUnsigned ? "unsigned" : "signed"});
    AddLine(header, "representation", "compression", {compress ? "gzip" : "uncompressed"});
    AddLine(header, "representation", "byte_order", GetNativeByteOrder(about.sample));
    AddLine(header, "parameter", "origin", origins);
    AddLine(header, "parameter", "scale", scales);
    AddLine(header, "parameter", "units", units);
    AddLine(header, "parameter", "labels", labels);
    header += FormatHistory(MakeIcsHistory(about));
    header += "end\n";
    return header;
}

/// Makes a description fit into the header that readers take.
/// @param taken  bytes of the header without it
FittedDescription FitIcsDescription(const std::map<std::string, std::string>& entries, std::size_t taken) {
    static constexpr std::size_t anyLength = std::numeric_limits<std::size_t>::max();
    DescriptionRoom room;
    room.file = "an ICS file";
    room.bytes = largestIcsHeader - std::min(taken, largestIcsHeader);
    room.longestValue = anyLength;
    room.getBytes = [](const std::string& key, std::string_view value) {
        const IcsHistory lines = MakeIcsEntry(key, value);
        return lines.empty() ? anyLength : FormatHistory(lines).size();
    };
    return FitDescription(entries, room);
}

/// Writes the components one behind the other, each as a volume of its own.
void WritePlanar(const FrameToWrite& frame, std::size_t count, IcsOutput& out) {
    const auto components = static_cast<std::size_t>(frame.header.components);
    const std::size_t bytes = frame.header.sample.GetSampleBytes();
    const std::size_t room = 8 * GzipOutput::stretchBytes / bytes; // enough for all threads to have something
    std::vector<std::byte> part(std::min(room, count) * bytes);
    for (std::size_t c = 0; c < components; ++c) {
        for (std::size_t first = 0; first < count; first += room) {
            const std::size_t here = std::min(room, count - first);
            CopyApart(bytes, frame.voxels + (first * components + c) * bytes, components, here, part.data(), 1);
            out.Write(part.data(), here * bytes);
        }
    }
}

void WriteVoxels(const FrameToWrite& frame, IcsOutput& out) {
    const FrameHeader& about = frame.header;
    const std::size_t count = about.size.x * about.size.y * about.size.z;
    if (about.components == 1)
        out.Write(frame.voxels, count * about.sample.GetSampleBytes());
    else
        WritePlanar(frame, count, out);
}

} // namespace

std::string WriteIcsFrame(const std::string& fileName, const FrameToWrite& frame) {
    if (frame.header.sample.kind == NumberKind::ComplexSigned)
        ThrowCannotWrite(fileName, "the format knows no complex numbers of integers");
    if (frame.header.components == 3 && frame.header.sample.IsComplex())
        ThrowCannotWrite(fileName, "the format knows no colour of complex numbers");
    FrameHeader about = frame.header;
    about.description.clear();
    FittedDescription fitted =
        FitIcsDescription(frame.header.description, MakeHeader(fileName, about, frame.compress).size());
    about.description.swap(fitted.entries);
    const std::string header = MakeHeader(fileName, about, frame.compress);
    AtomicFile file(fileName);
    file.Write(header.data(), header.size());
    if (frame.compress) {
        GzipOutput out(file);
        WriteVoxels(frame, out);
        out.Finish();
    } else {
        IcsOutput out(file);
        WriteVoxels(frame, out);
    }
    file.Commit();
    return std::move(fitted.notice);
}

} // namespace kep::detail
