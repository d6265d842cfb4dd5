#pragma once

#include "core/kepcore/kep_export.h"

#include <cstddef>
#include <cstdint>

namespace kep {

/// A file opened for reading. Opening never waits, and takes plain files only: a pipe, a device or a folder is not
/// opened.
class KEP_EXPORT PlainFile {
public:
    /// @param fileName  in the file system's encoding; null names no file
    explicit PlainFile(const char* fileName) noexcept;
    ~PlainFile();
    PlainFile(const PlainFile&) = delete;
    PlainFile& operator=(const PlainFile&) = delete;

    bool IsOpen() const { return descriptor >= 0; } ///< GetError tells why not
    /// Why it is not open, as an errno: ENOENT, EACCES, ...; EISDIR for a folder, EINVAL for what else is no plain
    /// file. 0 if it is open.
    int GetError() const { return error; }
    /// Bytes that the file had when it was opened; 0 if it was not.
    std::uint64_t GetLength() const { return length; }

    /// Whether the other one is the same file, by whatever name. Both are open.
    bool IsSame(const PlainFile& other) const { return device == other.device && inode == other.inode; }

    /// Reads up to `bytes` bytes, below 2^63, at a place.
    /// @return how many there were, fewer only at the end of the file; or -1 when the system fails to read, and errno
    ///         tells why
    std::ptrdiff_t ReadAt(std::uint64_t at, void* to, std::size_t bytes) const noexcept;

private:
    int descriptor = -1;
    int error = 0;
    std::uint64_t length = 0;
    std::uint64_t device = 0; ///< which, together with the inode, no two files share
    std::uint64_t inode = 0;
};

} // namespace kep
