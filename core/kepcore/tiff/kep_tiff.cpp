#include "core/kepcore/convert/kep_description.h"
#include "core/kepcore/convert/kep_text.h"
#include "core/kepcore/file/kep_file.h"
#include "core/kepcore/file/kep_path.h"
#include "core/kepcore/frame/kep_extent.h"
#include "core/kepcore/tiff/kep_tiffarrange.h"
#include "core/kepcore/tiff/kep_tiffframe.h"
#include "core/kepcore/tiff/kep_tifflayout.h"
#include "core/kepcore/tiff/kep_tifflimits.h"
#include "core/kepcore/tiff/kep_tiffmeta.h"
#include "core/kepcore/tiff/kep_tiffpages.h"
#include "core/kepcore/tiff/kep_tiffwalk.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>
#include <vector>

namespace kep::detail {

namespace {

TiffScaleTags ReadScaleTags(const TiffValues& values, const TiffDirectory& directory) {
    TiffScaleTags tags;
    tags.xResolution = values.ReadFraction(directory.Find(tagXResolution));
    tags.yResolution = values.ReadFraction(directory.Find(tagYResolution));
    tags.xPosition = values.ReadFraction(directory.Find(tagXPosition));
    tags.yPosition = values.ReadFraction(directory.Find(tagYPosition));
    const std::uint64_t unit = values.ReadNumber(directory.Find(tagResolutionUnit), 0);
    tags.unit = unit <= 3 ? static_cast<int>(unit) : 0;
    return tags;
}

/// The tags that are words, and those that tell how the picture is meant where that is not the common way.
void DescribeTags(const TiffValues& values, const TiffDirectory& directory, const TiffLayout& layout,
                  std::map<std::string, std::string>& description) {
    for (const auto& [key, tag] : tiffTextTags) {
        const std::string text = ToUtf8(values.ReadText(directory.Find(tag), longestTiffText));
        if (!text.empty())
            description.insert_or_assign(key, text);
    }
    if (layout.photometric == meansMinIsWhite)
        description.insert_or_assign("photometric", "min-is-white");
    if (layout.photometric == meansMask)
        description.insert_or_assign("photometric", "mask");
    const std::uint64_t orientation = values.ReadNumber(directory.Find(tagOrientation), 1);
    if (orientation != 1)
        description.insert_or_assign("orientation", std::to_string(orientation));
}

std::vector<RGB_generic<unsigned short>> ReadPalette(const TiffValues& values, const TiffDirectory& directory,
                                                     const TiffLayout& layout) {
    if (layout.photometric != meansPalette || layout.bits > 16)
        return {};
    const std::size_t colours = std::size_t{1} << layout.bits;
    const TiffEntry entry = directory.Find(tagColourMap);
    if (entry.count < 3 * colours)
        return {};
    const std::vector<std::uint64_t> numbers = values.ReadNumbers(entry, 3 * colours);
    std::vector<RGB_generic<unsigned short>> palette(colours);
    const auto at = [&](std::size_t i) { return static_cast<unsigned short>(numbers[i]); };
    for (std::size_t i = 0; i < colours; ++i)
        palette[i] = {at(i), at(colours + i), at(2 * colours + i)};
    return palette;
}

/// Everything before the voxels, but for what the arrangement decides.
struct TiffStart {
    TiffVoxels voxels;
    TiffDescription description;
};

TiffStart ReadStart(const TiffContents& contents) {
    const std::string& name = contents.file->GetName();
    const std::string text =
        contents.values.ReadText(contents.found.first.Find(tagDescription), longestTiffDescription);
    return {GetTiffVoxels(contents.found.layouts.front(), name), ParseTiffDescription(text, GetBaseName(name))};
}

FrameHeader MakeHeader(const TiffContents& contents, const TiffStart& start, const TiffArrangement& arrangement) {
    const TiffPages& found = contents.found;
    const TiffLayout& layout = found.layouts.front();
    const std::string& name = contents.file->GetName();
    FrameHeader header;
    header.format = FF_TIFF;
    header.size = {layout.width, layout.height, arrangement.slices};
    header.sample = start.voxels.sample;
    header.components = arrangement.pagesOfSlice == 3 ? 3 : static_cast<int>(arrangement.samples);
    header.componentsAreChannels =
        header.components == 3 && (arrangement.pagesOfSlice == 3 || start.voxels.areChannels);
    header.storedBits = static_cast<int>(layout.bits);
    header.halfFloat = layout.format == 3 && layout.bits == 16;
    header.compression = GetCompressionName(layout.compression);
    header.fileSize = contents.file->GetLength();
    const std::uint64_t voxelBytes = header.sample.GetSampleBytes() * static_cast<unsigned>(header.components);
    const auto bytes = Multiply({layout.width, layout.height, voxelBytes, arrangement.slices});
    if (!bytes || *bytes > mostVoxelBytes)
        ThrowDamaged(name, "it promises more than 2^40 bytes of voxels");

    const TiffPlace place =
        FindTiffPlace(ReadScaleTags(contents.values, found.first), start.description, arrangement.slices);
    header.resolution = place.resolution;
    header.offset = place.offset;
    header.description = start.description.entries;
    for (auto& [key, value] : header.description)
        value.resize(FindUtf8Cut(value, longestTiffText));
    DescribeTags(contents.values, found.first, layout, header.description);
    if (header.components == 1)
        header.palette = ReadPalette(contents.values, found.first, layout);
    return header;
}

class TiffFrameSet final : public FrameSet {
public:
    explicit TiffFrameSet(std::unique_ptr<InputFile> file) {
        auto opened = std::make_shared<TiffContents>(std::move(file));
        for (TiffLayout& layout : opened->found.layouts)
            layout = layout.WithAllChannels();
        contents = std::move(opened);
        TiffStart start = ReadStart(*contents);
        frames = ArrangeTiffFrames(contents->values, contents->found, start.voxels, start.description);
        header = MakeHeader(*contents, start, frames.each);
        axes = {frames.channels, frames.times, std::move(start.description.channelInfos),
                start.description.frameInterval, start.description.series};
    }

