#include "host/openingplan.h"

#include "host/message.h"

#include <algorithm>
#include <numeric>

namespace zelviewer {

namespace {

constexpr std::size_t mostColours = 3;

/// The type of an image whose colours are channels of this type; none if they can't be.
std::optional<DisplayType> ColourOf(kep::VoxelType channel) {
    switch (channel) {
    case kep::VoxelType::Binary:
    case kep::VoxelType::Gray8:
        return DisplayType::RGB8;
    case kep::VoxelType::Gray16:
        return DisplayType::RGB16;
    default:
        return std::nullopt;
    }
}

std::string CountOfChannels(std::size_t channels) {
    return std::to_string(channels) + (channels == 1 ? " channel" : " channels");
}

/// "a", "a and b", "a, b and c".
std::string Enumerate(const std::vector<std::string>& words) {
    std::string text;
    for (std::size_t i = 0; i < words.size(); ++i)
        text += (i == 0 ? "" : i + 1 == words.size() ? " and " : ", ") + words[i];
    return text;
}

void CheckChannels(const std::vector<std::size_t>& wanted, std::size_t channels) {
    for (const std::size_t channel : wanted)
        if (channel >= channels)
            throw Failure("There is no channel " + std::to_string(channel + 1) + ", it has " +
                          CountOfChannels(channels) + ".");
}

} // namespace

FileContents ReadContents(const std::string& name) {
    FileContents file;
    kep::FileAxes axes;
    try {
        axes = kep::ReadFileAxes(name.c_str());
    } catch (const kep::IOException&) { // it may be one frame nevertheless
        file.info = kep::ReadImageInfo(name.c_str());
        return file;
    }
    const bool isOneFrame = axes.channels == 1 && axes.times == 1;
    file.info = isOneFrame ? kep::ReadImageInfo(name.c_str()) : axes.frame;
    if (axes.channels == mostColours && axes.times == 1) {
        const kep::ImageInfo whole = kep::ReadImageInfo(name.c_str());
        if (whole.voxelType == kep::VoxelType::RGB8 || whole.voxelType == kep::VoxelType::RGB16)
            file.info = whole;
    }
    if (!isOneFrame)
        file.axes = std::move(axes);
    return file;
}

ShownFile PlanFile(const FileContents& file, const OpeningWish& wish) {
    const kep::VoxelType channelType = file.axes ? file.axes->frame.voxelType : file.info.voxelType;
    const std::size_t channels = file.axes ? file.axes->channels : 1;
    const std::optional<DisplayType> colour = wish.type && IsColour(*wish.type) ? wish.type : ColourOf(channelType);
    const bool mayBeColour = colour && !wish.binary && (!wish.type || IsColour(*wish.type));
    CheckChannels(wish.channels, channels);

    ShownFile shown;
    shown.times = file.axes ? file.axes->times : 1;
    shown.type = DisplayTypeFor(channelType);
    shown.isOneImage = !file.axes && wish.channels.size() < 2;
    if (wish.channels.size() > 1) {
        if (!mayBeColour)
            throw Failure("Its channels have the type " + NameOf(shown.type) +
                          ", which makes no colours; name one of them by --channel.");
        shown.channels = wish.channels;
    } else if (file.axes && wish.channels.size() == 1) {
        shown.channels = wish.channels;
    } else if (file.axes && channels == 1) {
        shown.channels = {0};
    } else if (file.axes && mayBeColour && channels <= mostColours) {
        shown.channels.resize(channels);
        std::iota(shown.channels.begin(), shown.channels.end(), 0);
        shown.isOneImage = file.info.voxelType != channelType;
    } else if (file.axes) {
        shown.channels = {0};
        shown.choices = mayBeColour ? mostColours : 1;
    }
    if (shown.channels.size() > 1)
        shown.type = *colour;
    if (wish.binary)
        shown.type = DisplayType::Gray8;
    if (wish.type)
        shown.type = *wish.type;
    return shown;
}

std::string DifferenceOf(const std::string& firstName, const ShownFile& first, const ShownFile& second) {
    const std::size_t before = first.channels.size(), after = second.channels.size();
    if (before == after || before == 0 || after == 0) // files that are one frame have no channels
        return {};
    return "It has " + std::to_string(after) + " channels to show, and " + firstName + " has " +
           std::to_string(before) + ".";
}

std::string DescribeChannels(const std::vector<std::size_t>& channels) {
    if (channels.size() == 1)
        return "channel " + std::to_string(channels.front() + 1);
    std::vector<std::string> numbers, colours{"red", "green", "blue"};
    for (const std::size_t channel : channels)
        numbers.push_back(std::to_string(channel + 1));
    colours.resize(std::min(channels.size(), mostColours));
    return "channels " + Enumerate(numbers) + " as " + Enumerate(colours);
}

std::vector<std::string> NamesOfChannels(const kep::FileAxes& axes) {
    std::vector<std::string> names;
    for (std::size_t c = 0; c < axes.channels; ++c) {
        const std::string told = c < axes.channelInfos.size() ? axes.channelInfos[c].name : std::string();
        names.push_back("Channel " + std::to_string(c + 1) + (told.empty() ? "" : ": " + told));
    }
    return names;
}

std::string HowToChoose(std::size_t channels, std::size_t choices) {
    return "It has " + CountOfChannels(channels) + ": name the one to show by --channel" +
           (choices > 1 ? ", or two or three by --channels." : ".");
}

} // namespace zelviewer
