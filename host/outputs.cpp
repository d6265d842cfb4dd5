#include "host/outputs.h"

#include "image/kep.h"

#include <sys/stat.h>

#include <algorithm>
#include <optional>
#include <string_view>

namespace zelviewer {

namespace {

/// Device and inode, which all names of a file share; nothing if there is no such file.
std::optional<std::pair<dev_t, ino_t>> IdentityOf(const std::string& name) {
    struct stat status {};
    if (::stat(name.c_str(), &status) != 0)
        return std::nullopt;
    return std::pair(status.st_dev, status.st_ino);
}

bool HasEnding(std::string_view name, std::string_view ending) {
    const auto same = [](char letter, char small) {
        return letter == small || (letter >= 'A' && letter <= 'Z' && letter - 'A' + 'a' == small);
    };
    return name.size() >= ending.size() &&
           std::equal(name.end() - static_cast<std::ptrdiff_t>(ending.size()), name.end(), ending.begin(), same);
}

/// "a, b or c".
std::string Joined(const std::vector<std::string>& words) {
    std::string joined;
    for (const std::string& word : words) {
        if (!joined.empty())
            joined += &word == &words.back() ? " or " : ", ";
        joined += word;
    }
    return joined;
}

} // namespace

InputFiles::InputFiles(const std::vector<std::string>& names) {
    for (const std::string& name : names) {
        Add(name);
        try {
            if (const std::string data = kep::ReadFileAxes(name.c_str()).frame.dataFile; !data.empty())
                Add(data);
        } catch (const kep::LibException&) {
            continue; // whoever reads the file will say what is wrong
        }
    }
}

void InputFiles::Add(const std::string& name) {
    if (const auto identity = IdentityOf(name))
        m_files.emplace(*identity, name);
    else
        m_missing.insert(name);
}

std::string InputFiles::RefusalOf(const std::string& output, const std::vector<std::string>& endings) const {
    const auto replaces = [&output](const std::string& input) {
        return output + ": It would replace the input '" + input + "'.";
    };
    if (const auto identity = IdentityOf(output))
        if (const auto input = m_files.find(*identity); input != m_files.end())
            return replaces(input->second);
    if (m_missing.contains(output))
        return replaces(output);
    const auto fits = [&output](const std::string& ending) { return HasEnding(output, ending); };
    if (!std::any_of(endings.begin(), endings.end(), fits))
        return output + ": The name must end in " + Joined(endings) + ".";
    return {};
}

} // namespace zelviewer
