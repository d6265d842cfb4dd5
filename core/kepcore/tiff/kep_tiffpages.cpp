#include "core/kepcore/tiff/kep_tiffpages.h"

#include "core/kepcore/frame/kep_extent.h"
#include "core/kepcore/tiff/kep_tiffmeta.h"

#include <algorithm>
#include <string>
#include <utility>

namespace kep::detail {

namespace {

[[noreturn]] void ThrowPagesDiffer(const std::string& fileName) {
    ThrowCannotRead("The pages", " of ", fileName, " differ in size or type.");
}

/// Palettes that differ make one index stand for two colours.
bool HasSamePalette(const TiffValues& values, const TiffEntry& a, const TiffEntry& b) {
    if (a.count != b.count)
        return false;
    const bool isSamePlace = !a.isInline && a.at == b.at;
    return !a.IsThere() || isSamePlace || values.ReadNumbers(a, a.count) == values.ReadNumbers(b, b.count);
}

/// Directories of smaller copies, of a camera, of a place on earth, of devices.
bool IsDirectoryTag(std::uint16_t tag) {
    return tag == 330 || tag == 34665 || tag == 34853 || tag == 40965;
}

void AddPage(const TiffValues& values, const TiffDirectory& directory, std::size_t number, TiffPages& found) {
    const std::string& name = values.GetFile().GetName();
    const TiffLayout layout = ReadTiffLayout(values, directory);
    if (found.pages.empty()) {
        GetTiffVoxels(layout, name); // refuses what is not read, before more is said of the pages
        found.first = directory;
        found.layouts.push_back(layout);
    } else if (!layout.HasSamePicture(found.layouts.front())) {
        ThrowPagesDiffer(name);
    } else if (layout != found.layouts.back()) {
        GetTiffVoxels(layout, name);
        found.layouts.push_back(layout);
    }
    if (layout.photometric == meansPalette &&
        !HasSamePalette(values, found.first.Find(tagColourMap), directory.Find(tagColourMap)))
        ThrowPagesDiffer(name);
    TiffPage page;
    page.at = directory.at;
    page.number = number;
    page.layout = found.layouts.size() - 1;
    page.blocks = directory.Find(layout.isTiled ? tagTileOffsets : tagStripOffsets);
    page.blockBytes = directory.Find(layout.isTiled ? tagTileCounts : tagStripCounts);
    if (!page.blocks.IsThere())
        ThrowDamaged(name, "page " + std::to_string(number + 1) + ": it does not say where its voxels are");
    found.pages.push_back(page);
}

TiffPages CollectPages(const TiffValues& values, bool isReduced) {
    TiffPages found;
    TiffWalk walk(values);
    TiffDirectory directory;
    while (walk.Next(directory)) {
        if (IsReducedPage(values, directory) == isReduced)
            AddPage(values, directory, walk.GetCount() - 1, found);
    }
    return found;
}

/// The file is long enough for what its pages promise, with the most that their packing can give.
void CheckPromise(const TiffValues& values, const TiffPages& found) {
    std::uint64_t needed = 0;
    for (const TiffPage& page : found.pages) {
        const TiffLayout& layout = found.layouts[page.layout];
        const std::uint64_t bytes = layout.GetPageBytes() / GetExpansion(layout.compression);
        if (__builtin_add_overflow(needed, bytes, &needed) || needed > values.GetFile().GetLength())
            ThrowDamaged(values.GetFile().GetName(), "its pages promise more voxels than the file can hold");
    }
}

/// Position of the first page's voxels, if those of all pages follow each other without a gap.
bool FindOneBlock(const TiffValues& values, const TiffPages& found, std::uint64_t& at) {
    std::uint64_t expected = 0;
    for (std::size_t i = 0; i < found.pages.size(); ++i) {
        if (!found.layouts[found.pages[i].layout].IsPlain())
            return false;
        for (const TiffBlock& strip : FindBlocks(values, found, i)) {
            if (expected == 0)
                at = expected = strip.at;
            if (strip.at != expected)
                return false;
            expected += strip.bytes;
        }
    }
    return true;
}

/// Whether the file has something else than voxels in a stretch of it: its header, a directory or one that a directory
/// names, or values of any tag.
bool HoldsOthers(const TiffValues& values, const TiffStretch& stretch) {
    if (stretch.from < values.GetHeaderBytes())
        return true;
    TiffWalk walk(values);
    TiffDirectory directory;
    while (walk.Next(directory)) {
        if (stretch.Overlaps({directory.at, directory.at + directory.bytes}))
            return true;
        for (const TiffEntry& entry : directory.entries) {
            if (stretch.Overlaps(entry.GetStretch()))
                return true;
            if (!IsDirectoryTag(entry.tag))
                continue;
            for (const std::uint64_t at : values.ReadNumbers(entry, entry.count)) {
                if (stretch.Overlaps({at, at + 1}))
                    return true;
            }
        }
    }
    return false;
}

} // namespace

TiffPages FindTiffPages(const TiffValues& values) {
    TiffPages found = CollectPages(values, false);
    if (found.pages.empty())
        found = CollectPages(values, true);
    CheckPromise(values, found);
    for (const TiffLayout& layout : found.layouts)
        CheckTiffPacking(layout, values.GetFile().GetName());
    return found;
}

TiffArrangement ArrangeTiffPages(const TiffValues& values, const TiffPages& pages, const TiffVoxels& voxels,
                                 const TiffDescription& description) {
    const std::string& name = values.GetFile().GetName();
    const std::size_t count = pages.pages.size();
    if (description.times > 1)
        ThrowNotOneFrame(name, description.times, "time points");
    if (description.images > 1)
        ThrowNotOneFrame(name, description.images, "images");

    TiffArrangement arrangement;
    arrangement.channelsTogether = description.channelsTogether;
    const bool areSamples = voxels.components == 3 && description.channels == 3;
    arrangement.channels = areSamples ? 1 : description.channels;
    if (arrangement.channels != 1 && (arrangement.channels != 3 || voxels.components != 1 || voxels.sample.IsComplex()))
        ThrowChannels(name, arrangement.channels);

    const std::uint64_t promised = Multiply({description.slices, arrangement.channels}).value_or(UINT64_MAX);
    if (promised <= count) {
        if (count % arrangement.channels != 0)
            ThrowDamaged(name, "its " + std::to_string(count) + " pages are not whole slices of " +
                                   std::to_string(arrangement.channels) + " channels");
        arrangement.slices = count / arrangement.channels;
        return arrangement;
    }
    const std::string promise = "its description promises " + std::to_string(promised) + " pages, and it holds ";
    const auto bytes = Multiply({pages.layouts.front().GetPageBytes(), promised});
    const std::uint64_t length = values.GetFile().GetLength();
    if (!bytes || *bytes > length || !FindOneBlock(values, pages, arrangement.blockAt) ||
        arrangement.blockAt > length - *bytes)
        ThrowDamaged(name, promise + std::to_string(count));
    // Nothing tells where the slices without pages are, so what a tag has there speaks against them.
    const TiffStretch block{arrangement.blockAt, arrangement.blockAt + *bytes};
    if (HoldsOthers(values, block))
        ThrowDamaged(name, promise + std::to_string(count) + "; where the others should be, it has something else");
    arrangement.isOneBlock = true;
    arrangement.slices = description.slices;
    return arrangement;
}

std::vector<TiffBlock> FindBlocks(const TiffValues& values, const TiffPages& pages, std::size_t index) {
    const TiffPage& page = pages.pages[index];
    const TiffLayout& layout = pages.layouts[page.layout];
    const auto fail = [&](std::size_t block, const char* what) {
        ThrowDamaged(values.GetFile().GetName(), NameTiffBlock(page, layout, block) + ": " + what);
    };
    const std::uint64_t length = values.GetFile().GetLength();
    const std::uint64_t count = layout.GetPictureBlockCount();
    const bool isPacked = layout.compression != packedPlain;
    const std::vector<std::uint64_t> places = values.ReadNumbers(page.blocks, count);
    if (places.size() < count)
        fail(places.size(), "its position is not given");
    // A plain page in one strip says its size twice; writers that get it wrong here are not rare, and nothing is lost.
    std::vector<std::uint64_t> sizes;
    if (page.blockBytes.IsThere() && !(layout.IsPlain() && count == 1)) {
        sizes = values.ReadNumbers(page.blockBytes, count);
        if (sizes.size() < count)
            fail(sizes.size(), "its size is not given");
    }
    std::vector<TiffBlock> blocks(static_cast<std::size_t>(count));
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        const std::uint64_t unpacked = layout.GetBlockBytes(i);
        if (places[i] == 0 || places[i] >= length)
            fail(i, "its voxels lie outside the file");
        const std::uint64_t unsaid = isPacked ? length - places[i] : unpacked; // packed data say where they end
        const std::uint64_t said = sizes.empty() ? unsaid : sizes[i];
        blocks[i] = {places[i], isPacked ? said : unpacked};
        if (said < (isPacked ? 1 : unpacked))
            fail(i, "its voxels end before they should");
        if (blocks[i].bytes > length - places[i])
            fail(i, "its voxels lie outside the file");
    }
    return blocks;
}

std::string NameTiffBlock(const TiffPage& page, const TiffLayout& layout, std::size_t block) {
    const std::size_t across = layout.GetBlocksAcross();
    const std::size_t down = layout.GetBlocksDown();
    std::string name = "page " + std::to_string(page.number + 1) + ", row " +
                       std::to_string(block / across % down * layout.blockHeight);
    if (layout.isTiled)
        name += ", column " + std::to_string(block % across * layout.blockWidth);
    if (layout.planesApart)
        name += ", component " + std::to_string(block / across / down + 1);
    return name;
}

} // namespace kep::detail
