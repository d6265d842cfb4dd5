#include "core/kepcore/tiff/kep_tiffchannel.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <new>
#include <tiffio.h>

namespace kep::detail {

/// As libtiff calls them: with the channel as a pointer to anything.
struct TiffChannel::Callbacks {
    static TiffChannel& Of(void* self) { return *static_cast<TiffChannel*>(self); }

    static tmsize_t Read(thandle_t self, void* to, tmsize_t bytes) noexcept {
        TiffChannel& channel = Of(self);
        try {
            const std::size_t got = channel.ReadAt(channel.position, to, static_cast<std::size_t>(bytes));
            channel.position += got;
            return static_cast<tmsize_t>(got);
        } catch (...) {
            channel.NoteFailure();
            return -1;
        }
    }
    static tmsize_t Write(thandle_t self, void* from, tmsize_t bytes) noexcept {
        TiffChannel& channel = Of(self);
        try {
            channel.WriteAt(channel.position, from, static_cast<std::size_t>(bytes));
        } catch (...) {
            channel.NoteFailure();
            return -1;
        }
        channel.position += static_cast<std::uint64_t>(bytes);
        return bytes;
    }
    static toff_t Seek(thandle_t self, toff_t to, int whence) noexcept {
        TiffChannel& channel = Of(self);
        const toff_t from = whence == SEEK_CUR ? channel.position : whence == SEEK_END ? channel.GetLength() : 0;
        channel.position = std::min<toff_t>(from + to, INT64_MAX);
        return channel.position;
    }
    static int Close(thandle_t) noexcept { return 0; }
    static toff_t GetSize(thandle_t self) noexcept { return Of(self).GetLength(); }

    // Both return 1 for "handled", so that libtiff's own handlers, which print, are not called.
    static int TakeError(TIFF*, void* self, const char*, const char* format, std::va_list values) noexcept {
        Of(self).TakeMessage(format, values);
        return 1;
    }
    static int TakeWarning(TIFF*, void* self, const char* module, const char* format, std::va_list values) noexcept {
        if (module != nullptr && Of(self).IsComplaint(module))
            Of(self).TakeMessage(format, values);
        return 1;
    }
};

TIFF* TiffChannel::Open(const std::string& name, const char* mode, std::uint64_t most) {
    const std::unique_ptr<TIFFOpenOptions, decltype(&TIFFOpenOptionsFree)> options(TIFFOpenOptionsAlloc(),
                                                                                   &TIFFOpenOptionsFree);
    if (!options)
        throw std::bad_alloc();
    TIFFOpenOptionsSetErrorHandlerExtR(options.get(), &Callbacks::TakeError, this);
    TIFFOpenOptionsSetWarningHandlerExtR(options.get(), &Callbacks::TakeWarning, this);
    TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), static_cast<tmsize_t>(most));
    return TIFFClientOpenExt(name.c_str(), mode, this, &Callbacks::Read, &Callbacks::Write, &Callbacks::Seek,
                             &Callbacks::Close, &Callbacks::GetSize, nullptr, nullptr, options.get());
}

std::string TiffChannel::Describe(const char* otherwise) const {
    std::string text = message[0] != 0 ? message.data() : otherwise;
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
    return text;
}

void TiffChannel::TakeMessage(const char* format, std::va_list values) noexcept {
    if (message[0] == 0)
        std::vsnprintf(message.data(), message.size(), format, values);
    hasFailed = true;
}

/// Keeps the exception that is being handled, if it is the first.
void TiffChannel::NoteFailure() noexcept {
    if (!failure)
        failure = std::current_exception();
}

} // namespace kep::detail
