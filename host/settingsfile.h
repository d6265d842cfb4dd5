#pragma once

#include <wx/fileconf.h>

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace zelviewer {

/// The file in which the program keeps its settings from run to run. It never stops the program: a file that cannot be
/// read gives no settings and is left as it is, and one that is damaged is copied aside before it is replaced.
///
/// Programs that run at the same time keep one another's entries: the file is read again for each change, and other
/// changes wait meanwhile.
class SettingsFile {
public:
    /// @param fileName  in the file system's encoding; empty: nothing is read, nothing is kept
    explicit SettingsFile(std::string fileName = {}) : m_fileName(std::move(fileName)) {}

    /// What the file holds; nothing if it cannot be read.
    std::unique_ptr<wxFileConfig> Read() const;
    /// Has `change` write its entries into what the file holds, and saves it, if that changes anything.
    /// @return in one sentence why the file could not be saved; empty if all is well
    std::string Change(const std::function<void(wxFileConfig&)>& change) const;

private:
    std::string m_fileName;
};

/// "zelviewer.conf" in the user's folder of configurations, in the file system's encoding; empty without such a folder.
std::string NameOfUserSettings();

/// Whether a text is made of lines as they stand in such a file: "[group]", "key=value", comments and empty ones, in
/// UTF-8.
bool IsSettingsText(std::string_view text);

} // namespace zelviewer
