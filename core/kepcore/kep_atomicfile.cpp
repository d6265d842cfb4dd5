#include "core/kepcore/kep_atomicfile.h"

#include "core/kepcore/file/kep_path.h"
#include "core/kepcore/file/kep_refusal.h"
#include "core/kepcore/file/kep_systemcalls.h"
#include "core/kepcore/file/kep_systemerror.h"
#include "core/kepcore/file/kep_temporaryname.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <ctime>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace kep {

namespace {

using detail::SystemReason;
using detail::ThrowCannotWrite;
using detail::Uninterrupted;

constexpr int mostLinks = 40; // as many as the system itself follows

struct PathParts {
    std::string folder; ///< with its slash at the end, or empty
    std::string stem;
    std::string suffix; ///< with its dot, or empty

    std::string GetFolder() const { return folder.empty() ? "." : folder; }
};

PathParts SplitPath(const std::string& path) {
    PathParts parts;
    parts.folder = detail::GetFolder(path);
    const std::size_t first = parts.folder.size();
    std::size_t dot = path.rfind('.');
    if (dot == std::string::npos || dot <= first) // a leading dot hides the file and starts no suffix
        dot = path.size();
    parts.stem = path.substr(first, dot - first);
    parts.suffix = path.substr(dot);
    return parts;
}

/// Removes what killed saves of the same target left.
void RemoveLeftovers(const PathParts& parts, const std::string& machine) {
    struct Closer {
        void operator()(DIR* folder) const { ::closedir(folder); }
    };
    const std::unique_ptr<DIR, Closer> folder(::opendir(parts.GetFolder().c_str()));
    if (!folder)
        return;
    const std::time_t now = std::time(nullptr);
    while (const dirent* entry = ::readdir(folder.get())) {
        const std::optional<detail::Writer> writer = detail::ReadTemporaryName(entry->d_name, parts.stem, parts.suffix);
        if (!writer)
            continue;
        struct stat status {};
        const int at = ::dirfd(folder.get());
        if (::fstatat(at, entry->d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISREG(status.st_mode) &&
            detail::IsLeftover(*writer, now - status.st_mtime, machine))
            ::unlinkat(at, entry->d_name, 0);
    }
}

/// Follows links until a name that is none, which need not exist.
/// @throws IOException when links go round in a circle, or the system does not tell whether it is one
std::string FollowLinks(const std::string& name) {
    std::string path = name;
    for (int links = 0; links < mostLinks; ++links) {
        std::array<char, PATH_MAX> to{};
        const ssize_t length = ::readlink(path.c_str(), to.data(), to.size());
        if (length < 0) {
            if (errno != EINVAL && errno != ENOENT) // no link, or nothing at all
                ThrowCannotWrite(name, SystemReason(errno));
            return path;
        }
        std::string next(to.data(), static_cast<std::size_t>(length));
        path = next.starts_with('/') ? next : detail::GetFolder(path).append(next);
    }
    ThrowCannotWrite(name, SystemReason(ELOOP));
}

} // namespace

AtomicFile::AtomicFile(std::string fileName) : name(std::move(fileName)) {
    target = FollowLinks(name);
    const PathParts parts = SplitPath(target);
    if (parts.stem.empty())
        ThrowCannotWrite(name, "it names no file");

    struct stat old {};
    const bool exists = ::stat(target.c_str(), &old) == 0;
    if (!exists && errno != ENOENT) // a rename would go over whatever is there
        ThrowCannotWrite(name, SystemReason(errno));
    if (exists && !S_ISREG(old.st_mode))
        ThrowCannotWrite(name, S_ISDIR(old.st_mode) ? "it is a folder" : "it is not a plain file");
    // A rename would go over a file that its owner has protected.
    if (exists && ::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0)
        ThrowCannotWrite(name, SystemReason(errno));

    const detail::Writer writer = detail::GetThisWriter();
    RemoveLeftovers(parts, writer.machine);
    static std::atomic<unsigned> counter{0};
    do {
        temporary = parts.folder + detail::MakeTemporaryName(parts.stem, parts.suffix, writer, counter++);
        descriptor =
            Uninterrupted([this] { return ::open(temporary.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666); });
    } while (descriptor < 0 && errno == EEXIST);
    if (descriptor < 0) {
        const int error = errno;
        temporary.clear();
        ThrowCannotWrite(name, "no file can be made in the folder '" + parts.GetFolder() + "': " + SystemReason(error));
    }
    if (exists) {
        // The owner stays where the system lets us, as for root; else the file becomes the user's own.
        const bool ownerKept = ::fchown(descriptor, old.st_uid, old.st_gid) == 0;
        const mode_t mode = old.st_mode & (ownerKept ? 07777U : 0777U);
        if (::fchmod(descriptor, mode) != 0) {
            const int error = errno;
            Discard();
            ThrowCannotWrite(name, SystemReason(error));
        }
    }
}

AtomicFile::~AtomicFile() {
    Discard();
}

void AtomicFile::Write(const void* bytes, std::size_t count) {
    WriteAt(written, bytes, count);
}

void AtomicFile::WriteAt(std::uint64_t at, const void* bytes, std::size_t count) {
    const char* next = static_cast<const char*>(bytes);
    std::size_t left = count;
    while (left > 0) {
        const ssize_t done = Uninterrupted([&] {
            return ::pwrite(descriptor, next, std::min(left, detail::largestTransfer), static_cast<off_t>(at));
        });
        if (done <= 0)
            ThrowCannotWrite(name, SystemReason(done < 0 ? errno : ENOSPC));
        next += done;
        at += static_cast<std::uint64_t>(done);
        left -= static_cast<std::size_t>(done);
    }
    written = std::max(written, at);
}

std::size_t AtomicFile::ReadAt(std::uint64_t at, void* to, std::size_t bytes) const {
    const ssize_t got = detail::ReadFully(descriptor, at, to, bytes);
    if (got < 0)
        ThrowCannotWrite(name, "reading it back failed: " + SystemReason(errno));
    return static_cast<std::size_t>(got);
}

void AtomicFile::Commit() {
    const auto fail = [this](int error) {
        Discard();
        ThrowCannotWrite(name, SystemReason(error));
    };
    // Whatever takes memory comes before the rename: behind it nothing may fail any more.
    const std::string folderName = SplitPath(target).GetFolder();
    if (Uninterrupted([this] { return ::fsync(descriptor); }) != 0)
        fail(errno);
    // The number is free after close whatever it returns; an interruption says nothing of the data, which are flushed.
    if (::close(std::exchange(descriptor, -1)) != 0 && errno != EINTR)
        fail(errno);
    if (::rename(temporary.c_str(), target.c_str()) != 0)
        fail(errno);
    temporary.clear();

    // So that the new name survives a power cut. The file is whole and in its place already, and some file systems
    // have no flush for folders: nothing is to be done when it fails.
    const int folder = Uninterrupted([&] { return ::open(folderName.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
    if (folder >= 0) {
        Uninterrupted([folder] { return ::fsync(folder); });
        ::close(folder);
    }
}

void AtomicFile::Discard() noexcept {
    if (descriptor >= 0)
        ::close(std::exchange(descriptor, -1));
    if (!temporary.empty())
        ::unlink(temporary.c_str());
    temporary.clear();
}

} // namespace kep
