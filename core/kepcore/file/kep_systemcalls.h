#pragma once

// Private to the library: calls of the system that go on after an interruption.

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <sys/types.h>
#include <unistd.h>

namespace kep::detail {

/// Makes a call again as long as a signal interrupts it. Not for close, after which the number is free in any case.
template <typename Call>
auto Uninterrupted(const Call& call) noexcept {
    auto result = call();
    while (result == -1 && errno == EINTR)
        result = call();
    return result;
}

/// The system reads and writes at most 2 GB at once; whole megabytes keep the next read aligned.
constexpr std::size_t largestTransfer = std::size_t{1} << 30;

/// Reads up to `bytes` bytes at a place, in as many calls as it takes.
/// @return how many there were, fewer only at the end of the file; or -1, and errno tells why
inline ssize_t ReadFully(int descriptor, std::uint64_t at, void* to, std::size_t bytes) noexcept {
    std::size_t done = 0;
    while (done < bytes) {
        const ssize_t got = Uninterrupted([&] {
            return ::pread(descriptor, static_cast<char*>(to) + done, std::min(bytes - done, largestTransfer),
                           static_cast<off_t>(at + done));
        });
        if (got < 0)
            return -1;
        if (got == 0)
            break;
        done += static_cast<std::size_t>(got);
    }
    return static_cast<ssize_t>(done);
}

} // namespace kep::detail
