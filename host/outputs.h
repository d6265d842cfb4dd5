#pragma once

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <sys/types.h>

namespace zelviewer {

/// The files that the program reads, over which nothing may be written. File names are in the file system's encoding.
class InputFiles {
public:
    /// Looks at the files once. Data files that belong to a header count as well; for them each header is read.
    explicit InputFiles(const std::vector<std::string>& names);

    /// Why nothing may be written under a name that the user gave, as "NAME: reason"; empty if it may be. Refused are
    /// inputs: the same files, by device and inode, through whatever links, and not only the same names. So are names
    /// without their ending, which mostly are those of images, with the output's own name forgotten.
    /// @param endings  of which the name must have one, with their dots, in small letters; the name may have capitals
    std::string RefusalOf(const std::string& output, const std::vector<std::string>& endings) const;

private:
    void Add(const std::string& name);

    std::map<std::pair<dev_t, ino_t>, std::string> m_files; // names by device and inode
    std::set<std::string> m_missing;
};

} // namespace zelviewer
