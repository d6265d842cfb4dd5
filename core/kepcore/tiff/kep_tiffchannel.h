#pragma once

// Private to the library: libtiff on a file of ours. Nothing that it says is printed, and exceptions stop here, as its
// frames know none.

#include <array>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

struct tiff;

namespace kep::detail {

/// What libtiff's callbacks know. Each handle has a channel, with a position of its own, which outlives it.
class TiffChannel {
public:
    TiffChannel() = default;
    TiffChannel(const TiffChannel&) = delete;
    TiffChannel& operator=(const TiffChannel&) = delete;
    virtual ~TiffChannel() = default;

    /// @param mode  as libtiff has it
    /// @param most  bytes of memory that libtiff may take at once; 0: as many as it likes
    /// @return null if libtiff refuses the file
    /// @throws std::bad_alloc
    tiff* Open(const std::string& name, const char* mode, std::uint64_t most);

    /// libtiff has complained of something.
    bool HasFailed() const { return hasFailed; }
    /// Its first complaint, in characters that a message can show, or some words where it had none.
    std::string Describe(const char* otherwise) const;
    /// The first exception that stopped here; null if there was none.
    const std::exception_ptr& GetFailure() const { return failure; }

protected:
    virtual std::size_t ReadAt(std::uint64_t at, void* to, std::size_t bytes) = 0;
    virtual void WriteAt(std::uint64_t at, const void* from, std::size_t bytes) = 0;
    virtual std::uint64_t GetLength() const = 0;
    /// A warning of one of libtiff's modules counts as a complaint.
    virtual bool IsComplaint(std::string_view module) const = 0;

private:
    struct Callbacks;

    void TakeMessage(const char* format, std::va_list values) noexcept;
    void NoteFailure() noexcept;

    std::uint64_t position = 0;
    bool hasFailed = false;
    std::array<char, 201> message{}; ///< of the first complaint
    std::exception_ptr failure;
};

} // namespace kep::detail
