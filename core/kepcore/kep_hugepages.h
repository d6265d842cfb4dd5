#pragma once

#include "core/kepcore/kep_export.h"

#include <cstddef>

namespace kep {

/// Asks for huge pages below a block that nobody has touched: taking a large block from the system page by page costs
/// more than filling it. Only advice, which may go unheard; small blocks are left alone.
/// @param block  not null
/// @param bytes  of the block
KEP_EXPORT void AdviseHugePages(void* block, std::size_t bytes) noexcept;

} // namespace kep
