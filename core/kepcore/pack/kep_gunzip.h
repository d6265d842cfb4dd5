#pragma once

// Private to the library: what gzip has packed, unpacked in pieces.

#include "core/kepcore/file/kep_file.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

struct inflate_state;

namespace kep::detail {

/// Unpacks one gzip stream of a file, or several one behind the other. Not to be asked again after a failure: libisal
/// would go on from a state that nothing keeps within its memory.
class GunzipReader {
public:
    /// @param start  place in the file where the first stream begins
    GunzipReader(std::shared_ptr<const InputFile> from, std::uint64_t start);
    ~GunzipReader();
    GunzipReader(const GunzipReader&) = delete;
    GunzipReader& operator=(const GunzipReader&) = delete;

    /// Delivers the next bytes. @throws IOException they are damaged, or not as many
    void Read(std::byte* to, std::size_t bytes);

    /// Tests the end of the stream that the last byte came from; what follows it does not matter.
    /// @throws IOException the stream has more bytes, or is damaged
    void Finish();

private:
    [[noreturn]] void Fail(const char* what) const;
    void Fill();
    unsigned GetByte();
    unsigned GetHeaderByte();
    std::uint32_t GetNumber();
    void SkipHeaderText();
    void ReadHeader();
    void ReadTrailer();
    std::size_t Unpack(std::byte* to, std::size_t room);

    std::shared_ptr<const InputFile> file;
    std::uint64_t at; ///< place in the file of what is read next
    std::vector<std::byte> buffer;
    std::byte* next;                       ///< packed bytes of the buffer that were not used yet
    std::byte* end;                        ///< behind them
    std::unique_ptr<inflate_state> stream; ///< of the deflate data
    bool inStream = false;                 ///< between a header and its trailer
    std::uint32_t checksum = 0;            ///< of what the stream gave, or of the header
    std::uint64_t length = 0;              ///< of what the stream gave
};

} // namespace kep::detail
