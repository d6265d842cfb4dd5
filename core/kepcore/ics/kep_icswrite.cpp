#include "core/kepcore/convert/kep_bytes.h"
#include "core/kepcore/convert/kep_description.h"
#include "core/kepcore/file/kep_file.h"
#include "core/kepcore/file/kep_path.h"
#include "core/kepcore/ics/kep_icsbyteorder.h"
#include "core/kepcore/ics/kep_icsfiles.h"
#include "core/kepcore/ics/kep_icsgeometry.h"
#include "core/kepcore/ics/kep_icsheader.h"
#include "core/kepcore/kep_atomicfile.h"

#include <algorithm>
#include <array>
#include <deque>
#include <future>
#include <limits>
#include <map>
#include <new>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>
#include <zlib.h>

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

/// A stretch of the voxels, packed on its own.
struct PackedBlock {
    std::vector<Bytef> bytes;
    uLong checksum = 0;
    std::size_t unpacked = 0;
};

/// Packs a stretch so that it ends with a whole byte and another one can follow.
/// @param before  bytes in front of it that the reader knows by then, and that may repeat in it
PackedBlock PackBlock(const std::byte* bytes, std::size_t count, std::size_t before) {
    struct Deflater {
        Deflater() {
            // The fastest level: on the noise of microscopes the others take many times as long for the same size.
            constexpr int bare = -15; // the largest window, and no format around
            constexpr int memory = 8;
            if (deflateInit2(&stream, Z_BEST_SPEED, Z_DEFLATED, bare, memory, Z_DEFAULT_STRATEGY) != Z_OK)
                throw std::bad_alloc();
        }
        ~Deflater() { deflateEnd(&stream); }
        Deflater(const Deflater&) = delete;
        Deflater& operator=(const Deflater&) = delete;

        z_stream stream{};
    } deflater;
    constexpr std::size_t window = 32768;
    constexpr std::size_t flushMark = 16; // more than the end of a block takes

    z_stream& stream = deflater.stream;
    const auto* const data = reinterpret_cast<const Bytef*>(bytes);
    const std::size_t known = std::min(before, window);
    if (known > 0)
        deflateSetDictionary(&stream, data - known, static_cast<uInt>(known));
    PackedBlock block;
    block.unpacked = count;
    block.checksum = crc32_z(0, data, count);
    stream.next_in = const_cast<Bytef*>(data); // it is only read; the interface predates const
    stream.avail_in = static_cast<uInt>(count);
    std::size_t used = 0;
    do { // once, unless the bound was none
        block.bytes.resize(used + deflateBound(&stream, stream.avail_in) + flushMark);
        stream.next_out = block.bytes.data() + used;
        stream.avail_out = static_cast<uInt>(block.bytes.size() - used);
        deflate(&stream, Z_SYNC_FLUSH);
        used = block.bytes.size() - stream.avail_out;
    } while (stream.avail_out == 0);
    block.bytes.resize(used);
    return block;
}

/// One gzip stream, made of blocks that are packed beside each other.
class GzipOutput final : public IcsOutput {
public:
    explicit GzipOutput(AtomicFile& to) : IcsOutput(to) {
        // Deflate data, without name and time; 4 says that the fastest level was used, 255 that no system matters.
        constexpr std::array<Bytef, 10> head = {0x1F, 0x8B, Z_DEFLATED, 0, 0, 0, 0, 0, 4, 255};
        file.Write(head.data(), head.size());
    }

    void Write(const std::byte* bytes, std::size_t count) override {
        const std::size_t atOnce = std::clamp(std::thread::hardware_concurrency(), 1U, 8U);
        std::deque<std::future<PackedBlock>> blocks; // their threads have ended when this is gone
        std::size_t started = 0;
        while (started < count || !blocks.empty()) {
            while (started < count && blocks.size() < atOnce) {
                const std::size_t here = std::min(blockBytes, count - started);
                blocks.push_back(Start(bytes + started, here, started));
                started += here;
            }
            const PackedBlock block = blocks.front().get();
            blocks.pop_front();
            file.Write(block.bytes.data(), block.bytes.size());
            checksum = crc32_combine(checksum, block.checksum, static_cast<z_off_t>(block.unpacked));
            length += block.unpacked;
        }
    }

    void Finish() override {
        std::array<Bytef, 10> tail = {3, 0}; // an empty last block
        for (unsigned i = 0; i < 4; ++i) {
            tail[2 + i] = static_cast<Bytef>(checksum >> (8 * i));
            tail[6 + i] = static_cast<Bytef>(length >> (8 * i));
        }
        file.Write(tail.data(), tail.size());
    }

    static constexpr std::size_t blockBytes = std::size_t{512} << 10;

private:
    static std::future<PackedBlock> Start(const std::byte* bytes, std::size_t count, std::size_t before) {
        try {
            return std::async(std::launch::async, &PackBlock, bytes, count, before);
        } catch (const std::system_error&) { // no thread can be had: packed when it is asked for
            return std::async(std::launch::deferred, &PackBlock, bytes, count, before);
        }
    }

    uLong checksum = 0;
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
    const std::size_t room = 8 * GzipOutput::blockBytes / bytes; // enough for all threads to have something
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
