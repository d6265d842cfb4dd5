#include "tests/support/failing_calls.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr long none = -1;

std::atomic<long> callsUntilFailure{none};
std::atomic<int> failure{0};
std::atomic<bool> failsOnwards{false};
std::atomic<const char*> failedCall{nullptr};
std::atomic<long> callsUntilAction{none};
std::atomic<bool> hasHappened{false};
std::function<void()> actionAtCall;
std::atomic<bool> interrupts{false};
std::atomic<std::size_t> interrupted{0};
thread_local bool isRepeated = false; // the call before was interrupted, and this is the same one again

void ActIfItIsTime() {
    if (callsUntilAction.load() == none || callsUntilAction.fetch_sub(1) != 0)
        return;
    callsUntilAction = none;
    hasHappened = true;
    actionAtCall();
}

bool Fails(const char* name) {
    ActIfItIsTime();
    long left = callsUntilFailure.load();
    while (left > 0)
        if (callsUntilFailure.compare_exchange_weak(left, left - 1))
            return false;
    if (left == none)
        return false;
    if (!failsOnwards)
        callsUntilFailure = none;
    const char* noCall = nullptr;
    failedCall.compare_exchange_strong(noCall, name);
    errno = failure;
    return true;
}

/// The same for calls that signals interrupt.
bool FailsOrIsInterrupted(const char* name) {
    if (Fails(name))
        return true;
    if (!interrupts)
        return false;
    isRepeated = !isRepeated;
    if (!isRepeated)
        return false;
    ++interrupted;
    errno = EINTR;
    return true;
}

bool IsIdle() {
    return callsUntilFailure.load() == none && callsUntilAction.load() == none && !interrupts;
}

mode_t KindOf(int descriptor) {
    struct stat status {};
    const int error = errno;
    const bool isKnown = ::syscall(SYS_newfstatat, descriptor, "", &status, AT_EMPTY_PATH) == 0;
    errno = error;
    return isKnown ? status.st_mode & S_IFMT : 0;
}

/// What happens to a call on an open file; on pipes, sockets and devices nothing.
bool FailsOn(int descriptor, const char* name, const char* nameForFolder) {
    if (IsIdle())
        return false;
    const mode_t kind = KindOf(descriptor);
    if (kind != S_IFREG && kind != S_IFDIR)
        return false;
    return FailsOrIsInterrupted(kind == S_IFDIR ? nameForFolder : name);
}

std::size_t PartOf(int descriptor, std::size_t bytes) {
    return interrupts && KindOf(descriptor) == S_IFREG ? (bytes + 1) / 2 : bytes;
}

int Open(int folder, const char* name, int flags, mode_t mode) {
    const bool isFolder = (flags & O_DIRECTORY) != 0;
    const bool writes = (flags & O_ACCMODE) != O_RDONLY;
    if (FailsOrIsInterrupted(isFolder ? "open folder" : writes ? "open to write" : "open"))
        return -1;
    return static_cast<int>(::syscall(SYS_openat, folder, name, flags, mode));
}

ssize_t ReadAt(int descriptor, void* to, std::size_t bytes, off_t at) {
    return FailsOn(descriptor, "pread", "pread folder")
               ? -1
               : ::syscall(SYS_pread64, descriptor, to, PartOf(descriptor, bytes), at);
}

ssize_t WriteAt(int descriptor, const void* from, std::size_t bytes, off_t at) {
    return FailsOn(descriptor, "pwrite", "pwrite folder")
               ? -1
               : ::syscall(SYS_pwrite64, descriptor, from, PartOf(descriptor, bytes), at);
}

int Look(int folder, const char* name, void* status, int flags, const char* call) {
    return Fails(call) ? -1 : static_cast<int>(::syscall(SYS_newfstatat, folder, name, status, flags));
}

mode_t ModeOf(int flags, std::va_list rest) {
    return (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
}

} // namespace

FailingCall::FailingCall(std::size_t number, int error, Failing lasting) {
    failedCall = nullptr;
    failure = error;
    failsOnwards = lasting == Failing::FromThenOn;
    callsUntilFailure = static_cast<long>(number);
}

FailingCall::~FailingCall() {
    callsUntilFailure = none;
}

