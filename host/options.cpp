#include "host/options.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

namespace zelviewer {

namespace {

const char* const description =
    "Shows the XY, XZ and YZ cuts of microscope images.\n"
    "Reads TIFF and ICS files, each one or more time points. Without files it shows synthetic\n"
    "cells, or with --type complex a synthetic wave.";

const char* const footer = "Examples:\n"
                           "  zelviewer stack.tif                        shows one volume\n"
                           "  zelviewer time_*.ics                       shows a time sequence\n"
                           "  zelviewer --resolution 10,10,3 stack.tif   gives the resolution that the file lacks\n"
                           "  zelviewer --info --json *.tif              prints what the files contain\n"
                           "  zelviewer --export-meshes cell --labels labels.tif\n"
                           "                                             writes cell1.ply, cell2.ply, ...\n"
                           "  zelviewer --save-gallery figure.png --slices 0:20:4 --rows 1 stack.tif\n"
                           "                                             writes a row of six slices\n"
                           "\n"
                           "Exit status: 0 on success, 1 on failure, 2 for a wrong command line.";

/// Three finite numbers above 0, with commas between.
std::optional<kep::Vector3d<float>> ParseResolution(const std::string& text) {
    kep::Vector3d<float> values;
    const char* at = text.data();
    const char* const end = text.data() + text.size();
    for (float* value : {&values.x, &values.y, &values.z}) {
        if (value != &values.x && (at == end || *at++ != ','))
            return std::nullopt;
        const auto [next, error] = std::from_chars(at, end, *value);
        if (error != std::errc() || !std::isfinite(*value) || *value <= 0.0F)
            return std::nullopt;
        at = next;
    }
    return at == end ? std::optional(values) : std::nullopt;
}

/// The number of a channel, counted from 0; the user counts from 1.
std::optional<std::size_t> ParseChannel(std::string_view text) {
    std::size_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number == 0)
        return std::nullopt;
    return number - 1;
}

/// Two or three channels with commas between; nothing if they are anything else.
std::vector<std::size_t> ParseChannels(std::string_view text) {
    std::vector<std::size_t> channels;
    for (std::size_t comma = 0; comma != std::string_view::npos;) {
        comma = text.find(',');
        const auto channel = ParseChannel(text.substr(0, comma));
        if (!channel)
            return {};
        channels.push_back(*channel);
        text.remove_prefix(std::min(comma, text.size() - 1) + 1);
    }
    return channels.size() == 2 || channels.size() == 3 ? channels : std::vector<std::size_t>();
}

const std::vector<std::pair<std::string, Stretch>> stretchNames = {{"none", Stretch::None},
                                                                   {"linear", Stretch::Linear},
                                                                   {"percentil", Stretch::Percentil},
                                                                   {"equalize", Stretch::Equalize}};

const std::vector<std::pair<std::string, zel::ComplexMode>> partNames = {
    {"real", zel::Real}, {"imaginary", zel::Imaginary}, {"phase", zel::Phase}, {"amplitude", zel::Amplitude}};

/// The value of a name in a table of names.
template <typename V>
std::optional<V> ValueOf(const std::vector<std::pair<std::string, V>>& table, const std::string& name) {
    for (const auto& [known, value] : table)
        if (known == name)
            return value;
    return std::nullopt;
}

template <typename V>
std::string JoinedNames(const std::vector<std::pair<std::string, V>>& table) {
    std::string names;
    for (const auto& [name, value] : table)
        names += (names.empty() ? "" : ", ") + name;
    return names;
}

std::string InOneLine(std::string text) {
    std::replace(text.begin(), text.end(), '\n', ' ');
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

} // namespace

std::string FindConflict(const Options& options, DisplayType type) {
    if (options.stretch == Stretch::Equalize && IsColour(type))
        return "--stretch equalize is not for colour images such as " + NameOf(type) + ".";
    if (options.channels.size() > 1 && !IsColour(type))
        return "--channels makes a colour image, which is rgb or rgb16 and not " + NameOf(type) + ".";
    if (options.part && type != DisplayType::Complex)
        return "--part is for complex images, not for " + NameOf(type) + ".";
    return {};
}

namespace {

/// What is wrong with options that are each right; empty if nothing is.
std::string FindConflict(const Options& options) {
    if (options.json && !options.info)
        return "--json goes with --info.";
    if (options.info && options.screenshot)
        return "--info and --screenshot exclude each other.";
    const bool writes = options.screenshot || options.exportMeshes || options.save.IsAskedFor();
    if (options.force && !writes)
        return "--force goes with options that write files.";
    if (options.closeMeshes && !options.exportMeshes)
        return "--close-meshes goes with --export-meshes.";
    if (options.components && options.labels.empty())
        return "--components goes with --labels.";
    if (options.exportMeshes) {
        if (options.labels.empty())
            return "--export-meshes goes with --labels.";
        if (!options.files.empty())
            return "--export-meshes takes labels alone and no FILE.";
        if (options.info || options.screenshot)
            return std::string("--export-meshes and ") + (options.info ? "--info" : "--screenshot") +
                   " exclude each other.";
    }
    if (options.save.IsAskedFor()) {
        const char* const other = options.info           ? "--info"
                                  : options.screenshot   ? "--screenshot"
                                  : options.exportMeshes ? "--export-meshes"
                                  : options.view         ? "--view"
                                  : options.volume       ? "--volume"
                                                         : nullptr;
        if (other != nullptr)
            return std::string(options.save.GetName()) + " and " + other + " exclude each other.";
    }
    if (options.stretch && (options.info || options.exportMeshes))
        return std::string("--stretch and ") + (options.info ? "--info" : "--export-meshes") + " exclude each other.";
    if (options.part && (options.info || options.exportMeshes))
        return std::string("--part and ") + (options.info ? "--info" : "--export-meshes") + " exclude each other.";
    if (options.volume && (options.info || options.exportMeshes))
        return std::string(options.view ? "--view" : "--volume") + " and " +
               (options.info ? "--info" : "--export-meshes") + " exclude each other.";
    if (options.sequence && options.files.size() != 1)
        return "--sequence needs one FILE.";
    if (!options.channels.empty()) {
        const std::string channels = options.channels.size() == 1 ? "--channel" : "--channels";
        if (options.info || options.exportMeshes)
            return channels + " and " + (options.info ? "--info" : "--export-meshes") + " exclude each other.";
        if (options.files.empty())
            return channels + " needs a FILE.";
        if (options.binary && options.channels.size() > 1)
            return "--channels and --binary exclude each other.";
    }
    if (options.type)
        if (std::string conflict = FindConflict(options, *options.type); !conflict.empty())
            return conflict;
    // One file may hold many frames, which is seen when it is opened.
    if (!options.labels.empty() && options.files.size() > 1 && options.labels.size() != options.files.size())
        return "--labels needs one file for each FILE: " + std::to_string(options.files.size()) + ", not " +
               std::to_string(options.labels.size()) + ".";
    if (!options.files.empty() || (options.info && !options.labels.empty()))
        return {};
    const bool showsVortex = options.type == DisplayType::Complex;
    const bool shown = !options.exportMeshes; // meshes need no image, and --resolution is for their labels
    const char* const needsFile = options.info                       ? "--info"
                                  : !options.labels.empty() && shown ? "--labels"
                                  : options.type && !showsVortex     ? "--type"
                                  : options.part && !showsVortex     ? "--part"
                                  : options.binary                   ? "--binary"
                                  : options.resolution && shown      ? "--resolution"
                                                                     : nullptr;
    return needsFile != nullptr ? std::string(needsFile) + " needs a FILE." : std::string();
}

} // namespace

CommandLine ParseCommandLine(std::vector<std::string> arguments) {
    CommandLine line;
    Options& options = line.options;
    bool showVersion = false;
    std::string type, channel, channels, resolution, stretch, part, meshes, view, screenshot;

    CLI::App app(description, "zelviewer");
    app.footer(footer);
    app.get_formatter()->column_width(28);
    app.set_help_flag("-h,--help", "Print this help and exit");
    app.add_flag("--version", showVersion, "Print the versions of program and libraries, and exit");
    app.add_option("FILE", options.files,
                   "Image files of the same size and voxel size, whose time\npoints make one sequence; a folder stands "
                   "for its images")
        ->type_name("");
    app.add_flag("--sequence", options.sequence,
                 "Open with FILE all files beside it whose names differ by\none number only, such as t1.tif, t2.tif, "
                 "... t51.tif");
    const CLI::Option* const typeOption =
        app.add_option("--type", type,
                       "Read as this voxel type instead of the files' own:\n" + JoinedNames(DisplayTypeNames()) +
                           ".\nA file whose voxels don't fit is refused")
            ->type_name("NAME");
    const CLI::Option* const channelOption =
        app.add_option("--channel", channel, "Show one channel of files with several, counted from 1")->type_name("N");
    const CLI::Option* const channelsOption =
        app.add_option("--channels", channels,
                       "Show two or three channels as red, green and blue, e.g.\n1,3,2. Without it files with two or "
                       "three channels of 8\nor 16 bits open so, in their order")
            ->type_name("N,N[,N]");
    app.add_flag("--binary", options.binary, "Read the files as masks: every value other than 0 is set");
    const CLI::Option* const resolutionOption =
        app.add_option(
               "--resolution", resolution,
               "Pixels per micron along each axis, for files without\nresolution; one in the file takes precedence")
            ->type_name("X,Y,Z");
    app.add_option("--labels", options.labels,
                   "Label files, one per time point. All names after it are\nlabel files; put FILE first, or after --")
        ->type_name("FILE...")
        ->expected(1, -1);
    app.add_flag("--components", options.components,
                 "Label the connected components of the label files, instead\nof using their voxels as labels");
    const CLI::Option* const meshesOption =
        app.add_option("--export-meshes", meshes,
                       "Write the surface of each label in microns to PREFIXn.ply,\nof several frames to "
                       "PREFIXn_tm.ply, and exit")
            ->type_name("PREFIX");
    app.add_flag("--close-meshes", options.closeMeshes,
                 "With --export-meshes: close surfaces that reach the\nborder of the image with its faces");
    app.add_flag("--voxels", options.voxels, "One pixel per voxel, instead of true proportions");
    const CLI::Option* const stretchOption =
        app.add_option(
               "--stretch", stretch,
               "How voxel values are stretched from black to white:\n" + JoinedNames(stretchNames) +
                   ".\nWithout it images of more than 8 bits open with percentil,\nothers and complex ones with none")
            ->type_name("NAME");
    const CLI::Option* const partOption =
        app.add_option("--part", part, "The part of a complex image that is shown first:\n" + JoinedNames(partNames))
            ->type_name("NAME");
    app.add_flag("--volume", options.volume, "Open the volume window as well");
    const CLI::Option* const viewOption =
        app.add_option("--view", view, "Open the volume window with a view that was saved there")
            ->type_name("FILE.zelview");
    const CLI::Option* const screenshotOption =
        app.add_option("--screenshot", screenshot,
                       "Write the picture of the window to a PNG file and exit;\nthat of the volume window to "
                       "FILE-volume.png")
            ->type_name("FILE.png");
    SaveOptionsParser save;
    save.AddTo(app);
    app.add_flag("--force", options.force,
                 "Replace files that are there under the names to be written.\nNever replaced are inputs, and files of "
                 "another kind");
    app.add_flag("--info", options.info, "Print what the files contain, without reading voxels, and exit");
    app.add_flag("--json", options.json, "With --info: as JSON");
    app.add_flag("--verbose", options.verbose, "Print on standard error what is being read");

    const auto refuse = [&line](std::string text) {
        line.command = Command::Refuse;
        line.text = std::move(text);
        return line;
    };
    try {
        std::reverse(arguments.begin(), arguments.end()); // CLI11 takes them from the back
        app.parse(std::move(arguments));
    } catch (const CLI::CallForHelp&) {
        line.command = Command::Help;
        line.text = app.help();
        return line;
    } catch (const CLI::ParseError& error) {
        return refuse(InOneLine(error.what()));
    }
    if (showVersion) {
        line.command = Command::Version;
        return line;
    }
    if (typeOption->count() > 0) {
        options.type = ValueOf(DisplayTypeNames(), type);
        if (!options.type)
            return refuse("--type " + type + ": use one of " + JoinedNames(DisplayTypeNames()) + ".");
    }
    if (channelOption->count() > 0 && channelsOption->count() > 0)
        return refuse("--channel and --channels exclude each other.");
    if (channelOption->count() > 0) {
        const auto number = ParseChannel(channel);
        if (!number)
            return refuse("--channel " + channel + ": use a whole number from 1 on.");
        options.channels = {*number};
    }
    if (channelsOption->count() > 0) {
        options.channels = ParseChannels(channels);
        if (options.channels.empty())
            return refuse("--channels " + channels + ": use two or three numbers from 1 on, such as 1,3,2.");
    }
    if (stretchOption->count() > 0) {
        options.stretch = ValueOf(stretchNames, stretch);
        if (!options.stretch)
            return refuse("--stretch " + stretch + ": use one of " + JoinedNames(stretchNames) + ".");
    }
    if (partOption->count() > 0) {
        options.part = ValueOf(partNames, part);
        if (!options.part)
            return refuse("--part " + part + ": use one of " + JoinedNames(partNames) + ".");
    }
    if (resolutionOption->count() > 0) {
        options.resolution = ParseResolution(resolution);
        if (!options.resolution)
            return refuse("--resolution " + resolution + ": use three numbers above 0, such as 10,10,3.3.");
    }
    if (meshesOption->count() > 0)
        options.exportMeshes = meshes;
    if (viewOption->count() > 0) {
        options.view = view;
        options.volume = true;
    }
    if (screenshotOption->count() > 0) {
        if (screenshot.empty())
            return refuse("--screenshot needs a file name.");
        options.screenshot = screenshot;
    }
    if (std::string wrong = save.Read(options.save); !wrong.empty())
        return refuse(std::move(wrong));
    if (std::string conflict = FindConflict(options); !conflict.empty())
        return refuse(std::move(conflict));
    return line;
}

} // namespace zelviewer
