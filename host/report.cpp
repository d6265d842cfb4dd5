#include "host/report.h"

#include "core/kepcore/kep_exceptions.h"
#include "core/kepcore/kep_version.h"
#include "host/info.h"
#include "host/message.h"

#include <wx/app.h>
#include <wx/versioninfo.h>

namespace zelviewer {

Report MakeReport(const Options& options) {
    Report report;
    std::vector<FileInfo> files;
    for (const std::string& name : options.files) {
        try {
            files.push_back({name, kep::ReadImageInfo(name.c_str())});
        } catch (const kep::LibException& error) {
            report.messages.push_back(NameAndReason(name, error.GetText()));
        }
    }
    if (options.json)
        report.text = InfoAsJson(files);
    else if (!files.empty())
        report.text = InfoAsText(files);
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
