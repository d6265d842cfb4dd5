#pragma once

// Private to the library: blocks of pages shared out to two threads.

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <numeric>
#include <optional>
#include <utility>
#include <vector>

namespace kep::detail {

/// Gives each block of some pages out once. One thread takes them in order and the other from the back, so that both
/// stay within a page for long, and neither waits for the other however slow it is.
class BlockQueue {
public:
    enum class End { Front, Back };
    struct Place {
        std::size_t page;    ///< index into the pages
        std::uint32_t block; ///< of that page
    };

    explicit BlockQueue(std::vector<std::size_t> blocksOfPages)
        : blocks(std::move(blocksOfPages)),
          left(std::accumulate(blocks.begin(), blocks.end(), std::size_t{0})),
          front{0, 0},
          back{blocks.size(), 0} {}

    /// Blocks not given out.
    std::size_t GetCount() const { return left; }

    std::optional<Place> Take(End end) {
        const std::lock_guard lock(mutex);
        if (left == 0)
            return std::nullopt;
        --left;
        if (end == End::Front) {
            while (front.block == blocks[front.page])
                front = {front.page + 1, 0};
            return Place{front.page, front.block++};
        }
        while (back.block == 0) {
            --back.page;
            back.block = static_cast<std::uint32_t>(blocks[back.page]);
        }
        return Place{back.page, --back.block};
    }

    /// Nothing is given out from now on.
    void Close() {
        const std::lock_guard lock(mutex);
        left = 0;
    }

private:
    std::vector<std::size_t> blocks;
    std::size_t left;
    Place front; ///< the next one
    Place back;  ///< the one behind the next one
    std::mutex mutex;
};

} // namespace kep::detail
