#include "tests/support/failing_calls.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

namespace {

constexpr long none = -1;

std::atomic<long> callsUntilFailure{none};
std::atomic<int> failure{0};
std::atomic<bool> hasFailed{false};
std::atomic<bool> interrupts{false};
std::atomic<std::size_t> interrupted{0};
thread_local bool isRepeated = false; // the call before was interrupted, and this is the same one again

bool Fails() {
    if (callsUntilFailure.load() == none || callsUntilFailure.fetch_sub(1) != 0)
        return false;
    callsUntilFailure = none;
    hasFailed = true;
    errno = failure;
    return true;
}

/// The same for calls that signals interrupt.
bool FailsOrIsInterrupted() {
    if (Fails())
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

std::size_t PartOf(std::size_t bytes) {
    return interrupts ? (bytes + 1) / 2 : bytes;
}

int Open(int folder, const char* name, int flags, mode_t mode) {
    if (FailsOrIsInterrupted())
        return -1;
    return static_cast<int>(::syscall(SYS_openat, folder, name, flags, mode));
}

ssize_t ReadAt(int descriptor, void* to, std::size_t bytes, off_t at) {
    return FailsOrIsInterrupted() ? -1 : ::syscall(SYS_pread64, descriptor, to, PartOf(bytes), at);
}

ssize_t WriteAt(int descriptor, const void* from, std::size_t bytes, off_t at) {
    return FailsOrIsInterrupted() ? -1 : ::syscall(SYS_pwrite64, descriptor, from, PartOf(bytes), at);
}

mode_t ModeOf(int flags, std::va_list rest) {
    return (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
}

} // namespace

FailingCall::FailingCall(std::size_t number, int error) {
    hasFailed = false;
    failure = error;
    callsUntilFailure = static_cast<long>(number);
}

FailingCall::~FailingCall() {
    callsUntilFailure = none;
}

bool FailingCall::HasFailed() const {
    return hasFailed;
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
ZEL_SYSTEM_CALL ssize_t read(int descriptor, void* to, std::size_t bytes) {
    return FailsOrIsInterrupted() ? -1 : ::syscall(SYS_read, descriptor, to, PartOf(bytes));
}
ZEL_SYSTEM_CALL ssize_t pread(int descriptor, void* to, std::size_t bytes, off_t at) {
    return ReadAt(descriptor, to, bytes, at);
}
ZEL_SYSTEM_CALL ssize_t pread64(int descriptor, void* to, std::size_t bytes, off64_t at) {
    return ReadAt(descriptor, to, bytes, at);
}
ZEL_SYSTEM_CALL ssize_t write(int descriptor, const void* from, std::size_t bytes) {
    return FailsOrIsInterrupted() ? -1 : ::syscall(SYS_write, descriptor, from, PartOf(bytes));
}
ZEL_SYSTEM_CALL ssize_t writev(int descriptor, const iovec* parts, int count) {
    return FailsOrIsInterrupted() ? -1 : ::syscall(SYS_writev, descriptor, parts, count);
}
ZEL_SYSTEM_CALL ssize_t pwrite(int descriptor, const void* from, std::size_t bytes, off_t at) {
    return WriteAt(descriptor, from, bytes, at);
}
ZEL_SYSTEM_CALL ssize_t pwrite64(int descriptor, const void* from, std::size_t bytes, off64_t at) {
    return WriteAt(descriptor, from, bytes, at);
}
ZEL_SYSTEM_CALL int fsync(int descriptor) {
    return FailsOrIsInterrupted() ? -1 : static_cast<int>(::syscall(SYS_fsync, descriptor));
}
ZEL_SYSTEM_CALL int fchmod(int descriptor, mode_t mode) noexcept {
    return Fails() ? -1 : static_cast<int>(::syscall(SYS_fchmod, descriptor, mode));
}
ZEL_SYSTEM_CALL int fchown(int descriptor, uid_t owner, gid_t group) noexcept {
    return Fails() ? -1 : static_cast<int>(::syscall(SYS_fchown, descriptor, owner, group));
}
ZEL_SYSTEM_CALL int rename(const char* from, const char* to) noexcept {
    return Fails() ? -1 : static_cast<int>(::syscall(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0));
}
ZEL_SYSTEM_CALL int close(int descriptor) {
    const bool fails = Fails();
    const int error = errno;
    const int result = static_cast<int>(::syscall(SYS_close, descriptor));
    if (!fails)
        return result;
    errno = error;
    return -1;
}
