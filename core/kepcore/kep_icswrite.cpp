#include "core/kepcore/kep_atomicfile.h"
#include "core/kepcore/kep_file.h"
#include "core/kepcore/kep_icsgeometry.h"
#include "core/kepcore/kep_icsheader.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <limits>
#include <new>
#include <string>
#include <string_view>
#include <vector>
#include <zlib.h>

namespace kep::detail {

namespace {

constexpr std::size_t chunkBytes = std::size_t{256} << 10; // of voxels on their way

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

class GzipOutput final : public IcsOutput {
public:
    explicit GzipOutput(AtomicFile& to) : IcsOutput(to) {
        // The fastest level: on the noise of microscopes the others take many times as long for the same size.
        constexpr int gzip = 15 + 16; // the largest window, and the format
        constexpr int mostMemory = 9;
        if (deflateInit2(&stream, Z_BEST_SPEED, Z_DEFLATED, gzip, mostMemory, Z_DEFAULT_STRATEGY) != Z_OK)
            throw std::bad_alloc();
    }
    ~GzipOutput() override { deflateEnd(&stream); }

    void Write(const std::byte* bytes, std::size_t count) override {
        constexpr std::size_t most = std::numeric_limits<uInt>::max();
        for (std::size_t done = 0; done < count;) {
            const std::size_t part = std::min(count - done, most);
            // The library reads what this points to, but its interface predates const.
            stream.next_in = reinterpret_cast<Bytef*>(const_cast<std::byte*>(bytes + done));
            stream.avail_in = static_cast<uInt>(part);
            while (stream.avail_in > 0)
                Deflate(Z_NO_FLUSH);
            done += part;
        }
    }

    void Finish() override {
        while (Deflate(Z_FINISH) != Z_STREAM_END) {
        }
    }

private:
    int Deflate(int flush) {
        stream.next_out = buffer.data();
        stream.avail_out = static_cast<uInt>(buffer.size());
        const int result = deflate(&stream, flush);
        file.Write(buffer.data(), buffer.size() - stream.avail_out);
        return result;
    }

    z_stream stream{};
    std::vector<Bytef> buffer = std::vector<Bytef>(chunkBytes);
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
    std::string title = fileName.substr(fileName.rfind('/') + 1);
    if (ToLowerAscii(title).ends_with(".ics"))
        title.resize(title.size() - 4);
    std::replace_if(
        title.begin(), title.end(), [](unsigned char c) { return c < ' '; }, ' ');
    return title;
}

const char* FormatName(const SampleType& sample) {
    if (sample.IsComplex())
        return "complex";
    return sample.kind == NumberKind::Float ? "real" : "integer";
}

std::vector<std::string> ByteOrderTexts(const SampleType& sample) {
    std::vector<std::string> texts;
    const auto part = static_cast<std::size_t>(sample.bytes);
    for (std::size_t i = 0; i < sample.GetSampleBytes(); ++i) {
        const std::size_t within = i % part;
        const bool little = std::endian::native == std::endian::little;
        texts.push_back(std::to_string(i - within + (little ? within : part - 1 - within) + 1));
    }
    return texts;
}

std::string MakeHeader(const std::string& fileName, const FrameToWrite& frame) {
    const FrameHeader& about = frame.header;
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
    AddLine(header, "representation", "compression", {frame.compress ? "gzip" : "uncompressed"});
    AddLine(header, "representation", "byte_order", ByteOrderTexts(about.sample));
    AddLine(header, "parameter", "origin", origins);
    AddLine(header, "parameter", "scale", scales);
    AddLine(header, "parameter", "units", units);
    AddLine(header, "parameter", "labels", labels);
    for (const auto& [key, value] : MakeIcsHistory(about)) {
        // Read back, a line without a key comes under this one.
        if (key == "history" && value.find('\t') == std::string::npos)
            AddLine(header, "history", value, {});
        else
            AddLine(header, "history", key, {value});
    }
    header += "end\n";
    if (header.size() > largestIcsHeader)
        ThrowCannotWrite(fileName, "its description is too long for an ICS header");
    return header;
}

/// Writes the components one behind the other, each as a volume of its own.
template <std::size_t Bytes>
void WritePlanar(const std::byte* voxels, std::size_t count, std::size_t components, IcsOutput& out) {
    std::vector<std::byte> part(chunkBytes);
    constexpr std::size_t room = chunkBytes / Bytes;
    for (std::size_t c = 0; c < components; ++c) {
        for (std::size_t first = 0; first < count; first += room) {
            const std::size_t here = std::min(room, count - first);
            const std::byte* from = voxels + (first * components + c) * Bytes;
            for (std::size_t i = 0; i < here; ++i)
                std::memcpy(part.data() + i * Bytes, from + i * components * Bytes, Bytes);
            out.Write(part.data(), here * Bytes);
        }
    }
}

void WriteVoxels(const FrameToWrite& frame, IcsOutput& out) {
    const FrameHeader& about = frame.header;
    const auto components = static_cast<std::size_t>(about.components);
    const std::size_t count = about.size.x * about.size.y * about.size.z;
    if (components == 1) {
        out.Write(frame.voxels, count * about.sample.GetSampleBytes());
        return;
    }
    switch (about.sample.bytes) {
    case 1:
        return WritePlanar<1>(frame.voxels, count, components, out);
    case 2:
        return WritePlanar<2>(frame.voxels, count, components, out);
    case 4:
        return WritePlanar<4>(frame.voxels, count, components, out);
    default:
        return WritePlanar<8>(frame.voxels, count, components, out);
    }
}

} // namespace

void WriteIcsFrame(const std::string& fileName, const FrameToWrite& frame) {
    if (frame.header.sample.kind == NumberKind::ComplexSigned)
        ThrowCannotWrite(fileName, "the format knows no complex numbers of integers");
    if (frame.header.components == 3 && frame.header.sample.IsComplex())
        ThrowCannotWrite(fileName, "the format knows no colour of complex numbers");
    const std::string header = MakeHeader(fileName, frame);
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
}

} // namespace kep::detail
