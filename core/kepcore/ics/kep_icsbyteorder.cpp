#include "core/kepcore/ics/kep_icsbyteorder.h"

#include "core/kepcore/convert/kep_bytes.h"

#include <cstring>

namespace kep::detail {

namespace {

/// Where byte i of a sample stands in the other order: from the least significant on, or in the machine's. The two
/// parts of a complex number have all of its significances together, the real part's first.
std::size_t FindPlace(std::size_t i, std::size_t part) {
    const std::size_t within = i % part;
    return i - within + (isMachineBigEndian ? part - 1 - within : within);
}

} // namespace

IcsByteOrder::IcsByteOrder(const std::vector<int>& significance, const SampleType& sample)
    : count(sample.GetSampleBytes()), part(static_cast<std::size_t>(sample.bytes)) {
    // Byte i of a sample in the file goes to place[i].
    for (std::size_t i = 0; i < significance.size(); ++i) {
        place[i] = FindPlace(static_cast<std::size_t>(significance[i]) - 1, part);
        same = same && place[i] == i;
        swapped = swapped && place[i] == i - i % part + (part - 1 - i % part);
    }
}

void IcsByteOrder::Apply(std::byte* samples, std::size_t bytes) const {
    if (same)
        return;
    if (swapped)
        SwapBytes(samples, bytes, part);
    else
        PermuteAll(samples, bytes);
}

void IcsByteOrder::PermuteAll(std::byte* samples, std::size_t bytes) const {
    std::array<std::byte, 16> sample{};
    for (std::size_t at = 0; at < bytes; at += count) {
        std::memcpy(sample.data(), samples + at, count);
        for (std::size_t i = 0; i < count; ++i)
            samples[at + place[i]] = sample[i];
    }
}

std::vector<std::string> GetNativeByteOrder(const SampleType& sample) {
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < sample.GetSampleBytes(); ++i)
        texts.push_back(std::to_string(FindPlace(i, static_cast<std::size_t>(sample.bytes)) + 1));
    return texts;
}

} // namespace kep::detail