    const FrameHeader& GetHeader() const override { return header; }
    const FrameAxes& GetAxes() const override { return axes; }

    std::unique_ptr<FrameSource> Open(std::size_t channel, std::size_t time) override {
        return MakeTiffFrame(contents, FrameHeader(header), frames.Take(channel, time, contents->file->GetName()));
    }

private:
    std::shared_ptr<const TiffContents> contents;
    TiffFrames frames;
    FrameHeader header;
    FrameAxes axes;
};

} // namespace

bool LooksLikeTiff(const unsigned char* head, std::size_t bytes) {
    constexpr std::array<std::array<unsigned char, 4>, 4> marks{
        {{'I', 'I', 42, 0}, {'M', 'M', 0, 42}, {'I', 'I', 43, 0}, {'M', 'M', 0, 43}}};
    return bytes >= 4 && std::any_of(marks.begin(), marks.end(),
                                     [head](const auto& mark) { return std::memcmp(mark.data(), head, 4) == 0; });
}

std::unique_ptr<FrameSource> OpenTiffFrame(std::unique_ptr<InputFile> file) {
    auto contents = std::make_shared<const TiffContents>(std::move(file));
    const TiffStart start = ReadStart(*contents);
    TiffArrangement arrangement = ArrangeTiffPages(contents->values, contents->found, start.voxels, start.description);
    FrameHeader header = MakeHeader(*contents, start, arrangement);
    return MakeTiffFrame(std::move(contents), std::move(header), std::move(arrangement));
}

std::unique_ptr<FrameSet> OpenTiffFrames(std::unique_ptr<InputFile> file) {
    return std::make_unique<TiffFrameSet>(std::move(file));
}

} // namespace kep::detail
