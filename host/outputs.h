#pragma once

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <sys/types.h>

namespace zelviewer {

/// What the program may write: nothing over a file that it reads, and nothing over one that somebody may miss. File
/// names are in the file system's encoding.
class OutputRules {
public:
    /// Looks at the inputs once. Data files that belong to a header count as well; for them each header is read.
    /// @param replaces  files of the kind that is written may be replaced
    OutputRules(const std::vector<std::string>& inputs, bool replaces);

    /// Why nothing may be written under a name that the user gave, as "NAME: reason"; empty if it may be. Refused are
    /// - inputs: the same files, by device and inode, through whatever links, and not only the same names;
    /// - names without their ending, which mostly are those of images, with the output's own name forgotten;
    /// - names of which the system does not tell what is there;
    /// - files that are there, unless they may be replaced, and are by their content what the ending says, or empty.
    /// @param endings  of which the name must have one, with their dots, in small letters; the name may have capitals.
    ///                 Of .gif, .ics, .ply, .png, .tif and .tiff
    std::string RefusalOf(const std::string& output, const std::vector<std::string>& endings) const;

private:
    void Add(const std::string& name);

    bool m_replaces;
    std::map<std::pair<dev_t, ino_t>, std::string> m_files; // names by device and inode
    std::set<std::string> m_missing;
};

} // namespace zelviewer
