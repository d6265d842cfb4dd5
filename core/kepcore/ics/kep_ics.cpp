#include "core/kepcore/file/kep_file.h"
#include "core/kepcore/ics/kep_icsdata.h"
#include "core/kepcore/ics/kep_icsgeometry.h"
#include "core/kepcore/ics/kep_icsheader.h"
#include "core/kepcore/kep_exceptions.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <filesystem>
#include <utility>

namespace kep::detail {

namespace {

constexpr std::uint64_t mostBytes = std::uint64_t{1} << 40; // of all voxels

/// Turns the bytes of samples as they lie in a file into those of the machine.
class ByteOrder {
public:
    ByteOrder(const std::vector<int>& significance, const SampleType& sample)
        : count(sample.GetSampleBytes()), part(static_cast<std::size_t>(sample.bytes)) {
        // Byte i of a sample in the file goes to place[i]. The two parts of a complex number have all of its
        // significances together, the real part's first.
        for (std::size_t i = 0; i < significance.size(); ++i) {
            const auto rank = static_cast<std::size_t>(significance[i]) - 1;
            const std::size_t within = rank % part;
            place[i] = rank - within + (std::endian::native == std::endian::little ? within : part - 1 - within);
            same = same && place[i] == i;
            swapped = swapped && place[i] == i - i % part + (part - 1 - i % part);
        }
        if (significance.empty())
            same = true;
    }

    bool IsNative() const { return same; }

    void Apply(std::byte* samples, std::size_t bytes) const {
        if (same)
            return;
        if (swapped && part == 2)
            SwapAll<std::uint16_t>(samples, bytes);
        else if (swapped && part == 4)
            SwapAll<std::uint32_t>(samples, bytes);
        else if (swapped && part == 8)
            SwapAll<std::uint64_t>(samples, bytes);
        else
            PermuteAll(samples, bytes);
    }

private:
    static std::uint16_t Swap(std::uint16_t number) { return __builtin_bswap16(number); }
    static std::uint32_t Swap(std::uint32_t number) { return __builtin_bswap32(number); }
    static std::uint64_t Swap(std::uint64_t number) { return __builtin_bswap64(number); }

    template <typename T>
    static void SwapAll(std::byte* samples, std::size_t bytes) {
        for (std::size_t i = 0; i < bytes; i += sizeof(T)) {
            T number = 0;
            std::memcpy(&number, samples + i, sizeof(T));
            number = Swap(number);
            std::memcpy(samples + i, &number, sizeof(T));
        }
    }

    void PermuteAll(std::byte* samples, std::size_t bytes) const {
        std::array<std::byte, 16> sample{};
        for (std::size_t at = 0; at < bytes; at += count) {
            std::memcpy(sample.data(), samples + at, count);
            for (std::size_t i = 0; i < count; ++i)
                samples[at + place[i]] = sample[i];
        }
    }

    std::size_t count; // bytes of a sample, at most 16
    std::size_t part;  // bytes of a number, or of one part of a complex one
    std::array<std::size_t, 16> place{};
    bool same = true;
    bool swapped = true;
};

/// How far apart, in samples, neighbours along each axis lie.
struct Strides {
    std::uint64_t x = 0;
    std::uint64_t y = 0;
    std::uint64_t z = 0;
    std::uint64_t colour = 0;
};

/// Copies one slice so that x is fastest and the components of a voxel lie together.
template <std::size_t Bytes>
void GatherSlice(const std::byte* from, const Strides& strides, const FrameHeader& frame, std::byte* to) {
    const auto components = static_cast<std::size_t>(frame.components);
    for (std::size_t y = 0; y < frame.size.y; ++y) {
        for (std::size_t x = 0; x < frame.size.x; ++x) {
            const std::byte* voxel = from + (y * strides.y + x * strides.x) * Bytes;
            for (std::size_t c = 0; c < components; ++c, to += Bytes)
                std::memcpy(to, voxel + c * strides.colour * Bytes, Bytes);
        }
    }
}

void GatherSlice(const std::byte* from, const Strides& strides, const FrameHeader& frame, std::byte* to) {
    switch (frame.sample.GetSampleBytes()) {
    case 1:
        return GatherSlice<1>(from, strides, frame, to);
    case 2:
        return GatherSlice<2>(from, strides, frame, to);
    case 4:
        return GatherSlice<4>(from, strides, frame, to);
    case 8:
        return GatherSlice<8>(from, strides, frame, to);
    default:
        return GatherSlice<16>(from, strides, frame, to);
    }
}

class IcsFrame final : public FrameSource {
public:
    IcsFrame(FrameHeader frame, const Strides& fileStrides, const ByteOrder& order, std::unique_ptr<IcsData> packed)
        : header(std::move(frame)), strides(fileStrides), byteOrder(order), data(std::move(packed)) {
        way = ChooseWay();
    }

