#include "host/info.h"

#include "host/displaytype.h"
#include "host/openingplan.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <sstream>

namespace zelviewer {

namespace {

using Json = nlohmann::ordered_json;

const char* NameOf(kep::VoxelType type) {
    switch (type) {
    case kep::VoxelType::Binary:
        return "binary";
    case kep::VoxelType::Gray8:
        return "gray8";
    case kep::VoxelType::Gray16:
        return "gray16";
    case kep::VoxelType::Int:
        return "int";
    case kep::VoxelType::UInt64:
        return "uint64";
    case kep::VoxelType::Float:
        return "float";
    case kep::VoxelType::Double:
        return "double";
    case kep::VoxelType::RGB8:
        return "rgb";
    case kep::VoxelType::RGB16:
        return "rgb16";
    case kep::VoxelType::Complex:
        return "complex";
    case kep::VoxelType::DoubleComplex:
        return "double complex";
    case kep::VoxelType::Other:
        break;
    }
    return "other";
}

const char* NameOf(kep::FileFormat format) {
    return format == kep::FF_ICS ? "ICS" : "TIFF";
}

/// The shortest text that gives the same float back.
std::string Shortest(float value) {
    char text[32];
    const auto [end, error] = std::to_chars(text, text + sizeof text, value);
    return {text, end};
}

bool IsKnown(float component) {
    return std::isfinite(component) && component > 0.0F;
}

std::string Resolved(float component) {
    return IsKnown(component) ? Shortest(component) : "?";
}

std::string SizeOfVoxel(float component) {
    if (!IsKnown(component))
        return "?";
    std::ostringstream text; // not the last digits, which come from the division alone
    text.imbue(std::locale::classic());
    text.precision(5);
    text << 1.0 / static_cast<double>(component);
    return text.str();
}

std::string Bytes(std::uint64_t bytes) {
    const char* const units[] = {"bytes", "kB", "MB", "GB", "TB"};
    auto size = static_cast<double>(bytes);
    std::size_t unit = 0;
    for (; size >= 999.5 && unit < 4; ++unit)
        size /= 1000.0;
    char text[32];
    std::snprintf(text, sizeof text, unit == 0 || size >= 99.95 ? "%.0f %s" : "%.1f %s", size, units[unit]);
    return text;
}

/// A description as it can go to a terminal, its lines under one another.
std::string Printable(const std::string& whole, const std::string& indent) {
    constexpr std::size_t mostBytes = 1500;
    const std::string value = whole.substr(0, whole.find_last_not_of("\n\r\t ") + 1);
    std::size_t end = std::min(mostBytes, value.size());
    while (end < value.size() && end > 0 && (static_cast<unsigned char>(value[end]) & 0xC0U) == 0x80U)
        --end; // not within a character
    std::string text;
    for (std::size_t i = 0; i < end; ++i) {
        const auto c = static_cast<unsigned char>(value[i]);
        const auto next = static_cast<unsigned char>(i + 1 < end ? value[i + 1] : 0);
        if (c == '\n')
            text += "\n" + indent;
        else if (c == '\r' && next == '\n')
            continue;
        else if ((c < 0x20 && c != '\t') || c == 0x7F)
            text += '?';
        else if (c == 0xC2 && next >= 0x80 && next < 0xA0) { // control characters too, of two bytes
            text += '?';
            ++i;
        } else
            text += value[i];
    }
    if (end < value.size())
        text += "\n" + indent + "(cut; " + std::to_string(value.size()) + " bytes in all, see --json)";
    return text;
}

/// What opening the file shows, unless the user chooses otherwise.
ShownFile ShownOf(const FileInfo& file) {
    return PlanFile({file.info, file.axes}, {});
}

/// The type in which a file is shown, and which of its channels, where it has several.
std::string Told(const ShownFile& shown) {
    const std::string& type = NameOf(shown.type);
    if (shown.choices > 0)
        return "each channel shown as " + type + ", chosen by --channel";
    if (shown.channels.size() > 1)
        return "shown as " + type + ", " + DescribeChannels(shown.channels);
    return "shown as " + type;
}

/// What the files are together.
struct Sequence {
    std::size_t frames = 0; ///< time points of the files that can be read
    bool alike = true;      ///< in size, voxel size, offset and channels, and all can be read
    DisplayType type = DisplayType::Gray8;
    std::string difference; ///< of the first file that is not like the first one
};

Sequence Compare(const std::vector<FileInfo>& files) {
    Sequence sequence;
    const FileInfo* first = nullptr;
    for (const FileInfo& file : files) {
        if (!file.error.empty()) {
            sequence.alike = false;
            continue;
        }
        const ShownFile shown = ShownOf(file);
        const DisplayType type = shown.type;
        sequence.type = first == nullptr ? type : WiderType(sequence.type, type);
        first = first == nullptr ? &file : first;
        sequence.frames += shown.times;
        std::string difference = DifferenceOf(first->name, first->info, file.info);
        if (difference.empty())
            difference = DifferenceOf(first->name, ShownOf(*first), shown);
        if (!difference.empty() && sequence.difference.empty())
            sequence.difference = file.name + ": " + difference;
    }
    sequence.alike = sequence.alike && sequence.difference.empty();
    return sequence;
}

std::string SizeText(const kep::Vector3d<std::size_t>& size) {
    return std::to_string(size.x) + " x " + std::to_string(size.y) + " x " + std::to_string(size.z);
}

std::string Count(std::size_t number, const char* what) {
    return std::to_string(number).append(" ").append(what).append(number == 1 ? "" : "s");
}

/// "3 channels: DAPI, GFP, 3", and the time points.
std::string Told(const kep::FileAxes& axes) {
    std::string text = Count(axes.channels, "channel");
    const bool isNamed = std::any_of(axes.channelInfos.begin(), axes.channelInfos.end(),
                                     [](const kep::ChannelInfo& channel) { return !channel.name.empty(); });
    for (std::size_t c = 0; isNamed && c < axes.channelInfos.size(); ++c) {
        const std::string& name = axes.channelInfos[c].name;
        text += (c == 0 ? " (" : ", ") + (name.empty() ? std::to_string(c + 1) : Printable(name, "    "));
    }
    text += isNamed ? "), " : ", ";
    text += Count(axes.times, "time point");
    if (axes.frameInterval && axes.times > 1)
        text += " every " + Shortest(static_cast<float>(*axes.frameInterval)) + " s";
    return text;
}

std::string Told(const LabelSummary& labels) {
    std::string text = std::to_string(labels.count);
    text += labels.connected ? " connected" : " as stored";
    if (labels.count == 0)
        return text;
    text += ", " + std::to_string(labels.smallest);
    if (labels.largest != labels.smallest)
        text += " to " + std::to_string(labels.largest);
    return text + (labels.largest == 1 ? " voxel" : " voxels") + (labels.count > 1 ? " each, " : ", ") +
           std::to_string(labels.onBorder) + " on the border";
}

void PrintFile(std::ostream& out, const FileInfo& file) {
    const kep::ImageInfo& info = file.info;
    const kep::Vector3d<float> res = info.resolution.GetRes();
    out << file.name << "\n"
        << "  format       " << NameOf(info.format) << ", "
        << (info.compression == "none" ? "not compressed" : info.compression) << ", " << Bytes(info.fileSize) << "\n"
        << "  size         " << SizeText(info.size) << " voxels\n";
    if (file.axes)
        out << "  frames       " << Told(*file.axes) << "\n";
    out << "  voxels       " << info.storedType;
    if (file.labels)
        out << "\n  labels       " << Told(*file.labels) << "\n";
    else if (!file.notShown.empty())
        out << ", not shown: " << file.notShown << "\n";
    else
        out << ", " << Told(ShownOf(file)) << "\n";
    if (IsKnown(res.x) || IsKnown(res.y) || IsKnown(res.z))
        out << "  voxel size   " << SizeOfVoxel(res.x) << " x " << SizeOfVoxel(res.y) << " x " << SizeOfVoxel(res.z)
            << " microns\n"
            << "  resolution   " << Resolved(res.x) << " x " << Resolved(res.y) << " x " << Resolved(res.z)
            << " pixels per micron\n";
    else
        out << "  voxel size   not known\n";
    out << "  offset       " << Shortest(info.offset.x) << ", " << Shortest(info.offset.y) << ", "
        << Shortest(info.offset.z) << " microns\n";
    if (!info.description.empty())
        out << "  description\n";
    for (const auto& [key, value] : info.description)
        out << "    " << Printable(key, "    ") << ": " << Printable(value, "      ") << "\n";
}

/// A float as a number with as few digits as it needs.
Json ToJson(float value) {
    return std::isfinite(value) ? Json::parse(Shortest(value)) : Json();
}

Json ToJson(const kep::Vector3d<float>& v) {
    return {ToJson(v.x), ToJson(v.y), ToJson(v.z)};
}

Json ToJson(const kep::Resolution& resolution) {
    const kep::Vector3d<float> res = resolution.GetRes();
    const auto component = [](float value) { return IsKnown(value) ? ToJson(value) : Json(); };
    return {component(res.x), component(res.y), component(res.z)};
}

/// The numbers of the channels that a window shows together; null where the user chooses.
Json ChannelsShown(const FileInfo& file) {
    if (ShownOf(file).choices > 0)
        return {};
    Json numbers = Json::array();
    for (std::size_t c = 0; c < file.axes->channels; ++c)
        numbers.push_back(c + 1);
    return numbers;
}

/// Channels, time points, and what the file tells of them.
void AddAxes(const FileInfo& file, Json& json) {
    const kep::FileAxes& axes = *file.axes;
    json["channels"] = axes.channels;
    json["times"] = axes.times;
    json["channelNames"] = Json::array();
    for (const kep::ChannelInfo& channel : axes.channelInfos)
        json["channelNames"].push_back(channel.name);
    json["channelsShown"] = ChannelsShown(file);
    json["frameInterval"] = axes.frameInterval ? Json(*axes.frameInterval) : Json();
    if (axes.series)
        json["series"] = {
            {"slices", axes.series->slices}, {"channels", axes.series->channels}, {"times", axes.series->times}};
}

Json ToJson(const FileInfo& file) {
    const kep::ImageInfo& info = file.info;
    Json json;
    json["name"] = file.name;
    if (!file.error.empty()) {
        json["error"] = file.error;
        return json;
    }
    json["format"] = NameOf(info.format);
    json["compression"] = info.compression;
    json["fileSize"] = info.fileSize;
    json["size"] = {info.size.x, info.size.y, info.size.z};
    json["voxelType"] = NameOf(info.voxelType);
    json["storedType"] = info.storedType;
    if (file.labels)
        json["labels"] = {{"connected", file.labels->connected},
                          {"count", file.labels->count},
                          {"smallest", file.labels->smallest},
                          {"largest", file.labels->largest},
                          {"onBorder", file.labels->onBorder}};
    else
        json["shownAs"] = file.notShown.empty() ? Json(NameOf(ShownOf(file).type)) : Json();
    if (!file.notShown.empty())
        json["notShown"] = file.notShown;
    if (file.axes)
        AddAxes(file, json);
    json["pixelsPerMicron"] = ToJson(info.resolution);
    json["offset"] = ToJson(info.offset);
    json["description"] = info.description;
    return json;
}

/// The first file that can be read.
const FileInfo* FirstGood(const std::vector<FileInfo>& files) {
    const auto good = std::find_if(files.begin(), files.end(), [](const FileInfo& file) { return file.error.empty(); });
    return good == files.end() ? nullptr : &*good;
}

void PrintFiles(std::ostream& out, const std::vector<FileInfo>& files) {
    for (const FileInfo& file : files) {
        if (file.error.empty())
            PrintFile(out, file);
    }
}

} // namespace

std::string DifferenceOf(const std::string& firstName, const kep::ImageInfo& first, const kep::ImageInfo& second) {
    if (second.size != first.size)
        return "It has " + SizeText(second.size) + " voxels, and " + firstName + " has " + SizeText(first.size) + ".";
    if (second.resolution != first.resolution)
        return "Its voxel size differs from that of " + firstName + ".";
    if (second.offset != first.offset)
        return "Its offset differs from that of " + firstName + ".";
    return {};
}

std::string InfoAsText(const std::vector<FileInfo>& files, const std::vector<FileInfo>& labels) {
    std::ostringstream out;
    out.imbue(std::locale::classic());
    PrintFiles(out, files);
    if (const Sequence sequence = Compare(files); files.size() > 1 && sequence.frames > 1) {
        if (sequence.difference.empty())
            out << sequence.frames << " frames of one sequence, shown as " << NameOf(sequence.type) << "\n";
        else
            out << sequence.difference << "\nThe files differ and form no sequence.\n";
    }
    PrintFiles(out, labels);
    if (const Sequence sequence = Compare(labels); !sequence.difference.empty())
        out << sequence.difference << "\nThe label files differ in size, voxel size or offset and form no sequence.\n";
    const FileInfo* const image = FirstGood(files);
    const FileInfo* const label = FirstGood(labels);
    if (image != nullptr && label != nullptr && image->info.size != label->info.size)
        out << "The labels differ from the image in size and don't belong to it.\n";
    return out.str();
}

std::string InfoAsJson(const std::vector<FileInfo>& files, const std::vector<FileInfo>& labels) {
    Json json;
    json["files"] = Json::array();
    for (const FileInfo& file : files)
        json["files"].push_back(ToJson(file));
    json["sequence"] = Json();
    if (FirstGood(files) != nullptr) {
        const Sequence sequence = Compare(files);
        json["sequence"] = {{"frames", sequence.frames}, {"alike", sequence.alike}, {"shownAs", NameOf(sequence.type)}};
    }
    for (const FileInfo& file : labels)
        json["labels"].push_back(ToJson(file));
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace zelviewer