bool FailingCall::HasFailed() const {
    return failedCall != nullptr;
}

std::string FailingCall::GetName() const {
    const char* const name = failedCall;
    return name != nullptr ? name : "";
}

ActionAtCall::ActionAtCall(std::size_t number, std::function<void()> action) {
    hasHappened = false;
    actionAtCall = std::move(action);
    callsUntilAction = static_cast<long>(number);
}

ActionAtCall::~ActionAtCall() {
    callsUntilAction = none;
    actionAtCall = nullptr;
}

bool ActionAtCall::HasHappened() const {
    return hasHappened;
}

InterruptedCalls::InterruptedCalls() {
    interrupted = 0;
    isRepeated = false;
    interrupts = true;
}

InterruptedCalls::~InterruptedCalls() {
    interrupts = false;
}

std::size_t InterruptedCalls::GetCount() const {
    return interrupted;
}

#define ZEL_SYSTEM_CALL extern "C" __attribute__((visibility("default")))

ZEL_SYSTEM_CALL int open(const char* name, int flags, ...) {
    std::va_list rest;
    va_start(rest, flags);
    const mode_t mode = ModeOf(flags, rest);
    va_end(rest);
    return Open(AT_FDCWD, name, flags, mode);
}
ZEL_SYSTEM_CALL int open64(const char* name, int flags, ...) {
    std::va_list rest;
    va_start(rest, flags);
    const mode_t mode = ModeOf(flags, rest);
    va_end(rest);
    return Open(AT_FDCWD, name, flags, mode);
}
ZEL_SYSTEM_CALL DIR* opendir(const char* name) {
    if (Fails("opendir"))
        return nullptr;
    static const auto real = reinterpret_cast<DIR* (*)(const char*)>(::dlsym(RTLD_NEXT, "opendir"));
    return real(name);
}
ZEL_SYSTEM_CALL int stat(const char* name, struct stat* status) noexcept {
    return Look(AT_FDCWD, name, status, 0, "stat");
}
ZEL_SYSTEM_CALL int stat64(const char* name, struct stat64* status) noexcept {
    return Look(AT_FDCWD, name, status, 0, "stat");
}
ZEL_SYSTEM_CALL int lstat(const char* name, struct stat* status) noexcept {
    return Look(AT_FDCWD, name, status, AT_SYMLINK_NOFOLLOW, "lstat");
}
ZEL_SYSTEM_CALL int lstat64(const char* name, struct stat64* status) noexcept {
    return Look(AT_FDCWD, name, status, AT_SYMLINK_NOFOLLOW, "lstat");
}
ZEL_SYSTEM_CALL int fstat(int descriptor, struct stat* status) noexcept {
    return Look(descriptor, "", status, AT_EMPTY_PATH, "fstat");
}
ZEL_SYSTEM_CALL int fstat64(int descriptor, struct stat64* status) noexcept {
    return Look(descriptor, "", status, AT_EMPTY_PATH, "fstat");
}
ZEL_SYSTEM_CALL int fstatat(int folder, const char* name, struct stat* status, int flags) noexcept {
    return Look(folder, name, status, flags, "fstatat");
}
ZEL_SYSTEM_CALL int fstatat64(int folder, const char* name, struct stat64* status, int flags) noexcept {
    return Look(folder, name, status, flags, "fstatat");
}
ZEL_SYSTEM_CALL ssize_t readlink(const char* name, char* to, std::size_t bytes) noexcept {
    return Fails("readlink") ? -1 : ::syscall(SYS_readlinkat, AT_FDCWD, name, to, bytes);
}
ZEL_SYSTEM_CALL int faccessat(int folder, const char* name, int mode, int flags) noexcept {
    if (Fails("faccessat"))
        return -1;
    static const auto real = reinterpret_cast<int (*)(int, const char*, int, int)>(::dlsym(RTLD_NEXT, "faccessat"));
    return real(folder, name, mode, flags);
}
ZEL_SYSTEM_CALL int mkdir(const char* name, mode_t mode) noexcept {
    return Fails("mkdir") ? -1 : static_cast<int>(::syscall(SYS_mkdirat, AT_FDCWD, name, mode));
}
ZEL_SYSTEM_CALL ssize_t read(int descriptor, void* to, std::size_t bytes) {
    return FailsOn(descriptor, "read", "read folder") ? -1
                                                      : ::syscall(SYS_read, descriptor, to, PartOf(descriptor, bytes));
}
ZEL_SYSTEM_CALL ssize_t pread(int descriptor, void* to, std::size_t bytes, off_t at) {
    return ReadAt(descriptor, to, bytes, at);
}
ZEL_SYSTEM_CALL ssize_t pread64(int descriptor, void* to, std::size_t bytes, off64_t at) {
    return ReadAt(descriptor, to, bytes, at);
}
ZEL_SYSTEM_CALL ssize_t write(int descriptor, const void* from, std::size_t bytes) {
    return FailsOn(descriptor, "write", "write folder")
               ? -1
               : ::syscall(SYS_write, descriptor, from, PartOf(descriptor, bytes));
}
ZEL_SYSTEM_CALL ssize_t writev(int descriptor, const iovec* parts, int count) {
    return FailsOn(descriptor, "write", "write folder") ? -1 : ::syscall(SYS_writev, descriptor, parts, count);
}
ZEL_SYSTEM_CALL ssize_t pwrite(int descriptor, const void* from, std::size_t bytes, off_t at) {
    return WriteAt(descriptor, from, bytes, at);
}
ZEL_SYSTEM_CALL ssize_t pwrite64(int descriptor, const void* from, std::size_t bytes, off64_t at) {
    return WriteAt(descriptor, from, bytes, at);
}
ZEL_SYSTEM_CALL int fsync(int descriptor) {
    return FailsOn(descriptor, "fsync", "fsync folder") ? -1 : static_cast<int>(::syscall(SYS_fsync, descriptor));
}
ZEL_SYSTEM_CALL int fdatasync(int descriptor) {
    return FailsOn(descriptor, "fsync", "fsync folder") ? -1 : static_cast<int>(::syscall(SYS_fdatasync, descriptor));
}
ZEL_SYSTEM_CALL int ftruncate(int descriptor, off_t length) noexcept {
    return Fails("ftruncate") ? -1 : static_cast<int>(::syscall(SYS_ftruncate, descriptor, length));
}
ZEL_SYSTEM_CALL int ftruncate64(int descriptor, off64_t length) noexcept {
    return Fails("ftruncate") ? -1 : static_cast<int>(::syscall(SYS_ftruncate, descriptor, length));
}
ZEL_SYSTEM_CALL int fchmod(int descriptor, mode_t mode) noexcept {
    return Fails("fchmod") ? -1 : static_cast<int>(::syscall(SYS_fchmod, descriptor, mode));
}
ZEL_SYSTEM_CALL int fchown(int descriptor, uid_t owner, gid_t group) noexcept {
    return Fails("fchown") ? -1 : static_cast<int>(::syscall(SYS_fchown, descriptor, owner, group));
}
ZEL_SYSTEM_CALL int rename(const char* from, const char* to) noexcept {
    return Fails("rename") ? -1 : static_cast<int>(::syscall(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0));
}
ZEL_SYSTEM_CALL int unlink(const char* name) noexcept {
    return Fails("unlink") ? -1 : static_cast<int>(::syscall(SYS_unlinkat, AT_FDCWD, name, 0));
}
ZEL_SYSTEM_CALL int unlinkat(int folder, const char* name, int flags) noexcept {
    return Fails("unlinkat") ? -1 : static_cast<int>(::syscall(SYS_unlinkat, folder, name, flags));
}
ZEL_SYSTEM_CALL int close(int descriptor) {
    bool fails = false;
    if (!IsIdle()) {
        const mode_t kind = KindOf(descriptor);
        const bool writes = (::fcntl(descriptor, F_GETFL) & O_ACCMODE) != O_RDONLY;
        if (kind == S_IFREG || kind == S_IFDIR)
            fails = Fails(kind == S_IFDIR ? "close folder" : writes ? "close to write" : "close");
    }
    const int error = errno;
    const int result = static_cast<int>(::syscall(SYS_close, descriptor));
    if (!fails)
        return result;
    errno = error;
    return -1;
}
