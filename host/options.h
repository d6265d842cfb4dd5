#pragma once

#include "host/displaytype.h"
#include "host/saveoptions.h"
#include "image/kep.h"
#include "model/zel_complexparts.h"

#include <optional>
#include <string>
#include <vector>

namespace zelviewer {

/// How voxel values are spread over the screen's levels at the start. Named as on the command line, in the order of the
/// menu.
enum class Stretch { None, Linear, Percentil, Equalize };

/// What the command line asks for. File names are in the file system's encoding.
struct Options {
    std::vector<std::string> files;    ///< one per time point; none: synthetic cells
    bool sequence = false;             ///< the one file stands for all that its numbers lead to
    std::optional<DisplayType> type;   ///< voxel type to read as; none: the files' own
    std::vector<std::size_t> channels; ///< from 0: one alone, or two or three as colours; none: as they come
    bool binary = false;               ///< the files are masks
    std::optional<kep::Vector3d<float>> resolution; ///< pixels per micron, for what the files don't say
    bool voxels = false;                            ///< one pixel a voxel instead of true proportions
    std::optional<Stretch> stretch;                 ///< none: as suits the image (FirstStretch)
    std::optional<zel::ComplexMode> part;           ///< of complex images; none: the first that varies
    std::vector<std::string> labels;                ///< label files, one per time point
    bool components = false;                        ///< label connected components instead of taking labels as stored
    std::optional<std::string> exportMeshes;        ///< write the labels' meshes under this prefix and leave
    bool closeMeshes = false;                       ///< meshes end at the faces of the image
    bool volume = false;                            ///< the volume window opens as well
    std::optional<std::string> view;                ///< file with the view that the volume window opens with
    std::optional<std::string> screenshot;          ///< write the picture here and leave
    SaveOptions save;                               ///< write pictures without a window and leave
    bool force = false;                             ///< files of the same kind are replaced
    bool info = false;                              ///< print what the files are and leave
    bool json = false;                              ///< the same as JSON
    bool verbose = false;                           ///< the library's messages go to standard error

    /// Nobody is there to answer a dialog: the program leaves when its pictures are written.
    bool LeavesByItself() const { return screenshot || save.IsAskedFor(); }
};

/// What to do after reading the command line.
enum class Command {
    Run,     ///< follow the options
    Help,    ///< print the text
    Version, ///< print the versions
    Refuse   ///< print the text, which is one line, as an error
};

struct CommandLine {
    Command command = Command::Run;
    Options options;
    std::string text;
};

/// What among the options does not suit images of this type; empty if all does.
std::string FindConflict(const Options& options, DisplayType type);

/// Reads a command line. Never throws for what a user types.
/// @param arguments  without the program's own name
CommandLine ParseCommandLine(std::vector<std::string> arguments);

} // namespace zelviewer
