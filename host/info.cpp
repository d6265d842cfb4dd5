#include "host/info.h"

#include "host/displaytype.h"

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

/// What the files are together.
struct Sequence {
    bool alike = true; ///< in size, voxel size and offset
    DisplayType type;
};

Sequence Compare(const std::vector<FileInfo>& files) {
    const kep::ImageInfo& first = files.front().info;
    Sequence sequence{true, DisplayTypeFor(first.voxelType)};
    for (const FileInfo& file : files) {
        sequence.alike = sequence.alike && file.info.size == first.size && file.info.offset == first.offset &&
                         file.info.resolution == first.resolution;
        sequence.type = WiderType(sequence.type, DisplayTypeFor(file.info.voxelType));
    }
    return sequence;
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
        << "  size         " << info.size.x << " x " << info.size.y << " x " << info.size.z << " voxels\n"
        << "  voxels       " << info.storedType;
    if (file.labels)
        out << "\n  labels       " << Told(*file.labels) << "\n";
    else
        out << ", shown as " << NameOf(DisplayTypeFor(info.voxelType)) << "\n";
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

Json ToJson(const FileInfo& file) {
    const kep::ImageInfo& info = file.info;
    Json json;
    json["name"] = file.name;
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
        json["shownAs"] = NameOf(DisplayTypeFor(info.voxelType));
    json["pixelsPerMicron"] = ToJson(info.resolution);
    json["offset"] = ToJson(info.offset);
    json["description"] = info.description;
    return json;
}

} // namespace

std::string InfoAsText(const std::vector<FileInfo>& files, const std::vector<FileInfo>& labels) {
    std::ostringstream out;
    out.imbue(std::locale::classic());
    for (const FileInfo& file : files)
        PrintFile(out, file);
    if (files.size() > 1) {
        const Sequence sequence = Compare(files);
        if (sequence.alike)
            out << files.size() << " frames of one sequence, shown as " << NameOf(sequence.type) << "\n";
        else
            out << "The files differ in size, voxel size or offset and form no sequence.\n";
    }
    for (const FileInfo& file : labels)
        PrintFile(out, file);
    if (labels.size() > 1 && !Compare(labels).alike)
        out << "The label files differ in size, voxel size or offset and form no sequence.\n";
    if (!files.empty() && !labels.empty() && files.front().info.size != labels.front().info.size)
        out << "The labels differ from the image in size and don't belong to it.\n";
    return out.str();
}

std::string InfoAsJson(const std::vector<FileInfo>& files, const std::vector<FileInfo>& labels) {
    Json json;
    json["files"] = Json::array();
    for (const FileInfo& file : files)
        json["files"].push_back(ToJson(file));
    json["sequence"] = Json();
    if (!files.empty()) {
        const Sequence sequence = Compare(files);
        json["sequence"] = {{"frames", files.size()}, {"alike", sequence.alike}, {"shownAs", NameOf(sequence.type)}};
    }
    for (const FileInfo& file : labels)
        json["labels"].push_back(ToJson(file));
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace zelviewer
