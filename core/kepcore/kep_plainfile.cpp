#include "core/kepcore/kep_plainfile.h"

#include "core/kepcore/file/kep_systemcalls.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace kep {

PlainFile::PlainFile(const char* fileName) noexcept {
    if (fileName == nullptr) {
        error = ENOENT;
        return;
    }
    // Without waiting, as a pipe would never open; the flag means nothing for plain files.
    descriptor = detail::Uninterrupted([&] { return ::open(fileName, O_RDONLY | O_CLOEXEC | O_NONBLOCK); });
    if (descriptor < 0) {
        error = errno;
        return;
    }
    struct stat status {};
    if (::fstat(descriptor, &status) != 0) {
        error = errno;
    } else if (S_ISREG(status.st_mode)) {
        length = static_cast<std::uint64_t>(status.st_size);
        device = status.st_dev;
        inode = status.st_ino;
    } else {
        error = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
    }
    if (error != 0) {
        ::close(descriptor);
        descriptor = -1;
    }
}

PlainFile::~PlainFile() {
    if (descriptor >= 0)
        ::close(descriptor);
}

std::ptrdiff_t PlainFile::ReadAt(std::uint64_t at, void* to, std::size_t bytes) const noexcept {
    return detail::ReadFully(descriptor, at, to, bytes);
}

} // namespace kep
