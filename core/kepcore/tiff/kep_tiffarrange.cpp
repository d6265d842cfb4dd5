#include "core/kepcore/tiff/kep_tiffarrange.h"

#include "core/kepcore/frame/kep_extent.h"
#include "core/kepcore/tiff/kep_tifflimits.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

namespace kep::detail {

namespace {

/// Directories of smaller copies, of a camera, of a place on earth, of devices.
bool IsDirectoryTag(std::uint16_t tag) {
    return tag == 330 || tag == 34665 || tag == 34853 || tag == 40965;
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

/// A description that promises as many pages as there are not.
std::string NamePromise(std::uint64_t promised, std::size_t count) {
    return "its description promises " + std::to_string(promised) + " pages, and it holds " + std::to_string(count);
}

/// How many slices each stack of a file has, and where they are if they have no pages of their own. Sets slices,
/// isOneBlock and blockAt.
/// @param stacks     channels by times that have pages of their own
void FindSlices(const TiffValues& values, const TiffPages& pages, const TiffDescription& description,
                std::uint64_t stacks, TiffArrangement& arrangement) {
    const std::string& name = values.GetFile().GetName();
    const std::size_t count = pages.pages.size();
    const std::uint64_t promised = Multiply({description.slices, stacks}).value_or(UINT64_MAX);
    if (promised <= count) {
        // Where there are times, one more or less slice would put every later page in the wrong place.
        if (description.times > 1 && promised != 0 && promised != count)
            ThrowDamaged(name, NamePromise(promised, count));
        if (count % stacks != 0)
            ThrowDamaged(name, "its " + std::to_string(count) + " pages are not whole slices of " +
                                   std::to_string(stacks / description.times) + " channels" +
                                   (description.times > 1 ? " at " + std::to_string(description.times) + " time points"
                                                          : std::string()));
        arrangement.slices = static_cast<std::size_t>(count / stacks);
        return;
    }
    const std::string promise = NamePromise(promised, count);
    if (description.planesElsewhere)
        ThrowDamaged(name, promise + "; its voxels are said to lie in other files");
    const auto bytes = Multiply({pages.layouts.front().GetPageBytes(), promised});
    const std::uint64_t length = values.GetFile().GetLength();
    if (!bytes || *bytes > length || !FindOneBlock(values, pages, arrangement.blockAt) ||
        arrangement.blockAt > length - *bytes)
        ThrowDamaged(name, promise);
    // Nothing tells where the slices without pages are, so what a tag has there speaks against them.
    const TiffStretch block{arrangement.blockAt, arrangement.blockAt + *bytes};
    if (HoldsOthers(values, block))
        ThrowDamaged(name, promise + "; where the others should be, it has something else");
    arrangement.isOneBlock = true;
    arrangement.slices = description.slices;
}

/// The channels of a description that are pages of their own: those that are the samples of a pixel are not.
std::size_t CountPageChannels(const TiffVoxels& voxels, const TiffDescription& description) {
    const bool areSamples =
        voxels.components > 1 && description.channels == static_cast<std::size_t>(voxels.components);
    return areSamples ? 1 : description.channels;
}

/// The place of a slice in a file, by the order of its axes.
/// @param order  of Z, C and T, the fastest first
std::uint64_t FindPage(const std::string& order, const AxisCounts& at, const AxisCounts& sizes) {
    std::uint64_t page = 0;
    for (auto letter = order.rbegin(); letter != order.rend(); ++letter) {
        if (*letter == 'Z')
            page = page * sizes.slices + at.slices;
        else if (*letter == 'C')
            page = page * sizes.channels + at.channels;
        else
            page = page * sizes.times + at.times;
    }
    return page;
}

/// Puts all pages of several stacks into the order of TiffFrames, slices first, then channels; by the file's order of
/// axes.
std::vector<std::size_t> OrderPages(const std::string& order, const AxisCounts& sizes) {
    std::vector<std::size_t> pages;
    pages.reserve(sizes.slices * sizes.channels * sizes.times);
    for (std::size_t t = 0; t < sizes.times; ++t)
        for (std::size_t c = 0; c < sizes.channels; ++c)
            for (std::size_t z = 0; z < sizes.slices; ++z)
                pages.push_back(static_cast<std::size_t>(FindPage(order, {z, c, t}, sizes)));
    return pages;
}

/// The numbers that occur along one axis, in order.
class AxisNumbers {
public:
    template <typename Get>
    AxisNumbers(const std::vector<TiffPlane>& planes, const Get& get) {
        for (const TiffPlane& plane : planes)
            numbers.push_back(get(plane));
        std::sort(numbers.begin(), numbers.end());
        numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    }
    std::size_t GetCount() const { return numbers.size(); }
    /// Which of them, counted from 0, a number is.
    std::size_t Find(std::size_t number) const {
        return static_cast<std::size_t>(std::lower_bound(numbers.begin(), numbers.end(), number) - numbers.begin());
    }

private:
    std::vector<std::size_t> numbers;
};

/// The page of each slice as OME-XML tells it.
void TakePlanes(const TiffPages& pages, const TiffDescription& description, const std::string& name,
                TiffFrames& frames) {
    const AxisNumbers slices(description.planes, [](const TiffPlane& plane) { return plane.slice; });
    const AxisNumbers channels(description.planes, [](const TiffPlane& plane) { return plane.channel; });
    const AxisNumbers times(description.planes, [](const TiffPlane& plane) { return plane.time; });
    const auto all = Multiply({slices.GetCount(), channels.GetCount(), times.GetCount()});
    if (!all || *all > mostTiffPages)
        ThrowDamaged(name, "its planes are too few for the slices, channels and time points that they belong to");
    std::vector<std::size_t> table(static_cast<std::size_t>(*all), noTiffPage);
    std::vector<bool> isTaken(pages.pages.size());
    for (const TiffPlane& plane : description.planes) {
        const auto page = std::lower_bound(pages.pages.begin(), pages.pages.end(), plane.directory,
                                           [](const TiffPage& a, std::size_t number) { return a.number < number; });
        if (page == pages.pages.end() || page->number != plane.directory)
            ThrowDamaged(name, "its description puts a plane into page " + std::to_string(plane.directory + 1) +
                                   ", and it holds " + std::to_string(pages.pages.size()));
        const auto index = static_cast<std::size_t>(page - pages.pages.begin());
        std::size_t& place =
            table[(times.Find(plane.time) * channels.GetCount() + channels.Find(plane.channel)) * slices.GetCount() +
                  slices.Find(plane.slice)];
        if (isTaken[index] || place != noTiffPage)
            ThrowDamaged(name, "its description puts two planes into one page, or one into two");
        isTaken[index] = true;
        place = index;
    }
    frames.each.slices = slices.GetCount();
    frames.each.pages = std::move(table);
}

} // namespace

TiffArrangement ArrangeTiffPages(const TiffValues& values, const TiffPages& pages, const TiffVoxels& voxels,
                                 const TiffDescription& description) {
    const std::string& name = values.GetFile().GetName();
    const TiffLayout& layout = pages.layouts.front();
    if (description.images > 1)
        ThrowNotOneFrame(name, description.images, "images");
    const std::size_t pageChannels = CountPageChannels(voxels, description);
    const bool isGray = voxels.components == 1 || voxels.areChannels;
    const bool isTooMany = (layout.samples > 4 && layout.channels > 1) ||
                           (isGray && voxels.components != 1 && voxels.components != 3) ||
                           (pageChannels != 1 && (pageChannels != 3 || voxels.components != 1));
    if (description.times > 1 || isTooMany) {
        const std::size_t inPixel = isGray ? std::max(layout.channels, static_cast<unsigned>(voxels.components)) : 1;
        ThrowManyFrames(name, Multiply({pageChannels, inPixel}).value_or(pageChannels), description.times);
    }
    if ((pageChannels == 3 || voxels.areChannels) && voxels.sample.IsComplex())
        ThrowNotSupported(name, "colour of complex numbers");

    TiffArrangement arrangement;
    FindSlices(values, pages, description, pageChannels, arrangement);
    arrangement.pagesOfSlice = pageChannels;
    arrangement.samples = static_cast<unsigned>(voxels.components);
    if (pageChannels > 1 && !description.channelsTogether) {
        arrangement.pages.resize(arrangement.slices * pageChannels);
        for (std::size_t i = 0; i < arrangement.pages.size(); ++i)
            arrangement.pages[i] = i % pageChannels * arrangement.slices + i / pageChannels;
    }
    return arrangement;
}

TiffFrames ArrangeTiffFrames(const TiffValues& values, const TiffPages& pages, const TiffVoxels& voxels,
                             const TiffDescription& description) {
    const std::string& name = values.GetFile().GetName();
    if (description.images > 1)
        ThrowNotOneFrame(name, description.images, "images");
    TiffFrames frames;
    frames.channelsInPixel = voxels.areChannels ? static_cast<unsigned>(voxels.components) : 1;
    frames.each.samples = voxels.areChannels ? 1 : static_cast<unsigned>(voxels.components);
    const std::size_t pageChannels = CountPageChannels(voxels, description);
    frames.times = description.times;
    const auto stacks = Multiply({pageChannels, frames.times});
    const auto channels = Multiply({pageChannels, frames.channelsInPixel});
    if (!stacks || !channels)
        ThrowDamaged(name, "its description promises too many channels");
    frames.channels = static_cast<std::size_t>(*channels);
    if (*stacks > 1 && !description.planes.empty()) {
        TakePlanes(pages, description, name, frames);
        return frames;
    }
    FindSlices(values, pages, description, *stacks, frames.each);
    const std::uint64_t needed = *stacks * frames.each.slices; // pages, or parts of a block that the file can hold
    if (frames.each.isOneBlock && (needed > mostTiffPages || frames.channelsInPixel > 1))
        ThrowDamaged(name, NamePromise(needed, pages.pages.size()));
    frames.each.pages = OrderPages(description.order, {frames.each.slices, pageChannels, frames.times});
    return frames;
}

TiffArrangement TiffFrames::Take(std::size_t channel, std::size_t time, const std::string& fileName) const {
    TiffArrangement frame = each;
    frame.firstSample = static_cast<unsigned>(channel % channelsInPixel);
    const std::size_t stack = time * (channels / channelsInPixel) + channel / channelsInPixel;
    const auto from = each.pages.begin() + static_cast<std::ptrdiff_t>(stack * each.slices);
    frame.pages.assign(from, from + static_cast<std::ptrdiff_t>(each.slices));
    const auto missing = static_cast<std::size_t>(std::count(frame.pages.begin(), frame.pages.end(), noTiffPage));
    if (missing > 0)
        ThrowCannotRead("", "", fileName,
                        " holds " + std::to_string(each.slices - missing) + " of " + std::to_string(each.slices) +
                            " slices of channel " + std::to_string(channel + 1) + " at time point " +
                            std::to_string(time + 1) + "; the others lie in other files.");
    return frame;
}

} // namespace kep::detail
