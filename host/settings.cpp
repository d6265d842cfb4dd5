#include "host/settings.h"

#include <algorithm>
#include <filesystem>

namespace zelviewer {

namespace {

/// "/Recent/1/" and so on.
wxString GroupOfRecent(std::size_t number) {
    return wxString::Format("/Recent/%zu/", number);
}

/// @return whether the number is there and fits
bool ReadNumber(const wxConfigBase& config, const char* key, int& number) {
    constexpr long most = 100'000; // pixels; no display is larger
    long value = 0;
    if (!config.Read(key, &value) || value < -most || value > most)
        return false;
    number = static_cast<int>(value);
    return true;
}

bool IsText(const std::string& name) {
    return !wxString::FromUTF8(name).empty();
}

} // namespace

std::vector<OpenedFiles> AddRecent(std::vector<OpenedFiles> recent, const OpenedFiles& files) {
    std::erase(recent, files);
    if (!files.empty())
        recent.insert(recent.begin(), files);
    recent.resize(std::min(recent.size(), mostRecentFiles));
    return recent;
}

std::string DescribeFiles(const OpenedFiles& files) {
    if (files.empty())
        return {};
    std::string text = std::filesystem::path(files.front()).filename();
    if (files.size() > 1)
        text += " and " + std::to_string(files.size() - 1) + " more";
    return text;
}

std::optional<WindowPlace> ReadPlace(const wxConfigBase& config) {
    WindowPlace place;
    config.Read("/Window/Maximized", &place.isMaximized, false);
    wxRect rect;
    const bool hasRect = ReadNumber(config, "/Window/X", rect.x) && ReadNumber(config, "/Window/Y", rect.y) &&
                         ReadNumber(config, "/Window/Width", rect.width) &&
                         ReadNumber(config, "/Window/Height", rect.height) && rect.width > 0 && rect.height > 0;
    if (hasRect)
        place.rect = rect;
    if (!hasRect && !place.isMaximized)
        return std::nullopt;
    return place;
}

void WritePlace(wxConfigBase& config, const WindowPlace& place) {
    config.Write("/Window/Maximized", place.isMaximized);
    if (place.isMaximized)
        return;
    config.Write("/Window/X", place.rect.x);
    config.Write("/Window/Y", place.rect.y);
    config.Write("/Window/Width", place.rect.width);
    config.Write("/Window/Height", place.rect.height);
}

std::vector<OpenedFiles> ReadRecent(const wxConfigBase& config) {
    std::vector<OpenedFiles> recent;
    for (std::size_t i = 1; i <= mostRecentFiles; ++i) {
        OpenedFiles files;
        wxString name;
        for (std::size_t f = 1; config.Read(GroupOfRecent(i) << "File" << f, &name) && !name.empty(); ++f)
            files.push_back(name.utf8_string());
        if (!files.empty())
            recent.push_back(std::move(files));
    }
    return recent;
}

void WriteRecent(wxConfigBase& config, const std::vector<OpenedFiles>& recent) {
    config.DeleteGroup("/Recent");
    std::size_t number = 0;
    for (const OpenedFiles& files : recent) {
        if (!std::all_of(files.begin(), files.end(), &IsText))
            continue;
        ++number;
        for (std::size_t f = 0; f < files.size(); ++f)
            config.Write(GroupOfRecent(number) << "File" << f + 1, wxString::FromUTF8(files[f]));
    }
}

std::string FolderOf(const std::vector<OpenedFiles>& recent) {
    return recent.empty() ? std::string() : std::filesystem::path(recent.front().front()).parent_path().string();
}

} // namespace zelviewer
