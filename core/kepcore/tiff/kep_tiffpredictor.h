#pragma once

// Private to the library: numbers that were stored as differences from their neighbours on the left.

#include <cstddef>
#include <span>

namespace kep::detail {

/// TIFF's numbers for what was done to a row before it was packed.
enum TiffPredictor : unsigned { predictsNothing = 1, predictsSame = 2, predictsFloat = 3 };

/// Turns the differences of a row of whole numbers into the numbers.
/// @param bits  of a number: 8, 16, 32 or 64
/// @param step  numbers from one to its neighbour: the samples of a pixel that stand together
/// @param swap  the differences are not in the machine's byte order; the numbers will be
void AddUpDifferences(std::span<std::byte> row, unsigned bits, std::size_t step, bool swap);

/// The other way, for rows in the machine's byte order.
/// @param to  as many bytes as the row has
void TakeDifferences(std::span<const std::byte> row, unsigned bits, std::size_t step, std::byte* to);

/// Turns differences into numbers for floats, whose bytes were taken apart before: the highest of all, then the next
/// ones.
/// @param bits  of a float: a multiple of 8
void AddUpFloats(std::span<std::byte> row, unsigned bits, std::size_t step);

} // namespace kep::detail