    const FrameHeader& GetHeader() const override { return header; }

    void ReadSlices(std::size_t count, std::byte* to) override {
        const std::size_t bytes = header.GetSliceBytes();
        if (way == Way::AsTheyAre && byteOrder.IsNative()) {
            data->Read(to, count * bytes);
        } else {
            for (std::size_t i = 0; i < count; ++i) {
                ReadSlice(next + i, to + i * bytes);
                byteOrder.Apply(to + i * bytes, bytes);
            }
        }
        next += count;
        if (next == header.size.z)
            data->Finish();
    }

private:
    /// How slices come out of the file.
    enum class Way {
        AsTheyAre,   ///< they lie in the file as they are wanted
        SliceWise,   ///< the bytes of a slice lie together, but in another order
        PlaneWise,   ///< each component is a volume of its own, slice behind slice, and places can be read
        FromTheWhole ///< the bytes of a slice are spread over the file
    };

    Way ChooseWay() {
        const std::uint64_t components = static_cast<std::uint64_t>(header.components);
        const std::uint64_t plane = header.size.x * header.size.y;
        const auto lies = [](std::uint64_t size, std::uint64_t stride, std::uint64_t wanted) {
            return size == 1 || stride == wanted; // along one voxel there is nowhere to go
        };
        if (lies(header.size.z, strides.z, plane * components)) {
            const bool wanted = lies(components, strides.colour, 1) && lies(header.size.x, strides.x, components) &&
                                lies(header.size.y, strides.y, components * header.size.x);
            return wanted ? Way::AsTheyAre : Way::SliceWise;
        }
        if (strides.z == plane && strides.colour == plane * header.size.z && data->MoveTo(0))
            return Way::PlaneWise;
        return Way::FromTheWhole;
    }

    void ReadSlice(std::size_t z, std::byte* to) {
        const std::size_t sampleBytes = header.sample.GetSampleBytes();
        switch (way) {
        case Way::AsTheyAre:
            data->Read(to, header.GetSliceBytes());
            return;
        case Way::SliceWise:
            data->Read(TakeBuffer(header.GetSliceBytes()), header.GetSliceBytes());
            GatherSlice(buffer.get(), strides, header, to);
            return;
        case Way::PlaneWise:
            ReadPlanes(z, to);
            return;
        case Way::FromTheWhole:
            if (!buffer) {
                const std::size_t whole = header.GetSliceBytes() * header.size.z;
                data->Read(TakeBuffer(whole), whole);
            }
            GatherSlice(buffer.get() + z * strides.z * sampleBytes, strides, header, to);
            return;
        }
    }

    void ReadPlanes(std::size_t z, std::byte* to) {
        const std::size_t sampleBytes = header.sample.GetSampleBytes();
        const std::size_t plane = header.size.x * header.size.y;
        const auto components = static_cast<std::size_t>(header.components);
        std::byte* planes = TakeBuffer(header.GetSliceBytes());
        for (std::size_t c = 0; c < components; ++c) {
            data->MoveTo((c * strides.colour + z * strides.z) * sampleBytes);
            data->Read(planes + c * plane * sampleBytes, plane * sampleBytes);
        }
        Strides together = strides;
        together.colour = plane;
        GatherSlice(planes, together, header, to);
    }

