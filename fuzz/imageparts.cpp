#include "fuzz/input.h"
#include "fuzz/targets.h"
#include "tests/core/kepcore/ics_support.h"
#include "tests/core/kepcore/tiff_support.h"

#include "core/kepcore/kep_image3d.h"
#include "core/kepcore/kep_imageinfo.h"

#include <algorithm>
#include <array>

namespace fuzz {

namespace {

template <typename V>
V Choose(unsigned char number, std::initializer_list<V> choice) {
    return choice.begin()[number % choice.size()];
}

} // namespace

void ReadTiffBlock(std::string_view bytes) {
    using tifftest::TiffBuilder;
    Numbers numbers(bytes);
    const auto next = [&] { return numbers.Take<unsigned char>(); };
    const unsigned compression = Choose(next(), {1U, 2U, 3U, 4U, 5U, 7U, 8U, 32773U, 34925U, 50000U, 32946U});
    const unsigned bits = Choose(next(), {8U, 1U, 16U, 32U, 64U, 12U, 2U, 4U, 24U});
    const unsigned format = Choose(next(), {1U, 2U, 3U, 5U, 6U});
    const unsigned samples = Choose(next(), {1U, 3U, 4U, 2U});
    const unsigned photometric = Choose(next(), {1U, 0U, 2U, 6U});
    const unsigned predictor = Choose(next(), {1U, 2U, 3U});
    const unsigned width = 1U + next();
    const unsigned height = 1U + next() % 64U;
    const unsigned char flags = next();
    const bool isTile = (flags & 1U) != 0;
    const unsigned faxOptions = flags >> 1U & 7U;
    const unsigned fillOrder = (flags & 16U) != 0 ? 2 : 1;
    const unsigned planar = (flags & 32U) != 0 ? 2 : 1;

    TiffBuilder builder((flags & 64U) != 0 ? tifftest::Order::Big : tifftest::Order::Little,
                        (flags & 128U) != 0 ? tifftest::Kind::Big : tifftest::Kind::Classic);
    const std::size_t at = builder.AddBytes(std::string(numbers.GetRest()));
    const std::size_t length = numbers.GetRest().size();
    const std::vector<std::uint64_t> places(planar == 2 ? samples : 1, at); // planes may share their bytes
    const std::vector<std::uint64_t> lengths(places.size(), length);
    std::vector<TiffBuilder::Tag> tags = {
        {256, 4, {width}},       {257, 4, {height}},      {258, 3, std::vector<std::uint64_t>(samples, bits)},
        {259, 3, {compression}}, {262, 3, {photometric}}, {266, 3, {fillOrder}},
    };
    const auto add = [&](const TiffBuilder::Tag& tag) { tags.push_back(tag); };
    if (!isTile)
        add({273, 4, places});
    add({277, 3, {samples}});
    if (!isTile) {
        add({278, 4, {height}});
        add({279, 4, lengths});
    }
    add({284, 3, {planar}});
    add({292, 4, {faxOptions}});
    add({317, 3, {predictor}});
    if (isTile) {
        add({322, 4, {(width + 15U) / 16U * 16U}});
        add({323, 4, {(height + 15U) / 16U * 16U}});
        add({324, 4, places});
        add({325, 4, lengths});
    }
    add({339, 3, std::vector<std::uint64_t>(samples, format)});
    builder.AddDirectory(tags);
    ReadImage(builder.GetFile());
}

Pair SplitPair(std::string_view bytes) {
    constexpr std::array<std::string_view, 3> suffixes = {".ids", ".ids.gz", ".ids.Z"};
    for (const std::string_view suffix : suffixes) {
        const std::string line = "--" + std::string(suffix) + "--\n";
        const std::size_t at = bytes.find(line);
        if (at != std::string_view::npos)
            return {bytes.substr(0, at), suffix, bytes.substr(at + line.size())};
    }
    return {bytes, suffixes[0], {}};
}

void ReadIcsPair(std::string_view bytes) {
    static MemoryFile header(GetScratchFolder() + "/pair.ics");
    const Pair pair = SplitPair(bytes);
    header.Set(pair.header);
    const std::string dataName = GetScratchFolder() + "/pair" + std::string(pair.suffix);
    MemoryFile(dataName).Set(pair.data);
    try {
        switch (kep::ReadImageInfo(header.GetName()).voxelType) {
        case kep::VoxelType::Complex:
        case kep::VoxelType::DoubleComplex:
            kep::Image3d<std::complex<double>>(header.GetName(), nullptr, false, -1, nullptr, nullptr);
            break;
        case kep::VoxelType::RGB8:
        case kep::VoxelType::RGB16:
            kep::Image3d<kep::RGB_generic<unsigned short>>(header.GetName(), nullptr, false, -1, nullptr, nullptr);
            break;
        default:
            kep::Image3d<double>(header.GetName(), nullptr, false, -1, nullptr, nullptr);
            break;
        }
    } catch (const kep::IOException& refusal) {
        Require(!refusal.GetText().empty(), "a refusal says why");
    }
    std::filesystem::remove(dataName); // the next input may have another one
}

void ReadIcsPacked(std::string_view bytes) {
    Numbers numbers(bytes);
    const unsigned char way = numbers.Take<unsigned char>();
    ics_test::HeaderText header;
    header.SetAxes(Choose<const char*>(way / 2, {"bits\tx\ty\tz", "bits\tx\ty\tch", "bits\tz\ty\tx", "bits\tx\ty\tt"}),
                   "8\t8\t4\t3");
    header.Set("representation\tcompression", way % 2 == 0 ? "gzip" : "compress");
    ReadFrames(header.Text() + std::string(numbers.GetRest()));
}

} // namespace fuzz
