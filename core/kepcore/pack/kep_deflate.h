#pragma once

// Private to the library: bytes packed with deflate, and the checksum that goes with them in gzip.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

struct isal_zstream;

namespace kep::detail {

/// Packs quickly: on the noise of microscopes to search for longer takes many times the time for the same size. Holds
/// the memory that it takes for the next call.
class Deflater {
public:
    Deflater();
    ~Deflater();
    Deflater(const Deflater&) = delete;
    Deflater& operator=(const Deflater&) = delete;

    /// Packs a stretch of a bare stream so that it ends with a whole byte and another one can follow. The stream ends
    /// with the bytes 3, 0.
    /// @param before  bytes in front of it that the reader knows by then, and that may repeat in it
    std::vector<std::byte> PackStretch(const std::byte* bytes, std::size_t count, std::size_t before);

    /// Packs a whole stream in zlib's format.
    std::vector<std::byte> PackZlib(const std::byte* bytes, std::size_t count);

private:
    enum class Ending { WholeByte, Stream };

    void Begin();
    std::vector<std::byte> Pack(const std::byte* bytes, std::size_t count, Ending ending);

    std::unique_ptr<isal_zstream> stream;
    std::vector<std::uint8_t> memory;
};

/// The checksum of gzip over more bytes. @param sum  of those before; 0 in front of the first
std::uint32_t ExtendChecksum(std::uint32_t sum, const std::byte* bytes, std::size_t count);

/// The checksum of two stretches. @param count  bytes of the second one
std::uint32_t JoinChecksums(std::uint32_t first, std::uint32_t second, std::size_t count);

} // namespace kep::detail
