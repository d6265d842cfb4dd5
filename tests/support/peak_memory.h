#pragma once

#include <cstddef>
#include <fstream>
#include <string>

/// The most memory that the process had so far, in bytes.
inline std::size_t PeakMemory() {
    std::ifstream status("/proc/self/status");
    std::string word;
    std::size_t kilobytes = 0;
    while (status >> word)
        if (word == "VmHWM:" && status >> kilobytes)
            return kilobytes * 1024;
    return 0;
}
