#include "host/report.h"

#include "host/displaytype.h"
#include "host/info.h"
#include "host/message.h"
#include "host/openingplan.h"
#include "host/voxelsize.h"
#include "image/kep.h"

#include <wx/app.h>
#include <wx/versioninfo.h>

#include <algorithm>
#include <new>
#include <optional>
#include <utility>

namespace zelviewer {

namespace {

/// Reads a label file and sums its labels up.
LabelSummary SumUpLabels(const std::string& name, bool connected) {
    const kep::Image3d<unsigned short> image(name.c_str(), nullptr, false, -1, nullptr, nullptr);
    kep::LabeledImage3d<unsigned short, unsigned short> frame;
    if (connected)
        frame.CreateForegroundRegionsFF(image, kep::nb3D_6);
    else
        frame.CreateRegionsOfLabels(image);
    LabelSummary summary;
    summary.connected = connected;
    summary.count = frame.components.size();
    for (const auto& [label, component] : frame.components) {
        const bool isFirst = summary.smallest == 0;
        summary.smallest = isFirst ? component.volume : std::min(summary.smallest, component.volume);
        summary.largest = std::max(summary.largest, component.volume);
        summary.onBorder += component.border ? 1 : 0;
    }
    return summary;
}

/// Every voxel that a file of this type can have is one that its window shows.
bool IsAlwaysShown(kep::VoxelType type) {
    switch (type) {
    case kep::VoxelType::UInt64:
    case kep::VoxelType::Double:
    case kep::VoxelType::DoubleComplex:
    case kep::VoxelType::Other:
        return false;
    default:
        return true;
    }
}

/// Reads all voxels as the type in which they would be shown.
/// @return why they can't be; empty if they can
std::string FindWhyNotShown(const FileInfo& file) {
    try {
        WithVoxelType(DisplayTypeFor(file.info.voxelType), [&file](auto type) {
            kep::Image3d<typename decltype(type)::type> frame;
            if (!file.axes)
                return frame.ReadImage(file.name.c_str(), nullptr, false, -1, nullptr, nullptr);
            kep::FrameReader reader(file.name.c_str());
            for (std::size_t t = 0; t < file.axes->times; ++t)
                for (std::size_t c = 0; c < file.axes->channels; ++c)
                    reader.ReadFrame(c, t, frame);
        });
    } catch (const kep::LibException& failure) {
        return ReasonOf(file.name, failure);
    }
    return {};
}

/// What a file says of itself. Its voxels are read only where their type leaves open whether they can be shown.
FileInfo Describe(const std::string& name, const Options& options) {
    FileContents contents = ReadContents(name);
    FileInfo file{name, std::move(contents.info)};
    file.axes = std::move(contents.axes);
    if (!IsAlwaysShown(file.info.voxelType))
        file.notShown = FindWhyNotShown(file);
    file.info.resolution = CompleteResolution(file.info.resolution, options.resolution);
    return file;
}

FileInfo DescribeLabels(const std::string& name, const Options& options) {
    FileInfo file{name, kep::ReadImageInfo(name.c_str()), SumUpLabels(name, options.components)};
    file.info.resolution = CompleteResolution(file.info.resolution, options.resolution);
    return file;
}

/// A file that can't be read.
FileInfo Failed(const std::string& name, const std::string& reason, Report& report) {
    report.messages.push_back(name + ": " + reason);
    FileInfo file{name, {}};
    file.error = reason;
    return file;
}

} // namespace

Report MakeReport(const Options& options) {
    Report report;
    const auto ask = [&](const std::vector<std::string>& names, const auto& tell) {
        std::vector<FileInfo> files;
        for (const std::string& name : names) {
            try {
                files.push_back(tell(name, options));
            } catch (const kep::LibException& error) {
                files.push_back(Failed(name, ReasonOf(name, error), report));
            } catch (const std::bad_alloc&) {
                files.push_back(Failed(name, "Not enough memory.", report));
            }
        }
        return files;
    };
    const std::vector<FileInfo> files = ask(options.files, &Describe);
    const std::vector<FileInfo> labels = ask(options.labels, &DescribeLabels);
    report.text = options.json ? InfoAsJson(files, labels) : InfoAsText(files, labels);
    return report;
}

std::string VersionText() {
    const kep::CodecVersions codecs = kep::GetCodecVersions();
    std::optional<wxAppConsole> app; // the toolkit can't tell its version without one; it opens no display
    if (wxTheApp == nullptr)
        app.emplace();
    const wxVersionInfo toolkit = wxGetLibraryVersionInfo();
    return "zelviewer " ZEL_VERSION "\nwxWidgets " + std::to_string(toolkit.GetMajor()) + "." +
           std::to_string(toolkit.GetMinor()) + "." + std::to_string(toolkit.GetMicro()) + "\nlibtiff " +
           codecs.libtiff + "\nzlib " + codecs.zlib + "\nlibarchive " + codecs.libarchive + "\n";
}

} // namespace zelviewer
