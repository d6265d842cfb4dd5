#include "core/kepcore/tiff/kep_tiffpages.h"

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
        const std::uint64_t bytes = layout.GetPageBytes() / GetExpansion(layout);
        if (__builtin_add_overflow(needed, bytes, &needed) || needed > values.GetFile().GetLength())
            ThrowDamaged(values.GetFile().GetName(), "its pages promise more voxels than the file can hold");
    }
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
