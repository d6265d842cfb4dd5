#include "core/kepcore/tiff/kep_tifftexts.h"

#include "core/kepcore/convert/kep_description.h"
#include "core/kepcore/convert/kep_number.h"
#include "core/kepcore/convert/kep_unit.h"
#include "core/kepcore/tiff/kep_tifflimits.h"

#include <utility>

namespace kep::detail {

namespace {

bool HasTag(const TiffTextTag& textTag, const std::string& value) {
    constexpr std::size_t dateTimeLength = 19; // "YYYY:MM:DD HH:MM:SS", nothing else stands in this tag
    return !value.empty() && value.size() < longestTiffText && value.find('\0') == std::string::npos &&
           (textTag.tag != tagDateTime || value.size() == dateTimeLength);
}

using Entries = std::map<std::string, std::string>;

/// Splits a description into what goes into tags and what goes into the first page's description.
std::pair<Entries, Entries> SplitByTag(Entries entries) {
    Entries tagged;
    for (const TiffTextTag& textTag : tiffTextTags) {
        const auto found = entries.find(textTag.key);
        if (found != entries.end() && HasTag(textTag, found->second))
            tagged.insert(entries.extract(found));
    }
    return {std::move(tagged), std::move(entries)};
}

/// The text of the first page's description. ImageJ and others take slices, voxel size and origin from it.
std::string MakeDescription(const FrameHeader& header, const Entries& entries) {
    const Vector3d<float> res = header.resolution.GetRes();
    const std::string slices = std::to_string(header.size.z);
    std::string text = "ImageJ=1.11a\nimages=" + slices + "\nslices=" + slices + "\n";
    text += IsGoodResolution(res.x) || IsGoodResolution(res.y) || IsGoodResolution(res.z) ? "unit=micrometers\n"
                                                                                          : "unit=pixel\n";
    if (IsGoodResolution(res.z))
        text += "spacing=" + FormatNineDigits(1.0 / static_cast<double>(res.z)) + "\n";
    if (!(header.offset == Vector3d<float>())) {
        const Vector3d<float> usable = header.resolution.GetUsable().GetRes();
        const auto origin = [](float microns, float perMicron) {
            return FormatNineDigits(-static_cast<double>(microns) * static_cast<double>(perMicron)) + "\n";
        };
        text += "xorigin=" + origin(header.offset.x, usable.x) + "yorigin=" + origin(header.offset.y, usable.y) +
                "zorigin=" + origin(header.offset.z, usable.z);
    }
    return text + FormatOwnLines(res, header.offset, entries);
}

} // namespace

TiffTexts MakeTiffTexts(const FrameHeader& header) {
    auto [tagged, others] = SplitByTag(header.description);
    DescriptionRoom room;
    room.file = "a TIFF file";
    room.bytes = longestTiffDescription - 1 - MakeDescription(header, {}).size(); // a zero byte ends it
    room.longestValue = longestTiffText;
    room.getBytes = &GetOwnLineBytes;
    FittedDescription fitted = FitDescription(others, room);
    return {MakeDescription(header, fitted.entries), std::move(tagged), std::move(fitted.notice)};
}

} // namespace kep::detail
