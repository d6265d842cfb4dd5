#pragma once

#include "model/zel_planes.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace zelviewer {

/// Whole numbers from first to last by steps; first <= last, 1 <= step.
struct Range {
    int first = 0;
    int last = 0;
    int step = 1;

    std::size_t GetCount() const { return static_cast<std::size_t>((last - first) / step) + 1; }
    int GetNumber(std::size_t i) const { return first + static_cast<int>(i) * step; }
    friend bool operator==(const Range&, const Range&) = default;
};

/// Which pictures the program saves without a window. File names are in the file system's encoding.
struct SaveOptions {
    std::optional<std::string> view;                 ///< the windows on one sheet
    std::optional<std::string> gallery;              ///< a sheet of XY slices
    std::optional<std::string> film;                 ///< the views of all frames, one after another
    zel::PerPlane<bool> windows{{true, true, true}}; ///< of a view or film
    int border = 10;                                 ///< pixels between two windows
    std::optional<Range> slices;                     ///< of a gallery; none: all
    std::optional<int> rows, columns;                ///< of a gallery, at most one of them; none: about as many of each
    int spacing = 10;                                ///< pixels between two slices
    std::optional<int> frame;                        ///< the one to save; none: the first, of a film all
    std::optional<Range> frames;                     ///< these in place of one frame; but for a film, each has its file
    int picturesASecond = 10;                        ///< of a film

    bool IsAskedFor() const { return view || gallery || film; }
    /// Where the picture goes, as the user gave it; only if one is asked for.
    const std::string& GetTarget() const { return view ? *view : gallery ? *gallery : *film; }
    /// The option that asks for it, as on the command line.
    const char* GetName() const { return view ? "--save-view" : gallery ? "--save-gallery" : "--save-film"; }
    /// The frames that are saved of a sequence with so many.
    Range GetFrames(std::size_t frameCount) const;
    /// What says that a sequence of this length has not all of them; empty if it has.
    std::string FindMissingFrame(std::size_t frameCount) const;
    /// The name of a frame's file: the target, in which the first run of X becomes the number if there is a file for
    /// each frame.
    std::string GetFileName(int frameNumber) const;
    /// The names of all files that are written.
    std::vector<std::string> GetFileNames() const;
    /// The endings that they may have.
    const std::vector<std::string>& GetEndings() const;
};

/// The options of saving on a command line.
class SaveOptionsParser {
public:
    void AddTo(CLI::App& app);
    /// To be called when the command line was parsed. @return what is wrong with it, in one line; empty if nothing is
    std::string Read(SaveOptions& options) const;

private:
    std::string FindMisplaced() const;
    std::string ReadView(SaveOptions& options) const;
    std::string ReadGallery(SaveOptions& options) const;
    std::string ReadFilm(SaveOptions& options) const;
    std::string ReadWindows(SaveOptions& options) const;
    std::string ReadFrames(SaveOptions& options) const;

    std::string m_view, m_gallery, m_windows, m_border, m_slices, m_rows, m_columns, m_spacing, m_frames, m_film, m_fps;
    struct Known {
        CLI::Option* view = nullptr;
        CLI::Option* gallery = nullptr;
        CLI::Option* windows = nullptr;
        CLI::Option* border = nullptr;
        CLI::Option* slices = nullptr;
        CLI::Option* rows = nullptr;
        CLI::Option* columns = nullptr;
        CLI::Option* spacing = nullptr;
        CLI::Option* frames = nullptr;
        CLI::Option* film = nullptr;
        CLI::Option* fps = nullptr;
    };
    Known m_options;
};

} // namespace zelviewer
