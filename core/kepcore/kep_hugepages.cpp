#include "core/kepcore/kep_hugepages.h"

#include <cstdint>
#include <sys/mman.h>
#include <unistd.h>

namespace kep {

void AdviseHugePages(void* block, std::size_t bytes) noexcept {
    constexpr std::size_t hugeFrom = std::size_t{4} << 20; // below this the advice costs more than it saves
    if (bytes < hugeFrom)
        return;
    static const auto page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    const std::size_t before = reinterpret_cast<std::uintptr_t>(block) % page;
    const std::size_t pages = (before + bytes + page - 1) / page;
    ::madvise(static_cast<std::byte*>(block) - before, pages * page, MADV_HUGEPAGE);
}

} // namespace kep
