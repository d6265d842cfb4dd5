#include "host/outputs.h"

#include "image/kep.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <initializer_list>
#include <string_view>

namespace zelviewer {

namespace {

/// Device and inode, which all names of a file share.
std::pair<dev_t, ino_t> IdentityOf(const struct stat& status) {
    return {status.st_dev, status.st_ino};
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

/// The first bytes of a file.
/// @param error  gets the errno of what failed; else it stays
std::string ReadStart(const std::string& name, int& error) {
    constexpr std::size_t longest = 32;
    std::string start(longest, '\0');
    const kep::PlainFile file(name.c_str());
    const std::ptrdiff_t count = file.IsOpen() ? file.ReadAt(0, start.data(), longest) : -1;
    if (count < 0)
        error = file.IsOpen() ? errno : file.GetError();
    start.resize(static_cast<std::size_t>(std::max<std::ptrdiff_t>(count, 0)));
    return start;
}

/// Whether a file is of the kind that its ending says, by how it begins.
bool IsOfKind(const std::string& start, const std::string& ending) {
    using std::string_view_literals::operator""sv;
    const auto begins = [&start](std::initializer_list<std::string_view> marks) {
        return std::any_of(marks.begin(), marks.end(), [&](std::string_view mark) { return start.starts_with(mark); });
    };
    if (ending == ".png")
        return begins({"\x89PNG\r\n\x1A\n"sv});
    if (ending == ".gif")
        return begins({"GIF87a"sv, "GIF89a"sv});
    if (ending == ".ply")
        return begins({"ply\n"sv, "ply\r"sv});
    if (ending == ".ics") // behind its two separators
        return start.find("ics_version") != std::string::npos;
    return begins({"II*\0"sv, "MM\0*"sv, "II+\0"sv, "MM\0+"sv}); // TIFF and BigTIFF
}

/// Why a file that is there is not replaced by one of this ending, by how it begins; empty if it may be.
std::string RefusalOfContent(const std::string& name, const std::string& ending) {
    int error = 0;
    const std::string start = ReadStart(name, error);
    if (error != 0)
        return name + ": It is there already and cannot be read: " + std::strerror(error);
    if (!IsOfKind(start, ending))
        return name + ": It is there already and not a " + ending + " file; it is not replaced.";
    return {};
}

} // namespace

OutputRules::OutputRules(const std::vector<std::string>& inputs, bool replaces) : m_replaces(replaces) {
    for (const std::string& name : inputs) {
        Add(name);
        try {
            if (const std::string data = kep::ReadFileAxes(name.c_str()).frame.dataFile; !data.empty())
                Add(data);
        } catch (const kep::LibException&) {
            continue; // whoever reads the file will say what is wrong
        }
    }
}

void OutputRules::Add(const std::string& name) {
    struct stat status {};
    if (::stat(name.c_str(), &status) == 0)
        m_files.emplace(IdentityOf(status), name);
    else
        m_missing.insert(name);
}

std::string OutputRules::RefusalOf(const std::string& output, const std::vector<std::string>& endings) const {
    const auto replaces = [&output](const std::string& input) {
        return output + ": It would replace the input '" + input + "'.";
    };
    struct stat status {};
    const int error = ::stat(output.c_str(), &status) == 0 ? 0 : errno;
    if (error == 0)
        if (const auto input = m_files.find(IdentityOf(status)); input != m_files.end())
            return replaces(input->second);
    if (m_missing.contains(output))
        return replaces(output);
    const auto fits = [&output](const std::string& ending) { return HasEnding(output, ending); };
    const auto ending = std::find_if(endings.begin(), endings.end(), fits);
    if (ending == endings.end())
        return output + ": The name must end in " + Joined(endings) + ".";
    if (error == ENOENT || error == ENOTDIR)
        return {};
    if (error != 0) // what is there may be an input, or missed by somebody
        return output + ": Cannot write the file: " + std::strerror(error);
    if (!S_ISREG(status.st_mode))
        return output + ": It is there already and not a plain file.";
    if (status.st_size > 0)
        if (std::string refusal = RefusalOfContent(output, *ending); !refusal.empty())
            return refusal;
    return m_replaces ? std::string() : output + ": It is there already; --force replaces it.";
}

} // namespace zelviewer
