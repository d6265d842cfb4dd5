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
/// temporary file; the next save of the same name removes it once its process is gone and it is an hour old.
class KEP_EXPORT AtomicFile {
public:
    /// @param fileName  in the file system's encoding
    /// @throws IOException "SaveImage(): Cannot write the file '<name>': <reason>"
    explicit AtomicFile(std::string fileName);
    ~AtomicFile();
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    /// Appends. @throws IOException
    void Write(const void* bytes, std::size_t count);
    /// Overwrites at a place in what was written, or behind it. @throws IOException
    void WriteAt(std::uint64_t at, const void* bytes, std::size_t count);
    /// Makes the file appear under its name. Nothing may be written after it. @throws IOException
    void Commit();

    /// The open temporary file, for libraries that write by themselves.
    int GetDescriptor() const { return descriptor; }
    const std::string& GetTemporaryName() const { return temporary; }

private:
    void Discard() noexcept;

    std::string name;      // as the caller gave it, for messages
    std::string target;    // with links followed
    std::string temporary;
    std::uint64_t written = 0;
    int descriptor = -1;
};

} // namespace kep
