#include "fuzz/input.h"
#include "fuzz/targets.h"
#include "host/options.h"
#include "host/settings.h"
#include "host/settingsfile.h"
#include "mapping/text/zel_rgbconfig.h"
#include "mapping/zel_palette.h"
#include "model/zel_channelmapping.h"
#include "model/zel_histogram.h"

#include <wx/fileconf.h>
#include <wx/log.h>
#include <wx/mstream.h>

#include <algorithm>
#include <string>
#include <vector>

namespace fuzz {

namespace {

const char* MakeFile(std::string_view bytes) {
    static MemoryFile file;
    file.Set(bytes);
    return file.GetName();
}

template <typename T>
void LoadAs(const char* name) {
    zel::Histogram<T> histogram;
    if (!histogram.Load(name))
        return;
    const std::string copyName = GetScratchFolder() + "/histogram";
    Require(histogram.Save(copyName), "a histogram that was loaded can be saved");
    zel::Histogram<T> copy;
    Require(copy.Load(copyName), "a histogram that was saved can be loaded");
    Require(std::equal(histogram.begin(), histogram.end(), copy.begin(), copy.end()),
            "a histogram comes back with its counters");
}

template <typename T>
void ReadMapping(const wxFileConfig& config) {
    std::array<zel::ChannelMapping<T>, 3> channels;
    std::array<bool, 3> isShown{};
    const auto channel = [&](int c) -> auto& {
        return channels[static_cast<std::size_t>(c)];
    };
    zel::GoThroughChannels<T>(zel::ConfigReader(config), channel, isShown);
    zel::GoThroughLevels<T>(zel::ConfigReader(config), channel);
}

} // namespace

void ReadHistogram(std::string_view bytes) {
    const char* const name = MakeFile(bytes);
    LoadAs<unsigned char>(name);
    LoadAs<unsigned short>(name);
    LoadAs<int>(name);
    LoadAs<float>(name);
}

void ReadPaletteFile(std::string_view bytes) {
    const wxLogNull quiet;
    const char* const name = MakeFile(bytes);
    zel::Palette palette;
    if (!zel::ReadPalette(palette, name).empty())
        return;
    Require(palette.size() <= 256, "a palette has a colour for a level at most");
    zel::PaletteTable table;
    table.Init(256, 0, 255);
    zel::SpreadPalette(palette, table);
}

void ReadConfiguration(std::string_view bytes) {
    const wxLogNull quiet;
    zelviewer::IsSettingsText(bytes);
    wxMemoryInputStream stream(bytes.data(), bytes.size());
    wxFileConfig config(stream, wxConvUTF8);
    config.SetExpandEnvVars(false);
    ReadMapping<unsigned char>(config);
    ReadMapping<unsigned short>(config);
    if (const auto place = zelviewer::ReadPlace(config))
        zelviewer::WritePlace(config, *place);
    const std::vector<zelviewer::OpenedFiles> recent = zelviewer::ReadRecent(config);
    zelviewer::WriteRecent(config, recent);
    Require(zelviewer::ReadRecent(config) == recent, "recent files that were written are read alike");
    for (const zelviewer::OpenedFiles& files : recent)
        zelviewer::DescribeFiles(files);
    zelviewer::FolderOf(recent);
}

void ReadCommandLine(std::string_view bytes) {
    std::vector<std::string> arguments;
    for (std::string_view rest = bytes.substr(0, bytes.find('\0')); !rest.empty();) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        arguments.emplace_back(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    const zelviewer::CommandLine line = zelviewer::ParseCommandLine(arguments);
    if (line.command == zelviewer::Command::Refuse)
        Require(!line.text.empty(), "a command line that is refused is told why");
    if (line.command != zelviewer::Command::Run || !line.options.save.IsAskedFor())
        return;
    const zelviewer::Range frames = line.options.save.GetFrames(3);
    Require(frames.first <= frames.last && frames.step > 0, "a range of frames has one at least");
    line.options.save.FindMissingFrame(3);
    line.options.save.GetFileName(2);
}

} // namespace fuzz