    /// The memory stays untouched until data come: a packed file may promise more than it holds.
    std::byte* TakeBuffer(std::size_t bytes) {
        if (!buffer)
            buffer = std::make_unique_for_overwrite<std::byte[]>(bytes);
        return buffer.get();
    }

    FrameHeader header;
    Strides strides;
    ByteOrder byteOrder;
    std::unique_ptr<IcsData> data;
    Way way = Way::AsTheyAre;
    std::unique_ptr<std::byte[]> buffer;
    std::size_t next = 0;
};

SampleType MakeSampleType(const IcsHeader& header, const std::string& fileName) {
    const int bytes = header.bits / 8;
    switch (header.format) {
    case IcsFormat::Integer:
        if (bytes <= 8)
            return {header.isSigned ? NumberKind::Signed : NumberKind::Unsigned, bytes};
        ThrowNotSupported(fileName, std::to_string(header.bits) + "-bit integer");
    case IcsFormat::Real:
        if (bytes == 4 || bytes == 8)
            return {NumberKind::Float, bytes};
        ThrowNotSupported(fileName, std::to_string(header.bits) + "-bit float");
    case IcsFormat::Complex:
        break;
    }
    if (bytes != 8 && bytes != 16)
        ThrowNotSupported(fileName, std::to_string(header.bits) + "-bit complex");
    return {NumberKind::ComplexFloat, bytes / 2};
}

/// Tells which axis is which, and how the voxels lie.
Strides TakeLayout(const IcsHeader& header, const std::string& fileName, FrameHeader& frame) {
    Strides strides;
    std::uint64_t step = 1; // in samples
    std::uint64_t channels = 1;
    frame.size = {1, 1, 1};
    for (const IcsAxis& axis : header.axes) {
        if (axis.name == "x") {
            frame.size.x = axis.size;
            strides.x = step;
        } else if (axis.name == "y") {
            frame.size.y = axis.size;
            strides.y = step;
        } else if (axis.name == "z") {
            frame.size.z = axis.size;
            strides.z = step;
        } else if (axis.name == "t") {
            if (axis.size != 1)
                ThrowNotOneFrame(fileName, axis.size, "time points");
        } else if (axis.size != 1) {
            strides.colour = step;
            if (__builtin_mul_overflow(channels, axis.size, &channels))
                ThrowDamaged(fileName, "its header promises too many channels");
        }
        if (__builtin_mul_overflow(step, axis.size, &step) || step > mostBytes)
            ThrowDamaged(fileName, "its header promises too many voxels");
    }
    if (channels != 1 && channels != 3)
        ThrowChannels(fileName, channels);
    frame.components = static_cast<int>(channels);
    if (step * frame.sample.GetSampleBytes() > mostBytes)
        ThrowDamaged(fileName, "its header promises too many voxels");
    if (frame.components == 3 && frame.sample.IsComplex())
        ThrowNotSupported(fileName, "colour of complex numbers");
    return strides;
}

/// Folder with its slash, or nothing.
std::string FolderOf(const std::string& fileName) {
    const std::size_t slash = fileName.rfind('/');
    return slash == std::string::npos ? "" : fileName.substr(0, slash + 1);
}

/// How the data of an ".ids" file are packed. Some programs pack it and say so in the header, others unpack it and
/// leave the header as it was.
IcsCompression CompressionOf(const InputFile& file, IcsCompression promised) {
    std::array<unsigned char, 2> head{};
    if (promised == IcsCompression::None || file.ReadAt(0, head.data(), head.size()) < head.size() || head[0] != 0x1F)
        return IcsCompression::None;
    return head[1] == 0x8B ? IcsCompression::Gzip : head[1] == 0x9D ? IcsCompression::Compress : IcsCompression::None;
}

constexpr std::array<const char*, 3> dataSuffixes = {".ids", ".ids.gz", ".ids.Z"};

/// Finds the data of a header of version 1, which have its name with another suffix.
/// @return the name, and the number of its suffix; no name if there is none
std::pair<std::string, std::size_t> FindDataFile(const std::string& headerName) {
    namespace fs = std::filesystem;
    std::string stem = headerName;
    if (ToLowerAscii(stem).ends_with(".ics"))
        stem.resize(stem.size() - 4);
    std::error_code error;
    for (std::size_t i = 0; i < dataSuffixes.size(); ++i)
        if (fs::exists(stem + dataSuffixes[i], error))
            return {stem + dataSuffixes[i], i};

    // The suffix may be in capitals: one walk through the folder.
    const std::string folder = FolderOf(stem);
    const std::string start = stem.substr(folder.size());
    std::pair<std::string, std::size_t> found("", dataSuffixes.size());
    fs::directory_iterator entry(folder.empty() ? "." : folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        if (!name.starts_with(start))
            continue;
        const std::string suffix = ToLowerAscii(name.substr(start.size()));
        for (std::size_t i = 0; i < found.second; ++i)
            if (suffix == ToLowerAscii(dataSuffixes[i]))
                found = {folder + name, i};
    }
    return found;
}

/// Opens the file with the voxels of a header. The header is the one that the user knows of, so it is named as well.
std::unique_ptr<InputFile> OpenDataFile(const std::string& headerName, const std::string& dataName) {
    try {
        return std::make_unique<InputFile>(dataName);
    } catch (const IOException&) {
        ThrowDamaged(headerName,
                     "the file '" + dataName.substr(FolderOf(dataName).size()) + "' with its voxels cannot be opened");
    }
}

std::string CompressionText(IcsCompression compression) {
    return compression == IcsCompression::None ? "none" : compression == IcsCompression::Gzip ? "gzip" : "compress";
}

} // namespace

bool LooksLikeIcs(const unsigned char* head, std::size_t bytes) {
    return StartsLikeIcsHeader({reinterpret_cast<const char*>(head), bytes});
}

std::unique_ptr<FrameSource> OpenIcsFrame(std::unique_ptr<InputFile> file) {
    const std::string name = file->GetName();
    std::string text(static_cast<std::size_t>(std::min<std::uint64_t>(file->GetLength(), largestIcsHeader)), '\0');
    text.resize(file->ReadAt(0, text.data(), text.size()));
    const IcsHeader header = ParseIcsHeader(text, text.size() == file->GetLength(), name);

    FrameHeader frame;
    frame.format = FF_ICS;
    frame.sample = MakeSampleType(header, name);
    frame.storedBits = header.bits;
    const Strides strides = TakeLayout(header, name, frame);
    TakeIcsGeometry(header, frame);

    frame.fileSize = file->GetLength();
    std::uint64_t start = header.bytes;
    IcsCompression compression = header.compression;
    std::unique_ptr<InputFile> dataFile;
    if (header.version == 1) {
        const auto [dataName, suffix] = FindDataFile(name);
        if (dataName.empty())
            ThrowDamaged(name, "the .ids file with its voxels is missing");
        dataFile = OpenDataFile(name, dataName);
        start = 0;
        compression = suffix == 0   ? CompressionOf(*dataFile, compression)
                      : suffix == 1 ? IcsCompression::Gzip
                                    : IcsCompression::Compress;
    } else if (header.sourceFile) {
        const std::string& source = *header.sourceFile;
        if (source.find('/') != std::string::npos)
            ThrowDamaged(name, "its voxels are said to lie in another folder");
        dataFile = OpenDataFile(name, FolderOf(name) + source);
        start = header.sourceOffset;
    }
    if (dataFile && dataFile->IsSame(*file) && start < header.bytes)
        ThrowDamaged(name, "its voxels are said to lie in its header");
    if (dataFile && !dataFile->IsSame(*file))
        frame.fileSize += dataFile->GetLength();
    if (dataFile) {
        frame.dataFile = dataFile->GetName();
        file = std::move(dataFile);
    }
    frame.compression = CompressionText(compression);

    auto data = OpenIcsData(std::move(file), compression, start, frame.GetSliceBytes() * frame.size.z);
    const ByteOrder order(header.byteOrder, frame.sample);
    return std::make_unique<IcsFrame>(std::move(frame), strides, order, std::move(data));
}

} // namespace kep::detail
