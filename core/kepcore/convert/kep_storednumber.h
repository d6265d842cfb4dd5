#pragma once

// Private to the library: numbers as files hold them, one by one, and how they become numbers in memory.

#include "core/kepcore/convert/kep_convert.h"

#include <array>
#include <cstddef>
#include <string>

namespace kep::detail {

/// One kind of number in a file.
struct StoredNumber {
    NumberKind kind;
    int bytes;
    /// Carry numbers over, one for each Channel, in its order.
    const std::array<NumberKernel, 7>& kernels;
    /// Integers in full, floating numbers with the fewest digits that give them back.
    std::string (*format)(const std::byte* number);
    /// Finite, but not whole.
    bool (*isFraction)(const std::byte* number);
};

/// The kind of number that samples, or parts of complex ones, are made of.
/// @param fileName  for messages
/// @throws IOException a kind that no format delivers
const StoredNumber& FindStoredNumber(const SampleType& sample, const std::string& fileName);

} // namespace kep::detail
