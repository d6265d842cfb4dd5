// What libFuzzer calls. Compiled once for each target, with the name of its function.

#include "fuzz/targets.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count);

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    fuzz::ZEL_FUZZ_FUNCTION({reinterpret_cast<const char*>(bytes), count});
    return 0;
}
