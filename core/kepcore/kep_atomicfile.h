#pragma once

#include "core/kepcore/kep_export.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace kep {

/// A file that appears under its name only when it is whole. Everything that the library saves goes through here.
///
/// The bytes go to a temporary file beside the target (a symbolic link is followed first), with the target's
/// permissions. Commit flushes it to the disk and renames it over the target in one step. Without a Commit, or when
/// anything fails, the temporary file is removed and the old target stays as it was. A save that was killed leaves a
/// temporary file, whose name tells the machine and the process; the next save of the same name removes it, or, where
/// it is another machine's on a shared disk, the first one an hour later.
class KEP_EXPORT AtomicFile {
public:
    /// @param fileName  in the file system's encoding
    /// @throws IOException "SaveImage(): Cannot write the file '<name>': <reason>"; std::bad_alloc. So do the others.
    explicit AtomicFile(std::string fileName);
    ~AtomicFile();
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    /// Appends.
    void Write(const void* bytes, std::size_t count);
    /// Overwrites at a place in what was written, or behind it.
    void WriteAt(std::uint64_t at, const void* bytes, std::size_t count);
    /// Reads back up to `bytes` bytes. @return how many there were
    std::size_t ReadAt(std::uint64_t at, void* to, std::size_t bytes) const;
    /// Makes the file appear under its name. Nothing may be written after it. The file is there if and only if nothing
    /// is thrown.
    void Commit();

    const std::string& GetTemporaryName() const { return temporary; } ///< beside the target; gone after Commit

private:
    void Discard() noexcept;

    std::string name;   // as the caller gave it, for messages
    std::string target; // with links followed
    std::string temporary;
    std::uint64_t written = 0;
    int descriptor = -1;
};

} // namespace kep
