#include "host/fileselection.h"

#include "host/message.h"
#include "model/zel_filenames.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <system_error>

namespace zelviewer {

namespace {

namespace fs = std::filesystem;

/// What stands in a folder and is no folder itself, without the folder's name.
/// @param error  why it can't be read; none: it can
std::vector<std::string> FilesIn(const fs::path& folder, std::error_code& error) {
    std::vector<std::string> names;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        std::error_code unknown; // of a link to nowhere, which is no folder
        if (!entry->is_directory(unknown))
            names.push_back(entry->path().filename().string());
    }
    return names;
}

/// @param folder  as the user wrote it; empty: none was written
std::vector<std::string> WithFolder(const fs::path& folder, const std::vector<std::string>& names) {
    std::vector<std::string> paths;
    paths.reserve(names.size());
    for (const std::string& name : names)
        paths.push_back((folder / name).string());
    return paths;
}

} // namespace

bool IsImageName(const std::string& name) {
    const fs::path file = fs::path(name).filename();
    std::string ending = file.extension().string();
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    const bool isHidden = file.string().starts_with('.');
    return !isHidden && (ending == ".tif" || ending == ".tiff" || ending == ".ics");
}

std::vector<std::string> ImagesIn(const std::string& folder) {
    std::error_code error;
    std::vector<std::string> names = FilesIn(folder, error);
    if (error)
        throw Failure(folder + ": The folder cannot be read: " + error.message() + ".");
    std::erase_if(names, [](const std::string& name) { return !IsImageName(name); });
    if (names.empty())
        throw Failure(folder + ": There are no images (.tif, .tiff, .ics) in this folder.");
    zel::SortFileNames(names);
    return WithFolder(folder, names);
}

std::vector<std::string> ExpandFolders(const std::vector<std::string>& names) {
    std::vector<std::string> files;
    for (const std::string& name : names) {
        std::error_code missing;
        if (!fs::is_directory(name, missing)) {
            files.push_back(name);
            continue;
        }
        const std::vector<std::string> images = ImagesIn(name);
        files.insert(files.end(), images.begin(), images.end());
    }
    return files;
}

std::vector<std::string> SequenceOf(const std::string& file) {
    const fs::path path(file);
    const fs::path folder = path.parent_path();
    std::error_code error;
    const std::vector<std::string> names = FilesIn(folder.empty() ? fs::path(".") : folder, error);
    const std::vector<std::string> sequence = zel::FindSequence(path.filename().string(), names);
    if (error || sequence.size() < 2)
        return {file};
    return WithFolder(folder, sequence);
}

std::vector<std::string> FilesMeant(const std::vector<std::string>& names, bool sequence) {
    return ExpandFolders(sequence && names.size() == 1 ? SequenceOf(names.front()) : names);
}

std::vector<std::string> SequenceToOffer(const std::vector<std::string>& names) {
    std::error_code missing;
    if (names.size() != 1 || fs::is_directory(names.front(), missing))
        return {};
    std::vector<std::string> sequence = SequenceOf(names.front());
    return sequence.size() > 1 ? sequence : std::vector<std::string>();
}

std::string SequenceQuestion(std::size_t count) {
    return "Open " + std::to_string(count) + " files as a sequence?";
}

} // namespace zelviewer
