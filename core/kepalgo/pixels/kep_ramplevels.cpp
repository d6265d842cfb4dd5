#include "core/kepalgo/pixels/kep_ramplevels.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <numeric>
#if defined(__x86_64__) && !defined(ZEL_PLAIN_KERNELS)
#include <immintrin.h>
#endif

namespace kep {

#if defined(__x86_64__) && !defined(ZEL_PLAIN_KERNELS)
namespace {

constexpr std::size_t atOnce = 16;

[[gnu::target("avx2,fma")]] inline __m256i ComputeHalf(__m128i keys, __m256 slope, __m256 start) {
    return _mm256_cvttps_epi32(_mm256_fmadd_ps(_mm256_cvtepi32_ps(_mm256_cvtepu16_epi32(keys)), slope, start));
}

/// Levels of groups of sixteen voxels.
[[gnu::target("avx2,fma")]] void ComputeLevels(const unsigned short* voxels, std::size_t groups, unsigned short from,
                                               unsigned short span, float slope, float start, unsigned char* levels) {
    const __m256i froms = _mm256_set1_epi16(static_cast<short>(from));
    const __m256i spans = _mm256_set1_epi16(static_cast<short>(span));
    const __m256 slopes = _mm256_set1_ps(slope), starts = _mm256_set1_ps(start);
    for (std::size_t i = 0; i < groups * atOnce; i += atOnce) {
        const __m256i keys = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(voxels + i));
        const __m256i held = _mm256_min_epu16(_mm256_subs_epu16(keys, froms), spans);
        const __m256i low = ComputeHalf(_mm256_castsi256_si128(held), slopes, starts);
        const __m256i high = ComputeHalf(_mm256_extracti128_si256(held, 1), slopes, starts);
        const __m256i words = _mm256_permute4x64_epi64(_mm256_packus_epi32(low, high), 0xD8); // packed by halves
        const __m128i bytes = _mm_packus_epi16(_mm256_castsi256_si128(words), _mm256_extracti128_si256(words, 1));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(levels + i), bytes);
    }
}

} // namespace

std::optional<RampLevels> RampLevels::Of(const LUT<unsigned short, unsigned char>& table) {
    static const bool isAble = __builtin_cpu_supports("avx2") != 0 && __builtin_cpu_supports("fma") != 0;
    const unsigned char* const entries = table.GetWholeType();
    const auto& ramp = table.GetRamp();
    if (!isAble || entries == nullptr || !ramp || ramp->from == ramp->to)
        return std::nullopt;
    RampLevels levels;
    levels.m_from = ramp->from;
    levels.m_span = static_cast<unsigned short>(ramp->to - ramp->from);
    levels.m_slope = static_cast<float>(static_cast<double>(ramp->high - ramp->low) / levels.m_span);
    // Halves are rounded up, and what single precision loses may put one of them below: mostly a little more keeps them
    // up, and now and then none is needed.
    for (const float more : {0x1p-17F, 0.0F}) {
        levels.m_start = static_cast<float>(ramp->low) + 0.5F + more;
        constexpr std::size_t values = 65536;
        std::array<unsigned short, 4096> keys;
        std::array<unsigned char, keys.size()> computed;
        std::size_t first = 0;
        for (; first < values; first += keys.size()) {
            std::iota(keys.begin(), keys.end(), static_cast<unsigned short>(first));
            levels.Find(keys.data(), keys.size(), computed.data());
            if (std::memcmp(computed.data(), entries + first, computed.size()) != 0)
                break;
        }
        if (first == values)
            return levels;
    }
    return std::nullopt;
}

void RampLevels::Find(const unsigned short* voxels, std::size_t count, unsigned char* levels) const {
    const std::size_t whole = count / atOnce * atOnce;
    ComputeLevels(voxels, count / atOnce, m_from, m_span, m_slope, m_start, levels);
    if (whole == count)
        return;
    std::array<unsigned short, atOnce> last{};
    std::array<unsigned char, atOnce> found;
    std::copy(voxels + whole, voxels + count, last.begin());
    ComputeLevels(last.data(), 1, m_from, m_span, m_slope, m_start, found.data());
    std::copy_n(found.begin(), count - whole, levels + whole);
}
#else
std::optional<RampLevels> RampLevels::Of(const LUT<unsigned short, unsigned char>& /*table*/) {
    return std::nullopt; // without such instructions looking up is as fast
}

void RampLevels::Find(const unsigned short* /*voxels*/, std::size_t /*count*/, unsigned char* /*levels*/) const {}
#endif

} // namespace kep
