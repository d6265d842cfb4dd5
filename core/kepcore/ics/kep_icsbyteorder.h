#pragma once

// Private to the library: the order of the bytes of a sample, which an ICS header gives byte by byte.

#include "core/kepcore/file/kep_file.h"

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace kep::detail {

/// Turns the bytes of samples as they lie in a file into those of the machine.
class IcsByteOrder {
public:
    /// @param significance  of each byte of a sample, as in IcsHeader
    IcsByteOrder(const std::vector<int>& significance, const SampleType& sample);

    /// The bytes lie in the file as they are wanted.
    bool IsNative() const { return same; }

    /// @param bytes  of whole samples
    void Apply(std::byte* samples, std::size_t bytes) const;

private:
    void PermuteAll(std::byte* samples, std::size_t bytes) const;

    std::size_t count; ///< bytes of a sample, at most 16
    std::size_t part;  ///< bytes of a number, or of one part of a complex one
    std::array<std::size_t, 16> place{};
    bool same = true;
    bool swapped = true;
};

/// The significance of each byte of a sample in the machine's order, as a header says it.
std::vector<std::string> GetNativeByteOrder(const SampleType& sample);

} // namespace kep::detail
