#include "core/kepcore/pack/kep_deflate.h"

#include <algorithm>
#include <isa-l/crc.h>
#include <isa-l/igzip_lib.h>
#include <zlib.h>

namespace kep::detail {

namespace {

/// The library only reads what it packs; its interface knows no const.
std::uint8_t* ToInput(const std::byte* bytes) {
    return const_cast<std::uint8_t*>(reinterpret_cast<const std::uint8_t*>(bytes));
}

} // namespace

Deflater::Deflater() : stream(std::make_unique<isal_zstream>()), memory(ISAL_DEF_LVL3_DEFAULT) {}

Deflater::~Deflater() = default;

void Deflater::Begin() {
    isal_deflate_init(stream.get());
    // The lower levels take a tenth less time for noise, but miss most of what repeats from row to row.
    stream->level = 3;
    stream->level_buf = memory.data();
    stream->level_buf_size = static_cast<std::uint32_t>(memory.size());
}

std::vector<std::byte> Deflater::PackStretch(const std::byte* bytes, std::size_t count, std::size_t before) {
    Begin();
    const std::size_t known = std::min<std::size_t>(before, ISAL_DEF_HIST_SIZE);
    if (known > 0)
        isal_deflate_set_dict(stream.get(), ToInput(bytes - known), static_cast<std::uint32_t>(known));
    return Pack(bytes, count, Ending::WholeByte);
}

std::vector<std::byte> Deflater::PackZlib(const std::byte* bytes, std::size_t count) {
    Begin();
    stream->gzip_flag = IGZIP_ZLIB;
    return Pack(bytes, count, Ending::Stream);
}

std::vector<std::byte> Deflater::Pack(const std::byte* bytes, std::size_t count, Ending ending) {
    constexpr std::size_t most = std::size_t{16} << 20; // at once, as the library counts in 32 bits
    // Stored blocks, formats and marks add far less to what cannot be packed.
    std::vector<std::byte> packed(count + count / 64 + 1024);
    std::size_t used = 0;
    std::size_t taken = 0;
    do {
        const std::size_t part = std::min(count - taken, most);
        stream->next_in = ToInput(bytes + taken);
        stream->avail_in = static_cast<std::uint32_t>(part);
        taken += part;
        stream->flush = taken == count && ending == Ending::WholeByte ? SYNC_FLUSH : NO_FLUSH;
        stream->end_of_stream = taken == count && ending == Ending::Stream ? 1 : 0;
        do {
            if (used == packed.size())
                packed.resize(2 * used);
            const std::size_t room = std::min(packed.size() - used, most);
            stream->next_out = reinterpret_cast<std::uint8_t*>(packed.data() + used);
            stream->avail_out = static_cast<std::uint32_t>(room);
            isal_deflate(stream.get());
            used += room - stream->avail_out;
        } while (stream->avail_out == 0);
    } while (taken < count);
    packed.resize(used);
    return packed;
}

std::uint32_t ExtendChecksum(std::uint32_t sum, const std::byte* bytes, std::size_t count) {
    return crc32_gzip_refl(sum, ToInput(bytes), count);
}

std::uint32_t JoinChecksums(std::uint32_t first, std::uint32_t second, std::size_t count) {
    return static_cast<std::uint32_t>(crc32_combine(first, second, static_cast<z_off_t>(count)));
}

} // namespace kep::detail
