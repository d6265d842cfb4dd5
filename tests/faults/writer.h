#pragma once

// What the tests of this folder know of each way in which the project writes files.

#include <algorithm>
#include <cstddef>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace zel::test {

/// One way to write a file, or several with names of their own.
struct Writer {
    /// Saves. @return what the user is told if it failed; empty if all is saved
    using Save = std::function<std::string(const std::string& path)>;

    std::string name;   ///< of letters and digits, no two the same
    std::string source; ///< which holds the AtomicFile
    std::string ending; ///< of the path that it is given, a file that it writes
    /// Makes what is saved, and returns how. What is made lives as long as the result.
    std::function<Save()> prepare;
    /// Whether a file is there and holds what is saved, read by the way in which users read it.
    std::function<bool(const std::string& path)> isRead;
    /// What may stand in the file before and be replaced.
    std::string old = "what stood there before";
    /// More files that it writes: endings in place of the one above.
    std::vector<std::string> moreEndings = {};
    /// What it tells ends with the reason that the system gives; false where the contract is to tell no more than that
    /// it failed.
    bool tellsWhy = true;
    /// Folders that are missing are made.
    bool makesFolders = false;
    /// The toolkit formats texts on the way, which ends a program that has no memory even for them.
    bool formatsTexts = false;
    /// The toolkit makes what is written, which loses memory where more of it is refused.
    bool toolkitWrites = false;

    std::size_t GetLongestEnding() const {
        std::size_t longest = ending.size();
        for (const std::string& more : moreEndings)
            longest = std::max(longest, more.size());
        return longest;
    }
};

inline std::ostream& operator<<(std::ostream& out, const Writer& writer) {
    return out << writer.name;
}

/// The table of the program.
const std::vector<Writer>& AllWriters();

} // namespace zel::test
