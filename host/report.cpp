#include "host/report.h"

#include "host/info.h"
#include "host/message.h"
#include "image/kep.h"

#include <wx/app.h>
#include <wx/versioninfo.h>

#include <algorithm>
#include <new>

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

} // namespace

Report MakeReport(const Options& options) {
    Report report;
    const auto ask = [&report](const std::vector<std::string>& names, const auto& tell) {
        std::vector<FileInfo> files;
        for (const std::string& name : names) {
            try {
                files.push_back(tell(name));
            } catch (const kep::LibException& error) {
                report.messages.push_back(NameAndReason(name, error));
            } catch (const std::bad_alloc&) {
                report.messages.push_back(name + ": Not enough memory.");
            }
        }
        return files;
    };
    const std::vector<FileInfo> files = ask(options.files, [](const std::string& name) {
        return FileInfo{name, kep::ReadImageInfo(name.c_str())};
    });
    const std::vector<FileInfo> labels = ask(options.labels, [&options](const std::string& name) {
        return FileInfo{name, kep::ReadImageInfo(name.c_str()), SumUpLabels(name, options.components)};
    });
    if (options.json)
        report.text = InfoAsJson(files, labels);
    else if (!files.empty() || !labels.empty())
        report.text = InfoAsText(files, labels);
    return report;
}

std::string VersionText() {
    const kep::CodecVersions codecs = kep::GetCodecVersions();
    wxAppConsole app; // the toolkit can't tell its version without one; it opens no display
    const wxVersionInfo toolkit = wxGetLibraryVersionInfo();
    return "zelviewer " ZEL_VERSION "\nwxWidgets " + std::to_string(toolkit.GetMajor()) + "." +
           std::to_string(toolkit.GetMinor()) + "." + std::to_string(toolkit.GetMicro()) + "\nlibtiff " +
           codecs.libtiff + "\nzlib " + codecs.zlib + "\nlibarchive " + codecs.libarchive + "\n";
}

} // namespace zelviewer
