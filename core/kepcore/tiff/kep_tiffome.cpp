#include "core/kepcore/tiff/kep_tiffome.h"

#include "core/kepcore/convert/kep_number.h"
#include "core/kepcore/convert/kep_text.h"
#include "core/kepcore/tiff/kep_tifflimits.h"

#include <algorithm>
#include <pugixml.hpp>
#include <set>
#include <string_view>
#include <utility>

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

/// Numbers along z, c and t.
struct Axes {
    std::size_t z = 1;
    std::size_t c = 1;
    std::size_t t = 1;

    std::size_t& Get(char letter) { return letter == 'Z' ? z : letter == 'C' ? c : t; }
};

/// Which of the planes that OME-XML describes lie in this file.
class PlaneCounter {
public:
    PlaneCounter(const Axes& extents, std::string axisOrder) : sizes(extents), order(std::move(axisOrder)) {}

    /// A run of planes from one on, in the order of the dimensions. More than a file may have pages are not counted
    /// out.
    void Add(Axes at, std::size_t run) {
        for (std::size_t i = 0; i < run && counted < mostTiffPages; ++i, ++counted) {
            if (at.z >= sizes.z || at.c >= sizes.c || at.t >= sizes.t)
                return;
            slices.insert(at.z);
            channels.insert(at.c);
            times.insert(at.t);
            for (const char letter : order) {
                if (++at.Get(letter) < sizes.Get(letter) || letter == order.back())
                    break;
                at.Get(letter) = 0;
            }
        }
    }
    bool IsEmpty() const { return counted == 0; }
    Axes GetSizes() const { return {slices.size(), channels.size(), times.size()}; }

private:
    Axes sizes;
    std::string order; ///< of Z, C and T, the fastest first
    std::size_t counted = 0;
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

/// How many slices, channels and times of an image's planes lie in this file.
struct PlanesHere {
    Axes sizes;
    bool isAny = true; ///< false: all planes are said to lie in other files
};

PlanesHere CountPlanes(const pugi::xml_node& pixels, std::string_view ownId, const std::string& fileName) {
    Axes sizes;
    sizes.z = std::max<std::size_t>(GetCount(pixels, "SizeZ", 1), 1);
    sizes.t = std::max<std::size_t>(GetCount(pixels, "SizeT", 1), 1);
    // Components of a colour lie together in one plane, and count one by one in SizeC.
    const std::size_t together = std::max<std::size_t>(GetCount(FindChild(pixels, "Channel"), "SamplesPerPixel", 1), 1);
    sizes.c = std::max<std::size_t>(GetCount(pixels, "SizeC", 1) / together, 1);

    PlaneCounter counter(sizes, GetAxisOrder(pixels));
    bool isSaid = false;
    for (const pugi::xml_node& child : pixels.children()) {
        if (GetLocalName(child) != "TiffData")
            continue;
        isSaid = true;
        if (!IsInThisFile(child, ownId, fileName))
            continue;
        const std::size_t run = child.attribute("IFD") ? 1 : mostTiffPages;
        counter.Add({GetCount(child, "FirstZ", 0), GetCount(child, "FirstC", 0), GetCount(child, "FirstT", 0)},
                    GetCount(child, "PlaneCount", run));
    }
    if (counter.IsEmpty())
        return {sizes, !isSaid};
    return {counter.GetSizes(), true};
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
        const PlanesHere planes = CountPlanes(pixels, ownId, fileName);
        const bool isFirst = planes.isAny ? images++ == 0 : description.style != DescriptionStyle::Ome;
        if (!isFirst)
            continue;
        description.style = DescriptionStyle::Ome;
        description.slices = planes.sizes.z;
        description.channels = planes.sizes.c;
        description.times = planes.sizes.t;
        const std::string order = GetAxisOrder(pixels);
        description.channelsTogether = order.find('C') < order.find('Z');
        description.pixelSize = {GetMicrons(pixels, "PhysicalSizeX", "PhysicalSizeXUnit"),
                                 GetMicrons(pixels, "PhysicalSizeY", "PhysicalSizeYUnit"),
                                 GetMicrons(pixels, "PhysicalSizeZ", "PhysicalSizeZUnit")};
    }
    description.images = std::max<std::size_t>(images, 1);
}

} // namespace kep::detail
