#include "host/settingsfile.h"

#include "host/message.h"
#include "image/kep.h"

#include <wx/log.h>
#include <wx/mstream.h>
#include <wx/stdpaths.h>
#include <wx/utils.h>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

namespace zelviewer {

namespace {

namespace fs = std::filesystem;

/// A file's bytes, and whether they may be replaced.
struct Content {
    std::string text;
    bool isDamaged = false;
    std::string whyNotReplaced; ///< empty if it may be
};

Content ReadContent(const std::string& fileName) {
    constexpr std::uint64_t mostBytes = 4'000'000;
    const kep::PlainFile file(fileName.c_str());
    if (!file.IsOpen())
        return {{}, false, file.GetError() == ENOENT ? "" : std::strerror(file.GetError())};
    if (file.GetLength() > mostBytes)
        return {{}, false, "The file is too large."};
    Content content;
    content.text.resize(static_cast<std::size_t>(file.GetLength()));
    const std::ptrdiff_t count = file.ReadAt(0, content.text.data(), content.text.size());
    if (count < 0)
        return {{}, false, std::strerror(errno)};
    content.text.resize(static_cast<std::size_t>(count));
    content.isDamaged = !IsSettingsText(content.text);
    return content;
}

std::unique_ptr<wxFileConfig> Parse(const std::string& text) {
    const wxLogNull silence; // entries that it cannot use are left out
    wxMemoryInputStream stream(text.data(), text.size());
    auto config = std::make_unique<wxFileConfig>(stream, wxConvUTF8);
    config->SetExpandEnvVars(false); // a file's name may hold a "$"
    return config;
}

std::string TextOf(wxFileConfig& config) {
    wxMemoryOutputStream stream;
    config.Save(stream, wxConvUTF8);
    std::string text(stream.GetLength() > 0 ? static_cast<std::size_t>(stream.GetLength()) : 0, '\0');
    stream.CopyTo(text.data(), text.size());
    return text;
}

void WriteWhole(const std::string& fileName, const std::string& text) {
    kep::AtomicFile file(fileName);
    file.Write(text.data(), text.size());
    file.Commit();
}

/// Keeps a damaged file under a name that is free.
/// @throws kep::IOException
void CopyAside(const std::string& fileName, const std::string& text) {
    std::string copy = fileName + ".damaged";
    for (int i = 2; fs::exists(fs::symlink_status(copy)); ++i)
        copy = fileName + ".damaged" + std::to_string(i);
    WriteWhole(copy, text);
}

/// Keeps other programs from changing a folder's settings, for a second at most: one that hangs must not stop us.
class FolderLock {
public:
    explicit FolderLock(const std::string& folder) {
        do {
            m_folder = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        } while (m_folder < 0 && errno == EINTR);
        constexpr int tries = 200;
        for (int i = 0; m_folder >= 0 && i < tries && flock(m_folder, LOCK_EX | LOCK_NB) != 0; ++i)
            usleep(5000);
    }
    ~FolderLock() {
        if (m_folder >= 0)
            close(m_folder);
    }
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

private:
    int m_folder = -1;
};

} // namespace

bool IsSettingsText(std::string_view text) {
    if (text.find('\0') != std::string_view::npos ||
        (!text.empty() && wxString::FromUTF8(text.data(), text.size()).empty()))
        return false;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        const std::size_t first = line.find_first_not_of(" \t\r");
        if (first == std::string_view::npos)
            continue;
        line.remove_prefix(first);
        const bool isComment = line.front() == '#' || line.front() == ';';
        const bool isGroup = line.front() == '[' && line.find(']') != std::string_view::npos;
        const bool isEntry = line.front() != '=' && line.find('=') != std::string_view::npos;
        if (!isComment && !isGroup && !isEntry)
            return false;
    }
    return true;
}

std::unique_ptr<wxFileConfig> SettingsFile::Read() const {
    const Content content = m_fileName.empty() ? Content{} : ReadContent(m_fileName);
    return Parse(content.isDamaged ? std::string() : content.text);
}

std::string SettingsFile::Change(const std::function<void(wxFileConfig&)>& change) const {
    if (m_fileName.empty())
        return {};
    try {
        const std::string folder = fs::path(m_fileName).parent_path();
        fs::create_directories(folder);
        const FolderLock lock(folder);
        const Content content = ReadContent(m_fileName);
        if (!content.whyNotReplaced.empty())
            return m_fileName + ": " + content.whyNotReplaced;
        const std::unique_ptr<wxFileConfig> config = Parse(content.isDamaged ? std::string() : content.text);
        change(*config);
        const std::string text = TextOf(*config);
        if (text == content.text)
            return {};
        if (content.isDamaged)
            CopyAside(m_fileName, content.text);
        WriteWhole(m_fileName, text);
        return {};
    } catch (const kep::LibException& error) {
        return NameAndReason(m_fileName, error);
    } catch (const fs::filesystem_error& error) {
        return m_fileName + ": " + error.code().message();
    }
}

std::string NameOfUserSettings() {
    wxStandardPaths& paths = wxStandardPaths::Get();
    paths.SetFileLayout(wxStandardPaths::FileLayout_XDG);
    const wxString folder = paths.GetUserConfigDir();
    if (folder.empty() || !fs::path(static_cast<const char*>(folder.fn_str())).is_absolute())
        return {};
    return static_cast<const char*>((folder + "/zelviewer.conf").fn_str());
}

} // namespace zelviewer
