#pragma once

// Private to the model: values taken block by block.

#include <algorithm>
#include <array>
#include <cstddef>

namespace zel::detail {

/// Values that are worked on at a time, so that they stay in the cache nearest to the processor.
constexpr std::size_t blockOfValues = 1024;

/// Calls work(values, number of them) with the values block by block, side by side.
template <typename T, typename Work>
void ForBlocks(const T* first, std::size_t number, std::size_t stride, Work&& work) {
    std::array<T, blockOfValues> gathered;
    for (std::size_t done = 0; done < number; done += blockOfValues) {
        const std::size_t part = std::min(number - done, blockOfValues);
        const T* const source = first + done * stride;
        if (stride == 1) {
            work(source, part);
            continue;
        }
        for (std::size_t i = 0; i < part; ++i)
            gathered[i] = source[i * stride];
        work(gathered.data(), part);
    }
}

} // namespace zel::detail
