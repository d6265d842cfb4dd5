#include "host/saveoptions.h"

#include "model/zel_sequencename.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <charconv>

namespace zelviewer {

namespace {

constexpr int most = 1'000'000; // slices, frames, rows, pixels between pictures

/// Takes a whole number from 0 off the front of a text.
std::optional<int> TakeNumber(std::string_view& text) {
    int number = 0;
    const auto [next, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || text.front() == '-' || number > most)
        return std::nullopt;
    text.remove_prefix(static_cast<std::size_t>(next - text.data()));
    return number;
}

std::optional<int> ParseNumber(std::string_view text, int lowest) {
    const std::optional<int> number = TakeNumber(text);
    return number && text.empty() && *number >= lowest ? number : std::nullopt;
}

/// "A:B:STEP", or "A:B" with step 1.
std::optional<Range> ParseRange(std::string_view text) {
    Range range;
    for (int* const number : {&range.first, &range.last, &range.step}) {
        if (number != &range.first) {
            if (number == &range.step && text.empty())
                break;
            if (!text.starts_with(':'))
                return std::nullopt;
            text.remove_prefix(1);
        }
        const std::optional<int> value = TakeNumber(text);
        if (!value)
            return std::nullopt;
        *number = *value;
    }
    const bool isRight = text.empty() && range.first <= range.last && range.step >= 1;
    return isRight ? std::optional(range) : std::nullopt;
}

std::optional<zel::PerPlane<bool>> ParseWindows(std::string_view text) {
    zel::PerPlane<bool> windows;
    while (true) {
        const std::size_t comma = text.find(',');
        const std::string_view name = text.substr(0, comma);
        if (name == "xy")
            windows[zel::zel_PT_XY] = true;
        else if (name == "xz")
            windows[zel::zel_PT_XZ] = true;
        else if (name == "yz")
            windows[zel::zel_PT_YZ] = true;
        else
            return std::nullopt;
        if (comma == std::string_view::npos)
            return windows;
        text.remove_prefix(comma + 1);
    }
}

bool IsGiven(const CLI::Option* option) {
    return option->count() > 0;
}

/// "--a", "--a or --b", "--a, --b or --c".
std::string JoinedNames(const std::vector<const CLI::Option*>& options) {
    std::string joined;
    for (const CLI::Option* const option : options)
        joined += (joined.empty() ? "" : option == options.back() ? " or " : ", ") + option->get_name();
    return joined;
}

/// Where the file's own name begins behind its folder.
std::size_t StartOfName(const std::string& path) {
    return path.rfind('/') + 1; // 0 without a folder
}

/// The first run of X in a file's own name: place and length; 0 if there is none, or if nothing follows it.
std::pair<std::size_t, std::size_t> FindNumber(const std::string& path) {
    const std::size_t from = path.find('X', StartOfName(path));
    const std::size_t to = from == std::string::npos ? from : path.find_first_not_of('X', from);
    return to == std::string::npos ? std::pair<std::size_t, std::size_t>{} : std::pair{from, to - from};
}

} // namespace

Range SaveOptions::GetFrames(std::size_t frameCount) const {
    if (frames)
        return *frames;
    if (film && !frame)
        return {0, static_cast<int>(frameCount) - 1, 1};
    return {frame.value_or(0), frame.value_or(0), 1};
}

std::string SaveOptions::FindMissingFrame(std::size_t frameCount) const {
    const int last = GetFrames(frameCount).last;
    if (static_cast<std::size_t>(last) < frameCount)
        return {};
    return "--frames: There is no frame " + std::to_string(last) + ", they are numbered from 0 to " +
           std::to_string(frameCount - 1) + ".";
}

std::string SaveOptions::GetFileName(int frameNumber) const {
    const std::string& target = GetTarget();
    if (!frames || film)
        return target;
    const std::size_t start = StartOfName(target);
    return target.substr(0, start) + zel::MakeSequenceName(target.substr(start), frameNumber);
}

std::vector<std::string> SaveOptions::GetFileNames() const {
    if (!frames || film)
        return {GetTarget()};
    std::vector<std::string> names;
    for (std::size_t i = 0; i < frames->GetCount(); ++i)
        names.push_back(GetFileName(frames->GetNumber(i)));
    return names;
}

const std::vector<std::string>& SaveOptions::GetEndings() const {
    static const std::vector<std::string> ofPictures = {".tif", ".tiff", ".ics", ".png"}, ofFilms = {".gif"};
    return film ? ofFilms : ofPictures;
}

void SaveOptionsParser::AddTo(CLI::App& app) {
    const auto add = [&app](const char* name, std::string& text, const char* type, const char* help) {
        return app.add_option(name, text, help)->type_name(type);
    };
    m_options.view = add("--save-view", m_view, "FILE",
                         "Write the windows to a TIFF, ICS or PNG file and exit: the whole\n"
                         "image cut in its middle, without cut pointer, texts and bars.\n"
                         "Needs no display");
    m_options.windows =
        add("--windows", m_windows, "LIST", "With --save-view or --save-film: which of xy,xz,yz;\nwithout it all");
    m_options.border =
        add("--border", m_border, "N", "With --save-view or --save-film: pixels between two\nwindows; 10");
    m_options.gallery = add("--save-gallery", m_gallery, "FILE",
                            "Write the XY slices side by side to a file and exit, with one\n"
                            "pixel per voxel; else as --save-view");
    m_options.slices =
        add("--slices", m_slices, "A:B:STEP", "With --save-gallery: slices A to B, from 0; without it all");
    m_options.rows = add("--rows", m_rows, "N", "With --save-gallery: so many rows");
    m_options.columns = add("--columns", m_columns, "N",
                            "With --save-gallery: so many columns; without either,\nabout as many of each");
    m_options.spacing = add("--spacing", m_spacing, "N", "With --save-gallery: pixels between two slices; 10");
    m_options.film = add("--save-film", m_film, "FILE.gif",
                         "Write the views of all frames as a film and exit; else as\n"
                         "--save-view");
    m_options.fps = add("--fps", m_fps, "N", "With --save-film: frames a second, 1 to 50; 10");
    m_options.frames = add("--frames", m_frames, "A:B:STEP",
                           "With --save-view or --save-gallery: a file for each of the\n"
                           "frames A to B, from 0; XXX in FILE becomes the number.\n"
                           "One number alone saves that frame; without it the first.\n"
                           "With --save-film: these frames only");
}

std::string SaveOptionsParser::Read(SaveOptions& options) const {
    std::string wrong = FindMisplaced();
    if (wrong.empty() && IsGiven(m_options.view))
        wrong = ReadView(options);
    if (wrong.empty() && IsGiven(m_options.gallery))
        wrong = ReadGallery(options);
    if (wrong.empty() && IsGiven(m_options.film))
        wrong = ReadFilm(options);
    if (wrong.empty() && IsGiven(m_options.frames))
        wrong = ReadFrames(options);
    return wrong;
}

/// What was given without its command, or beside something that it excludes.
std::string SaveOptionsParser::FindMisplaced() const {
    const CLI::Option* command = nullptr;
    for (const CLI::Option* const each : {m_options.view, m_options.gallery, m_options.film}) {
        if (IsGiven(each) && command != nullptr)
            return command->get_name() + " and " + each->get_name() + " exclude each other.";
        command = IsGiven(each) ? each : command;
    }
    if (IsGiven(m_options.rows) && IsGiven(m_options.columns))
        return "--rows and --columns exclude each other.";
    struct Belonging {
        std::vector<const CLI::Option*> parameters, commands;
    };
    const Belonging belongings[] = {
        {{m_options.windows, m_options.border}, {m_options.view, m_options.film}},
        {{m_options.slices, m_options.rows, m_options.columns, m_options.spacing}, {m_options.gallery}},
        {{m_options.fps}, {m_options.film}},
        {{m_options.frames}, {m_options.view, m_options.gallery, m_options.film}}};
    for (const auto& [parameters, commands] : belongings)
        for (const CLI::Option* const parameter : parameters)
            if (IsGiven(parameter) && std::find(commands.begin(), commands.end(), command) == commands.end())
                return parameter->get_name() + " goes with " + JoinedNames(commands) + ".";
    return {};
}

std::string SaveOptionsParser::ReadView(SaveOptions& options) const {
    if (m_view.empty())
        return "--save-view needs a file name.";
    options.view = m_view;
    return ReadWindows(options);
}

std::string SaveOptionsParser::ReadFilm(SaveOptions& options) const {
    if (m_film.empty())
        return "--save-film needs a file name.";
    options.film = m_film;
    if (IsGiven(m_options.fps)) {
        constexpr int fastest = 50; // what programs still play as it is meant
        const auto number = ParseNumber(m_fps, 1);
        if (!number || *number > fastest)
            return "--fps " + m_fps + ": use a number from 1 to 50.";
        options.picturesASecond = *number;
    }
    return ReadWindows(options);
}

std::string SaveOptionsParser::ReadWindows(SaveOptions& options) const {
    if (IsGiven(m_options.windows)) {
        const auto windows = ParseWindows(m_windows);
        if (!windows)
            return "--windows " + m_windows + ": use one or more of xy,xz,yz.";
        options.windows = *windows;
    }
    if (IsGiven(m_options.border)) {
        const auto border = ParseNumber(m_border, 0);
        if (!border)
            return "--border " + m_border + ": use a number of pixels from 0.";
        options.border = *border;
    }
    return {};
}

std::string SaveOptionsParser::ReadGallery(SaveOptions& options) const {
    if (m_gallery.empty())
        return "--save-gallery needs a file name.";
    options.gallery = m_gallery;
    if (IsGiven(m_options.slices)) {
        options.slices = ParseRange(m_slices);
        if (!options.slices)
            return "--slices " + m_slices + ": use A:B or A:B:STEP, with A up to B, such as 0:20:2.";
    }
    for (const auto& [option, text, number] : {std::tuple(m_options.rows, &m_rows, &options.rows),
                                               std::tuple(m_options.columns, &m_columns, &options.columns)}) {
        if (!IsGiven(option))
            continue;
        *number = ParseNumber(*text, 1);
        if (!*number)
            return option->get_name() + " " + *text + ": use a number from 1.";
    }
    if (IsGiven(m_options.spacing)) {
        const auto spacing = ParseNumber(m_spacing, 0);
        if (!spacing)
            return "--spacing " + m_spacing + ": use a number of pixels from 0.";
        options.spacing = *spacing;
    }
    return {};
}

std::string SaveOptionsParser::ReadFrames(SaveOptions& options) const {
    options.frame = ParseNumber(m_frames, 0);
    if (options.frame)
        return {};
    options.frames = ParseRange(m_frames);
    if (!options.frames)
        return "--frames " + m_frames + ": use A:B or A:B:STEP, with A up to B, such as 0:9:3, or one number.";
    if (options.film)
        return {};
    // Two frames must not go into one file.
    const auto [at, digits] = FindNumber(options.GetTarget());
    const std::string largest = std::to_string(options.frames->GetNumber(options.frames->GetCount() - 1));
    if (digits < largest.size())
        return options.GetTarget() + ": --frames needs a run of " + std::to_string(largest.size()) +
               " X or more in the file's name, such as viewXXX.tif.";
    return {};
}

} // namespace zelviewer
