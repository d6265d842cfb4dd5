#pragma once

// Private to the library: items that are made beside each other and used one after the other.

#include "core/kepcore/kep_threads.h"

#include <condition_variable>
#include <cstddef>
#include <map>
#include <mutex>
#include <numeric>
#include <type_traits>
#include <utility>
#include <vector>

namespace kep::detail {

/// Brings items into order that several threads make. Those that are far ahead wait, so that memory is bounded.
template <typename Item, typename Use>
class ItemsInOrder {
public:
    /// @param use  use(i, item), by one thread at a time
    ItemsInOrder(std::size_t lanes, const Use& toUse) : use(toUse), ahead(2 * lanes), freeLanes(lanes) {
        std::iota(freeLanes.begin(), freeLanes.end(), std::size_t{0});
    }

    /// Has item i made, and uses all that are next. @param make  item = make(i, lane)
    template <typename Make>
    void Add(std::size_t i, const Make& make) {
        std::unique_lock lock(mutex);
        // Numbers come in ascending order: whoever has the next one does not wait for others that wait.
        changed.wait(lock, [&] { return hasFailed || (i < next + ahead && !freeLanes.empty()); });
        if (hasFailed)
            return;
        try {
            const std::size_t lane = freeLanes.back();
            freeLanes.pop_back();
            lock.unlock();
            Item item = make(i, lane);
            lock.lock();
            freeLanes.push_back(lane);
            made.emplace(i, std::move(item));
            changed.notify_all();
            UseNext(lock);
        } catch (...) {
            if (!lock.owns_lock())
                lock.lock();
            hasFailed = true;
            changed.notify_all();
            throw;
        }
    }

private:
    void UseNext(std::unique_lock<std::mutex>& lock) {
        while (!isUsing && !hasFailed && !made.empty() && made.begin()->first == next) {
            const auto item = made.extract(made.begin());
            isUsing = true;
            lock.unlock();
            use(item.key(), item.mapped());
            lock.lock();
            isUsing = false;
            ++next;
            changed.notify_all();
        }
    }

    const Use& use;
    const std::size_t ahead; ///< items that may be made while the next one is not
    std::vector<std::size_t> freeLanes;
    std::map<std::size_t, Item> made; ///< and not used
    std::size_t next = 0;             ///< to be used
    bool isUsing = false;
    bool hasFailed = false;
    std::mutex mutex;
    std::condition_variable changed;
};

/// Makes the items from 0 to `count` on several threads and uses them in order, both on threads that end with the call.
/// @param lanes  of which each has one item at a time: GetThreadLimit(), or fewer
/// @param make   item = make(i, lane), lane < lanes
/// @param use    use(i, item), one at a time
/// @throws what one of them has thrown; then nothing more is used
template <typename Make, typename Use>
void MakeInOrder(std::size_t count, std::size_t lanes, const Make& make, const Use& use) {
    using Item = std::decay_t<std::invoke_result_t<const Make&, std::size_t, std::size_t>>;
    ItemsInOrder<Item, Use> items(lanes, use);
    ForEachPart(count, [&](std::size_t i) { items.Add(i, make); });
}

} // namespace kep::detail
