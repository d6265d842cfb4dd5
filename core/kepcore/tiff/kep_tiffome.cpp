#include "core/kepcore/tiff/kep_tiffome.h"

#include "core/kepcore/convert/kep_description.h"
#include "core/kepcore/convert/kep_number.h"
#include "core/kepcore/convert/kep_text.h"
#include "core/kepcore/convert/kep_unit.h"
#include "core/kepcore/tiff/kep_tifflimits.h"

#include <algorithm>
#include <cstdint>
#include <pugixml.hpp>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

namespace kep::detail {

namespace {

/// The name without the prefix of its namespace.
std::string_view GetLocalName(const pugi::xml_node& node) {
    const std::string_view name = node.name();
    const std::size_t colon = name.find(':');
    return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

pugi::xml_node FindChild(const pugi::xml_node& parent, std::string_view name) {
    return parent.find_child([name](const pugi::xml_node& node) { return GetLocalName(node) == name; });
}

std::size_t GetCount(const pugi::xml_node& node, const char* name, std::size_t absent) {
    return ParseNumber<std::size_t>(TrimBlanks(node.attribute(name).as_string())).value_or(absent);
}

/// Which of the planes that OME-XML describes lie in this file.
class PlaneList {
public:
    PlaneList(const AxisCounts& extents, std::string axisOrder) : sizes(extents), order(std::move(axisOrder)) {}

    /// A run of planes in pages from one on, in the order of the dimensions. More than a file may have pages are not
    /// counted out.
    void Add(TiffPlane plane, std::size_t run) {
        plane.directory = std::min(plane.directory, mostTiffPages); // a page that no file has
        for (std::size_t i = 0; i < run && planes.size() < mostTiffPages; ++i, ++plane.directory) {
            if (plane.slice >= sizes.slices || plane.channel >= sizes.channels || plane.time >= sizes.times)
                return;
            planes.push_back(plane);
            slices.insert(plane.slice);
            channels.insert(plane.channel);
            times.insert(plane.time);
            for (const char letter : order) {
                auto [number, size] = GetAxis(plane, letter);
                if (++number < size || letter == order.back())
                    break;
                number = 0;
            }
        }
    }
    bool IsEmpty() const { return planes.empty(); }
    AxisCounts GetSizes() const { return {slices.size(), channels.size(), times.size()}; }
    const std::set<std::size_t>& GetChannels() const { return channels; }
    std::vector<TiffPlane> TakePlanes() { return std::move(planes); }

private:
    std::pair<std::size_t&, std::size_t> GetAxis(TiffPlane& plane, char letter) const {
        return letter == 'Z'   ? std::pair<std::size_t&, std::size_t>(plane.slice, sizes.slices)
               : letter == 'C' ? std::pair<std::size_t&, std::size_t>(plane.channel, sizes.channels)
                               : std::pair<std::size_t&, std::size_t>(plane.time, sizes.times);
    }

    AxisCounts sizes;
    std::string order; ///< of Z, C and T, the fastest first
    std::vector<TiffPlane> planes;
    std::set<std::size_t> slices;
    std::set<std::size_t> channels;
    std::set<std::size_t> times;
};

/// The letters of Z, C and T in "XYCZT" and the like; what is missing comes last.
std::string GetAxisOrder(const pugi::xml_node& pixels) {
    std::string order;
    for (const char letter : std::string(pixels.attribute("DimensionOrder").as_string()) + "ZCT") {
        if ((letter == 'Z' || letter == 'C' || letter == 'T') && order.find(letter) == std::string::npos)
            order += letter;
    }
    return order;
}

/// The planes of a "TiffData" element lie in this file: it names none, or this one. The file's own identifier
/// counts before its name, as files are renamed.
bool IsInThisFile(const pugi::xml_node& tiffData, std::string_view ownId, const std::string& fileName) {
    const pugi::xml_node uuid = FindChild(tiffData, "UUID");
    if (!uuid)
        return true;
    const std::string_view id = TrimBlanks(uuid.text().as_string());
    if (!ownId.empty() && !id.empty())
        return id == ownId;
    return fileName == uuid.attribute("FileName").as_string();
}

std::optional<double> GetMicrons(const pugi::xml_node& pixels, const char* size, const char* unit) {
    const auto number = ParseNumber<double>(TrimBlanks(pixels.attribute(size).as_string()));
    const auto microns = GetMicronsOfUnit(pixels.attribute(unit).as_string("um"));
    if (!number || !microns)
        return std::nullopt;
    return *number * *microns;
}

/// The planes of an image that lie in this file.
struct PlanesHere {
    AxisCounts sizes;
    AxisCounts all;               ///< of the image, in whichever files it lies
    std::vector<TiffPlane> where; ///< empty: in the order of the dimensions
    std::vector<ChannelInfo> channels;
    bool isAny = true; ///< false: all planes are said to lie in other files
};

/// A channel as its element tells it. The colour is a signed number of 32 bits: red, green, blue and alpha.
ChannelInfo DescribeChannel(const pugi::xml_node& channel) {
    ChannelInfo info;
    info.name = ToUtf8(std::string(TrimBlanks(channel.attribute("Name").as_string())));
    if (const auto colour = ParseNumber<std::int32_t>(TrimBlanks(channel.attribute("Color").as_string()))) {
        const auto bits = static_cast<std::uint32_t>(*colour);
        const auto byte = [bits](unsigned shift) { return static_cast<unsigned char>(bits >> shift & 0xFFU); };
        info.colour = RGB_generic<unsigned char>(byte(24), byte(16), byte(8));
    }
    return info;
}

/// The channels of an image, or those of them that lie in this file.
/// @param here  their numbers; none: all
std::vector<ChannelInfo> DescribeChannels(const pugi::xml_node& pixels, const std::set<std::size_t>& here) {
    std::vector<ChannelInfo> channels;
    std::size_t number = 0;
    for (const pugi::xml_node& child : pixels.children()) {
        if (GetLocalName(child) != "Channel")
            continue;
        if (here.empty() || here.contains(number))
            channels.push_back(DescribeChannel(child));
        ++number;
    }
    return channels;
}

PlanesHere CountPlanes(const pugi::xml_node& pixels, std::string_view ownId, const std::string& fileName) {
    AxisCounts sizes;
    sizes.slices = std::max<std::size_t>(GetCount(pixels, "SizeZ", 1), 1);
    sizes.times = std::max<std::size_t>(GetCount(pixels, "SizeT", 1), 1);
    // Components of a colour lie together in one plane, and count one by one in SizeC.
    const std::size_t together = std::max<std::size_t>(GetCount(FindChild(pixels, "Channel"), "SamplesPerPixel", 1), 1);
    sizes.channels = std::max<std::size_t>(GetCount(pixels, "SizeC", 1) / together, 1);

    PlaneList planes(sizes, GetAxisOrder(pixels));
    bool isSaid = false;
    for (const pugi::xml_node& child : pixels.children()) {
        if (GetLocalName(child) != "TiffData")
            continue;
        isSaid = true;
        if (!IsInThisFile(child, ownId, fileName))
            continue;
        const std::size_t run = child.attribute("IFD") ? 1 : mostTiffPages;
        planes.Add({GetCount(child, "FirstZ", 0), GetCount(child, "FirstC", 0), GetCount(child, "FirstT", 0),
                    GetCount(child, "IFD", 0)},
                   GetCount(child, "PlaneCount", run));
    }
    std::vector<ChannelInfo> channels = DescribeChannels(pixels, planes.GetChannels());
    if (planes.IsEmpty())
        return {sizes, sizes, {}, std::move(channels), !isSaid};
    return {planes.GetSizes(), sizes, planes.TakePlanes(), std::move(channels), true};
}

} // namespace

bool LooksLikeOme(const std::string& text) {
    const std::string_view head = TrimBlanks(text);
    const bool xml = head.starts_with("<") || head.starts_with("\xEF\xBB\xBF<");
    return xml && (text.find("<OME") != std::string::npos || text.find(":OME") != std::string::npos);
}

void ParseOme(const std::string& text, const std::string& fileName, TiffDescription& description) {
    pugi::xml_document document;
    if (!document.load_buffer(text.data(), text.size()))
        return;
    const pugi::xml_node root = FindChild(document, "OME");
    const std::string_view ownId = TrimBlanks(root.attribute("UUID").as_string());
    std::size_t images = 0; // with planes in this file
    for (const pugi::xml_node& image : root.children()) {
        const pugi::xml_node pixels = FindChild(image, "Pixels");
        if (GetLocalName(image) != "Image" || !pixels)
            continue;
        PlanesHere planes = CountPlanes(pixels, ownId, fileName);
        const bool isFirst = planes.isAny ? images++ == 0 : description.style != DescriptionStyle::Ome;
        if (!isFirst)
            continue;
        description.style = DescriptionStyle::Ome;
        description.slices = planes.sizes.slices;
        description.channels = planes.sizes.channels;
        description.times = planes.sizes.times;
        description.order = GetAxisOrder(pixels);
        description.channelsTogether = description.order.find('C') < description.order.find('Z');
        description.planes = std::move(planes.where);
        description.planesElsewhere = !planes.isAny;
        description.series = planes.sizes == planes.all ? std::nullopt : std::optional<AxisCounts>(planes.all);
        description.channelInfos = std::move(planes.channels);
        description.frameInterval =
            FindInterval(ParseNumber<double>(TrimBlanks(pixels.attribute("TimeIncrement").as_string())),
                         TrimBlanks(pixels.attribute("TimeIncrementUnit").as_string("s")));
        description.pixelSize = {GetMicrons(pixels, "PhysicalSizeX", "PhysicalSizeXUnit"),
                                 GetMicrons(pixels, "PhysicalSizeY", "PhysicalSizeYUnit"),
                                 GetMicrons(pixels, "PhysicalSizeZ", "PhysicalSizeZUnit")};
    }
    description.images = std::max<std::size_t>(images, 1);
}

} // namespace kep::detail
