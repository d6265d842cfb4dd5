#include "core/kepcore/kep_image3d.h"

#include "core/kepcore/convert/kep_block.h"
#include "core/kepcore/convert/kep_convert.h"
#include "core/kepcore/convert/kep_text.h"
#include "core/kepcore/file/kep_file.h"
#include "core/kepcore/kep_exceptions.h"

#include <algorithm>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <valarray>

namespace kep {

namespace {

[[noreturn]] void ThrowNoFormat(std::string_view before, std::string_view tie, const std::string& name,
                                std::string_view after) {
    detail::FileSentence sentence = detail::MakeFileSentence("SaveImage", before, tie, name, after);
    throw IOException(std::move(sentence.text), std::move(sentence.fileName), std::move(sentence.reason));
}

/// The format in which a file is written: FF_ICS or FF_TIFF.
FileFormat ChooseFormat(const std::string& name, FileFormat format) {
    switch (format) {
    case FF_ICS:
    case FF_TIFF:
        return format;
    case FF_BY_NAME:
    case FF_LABELED:
        if (detail::EndsWithIgnoringCase(name, ".ics"))
            return FF_ICS;
        if (detail::EndsWithIgnoringCase(name, ".tif") || detail::EndsWithIgnoringCase(name, ".tiff"))
            return FF_TIFF;
        ThrowNoFormat("The format", " of ", name, " cannot be told from its suffix; use .ics or .tif.");
    }
    ThrowNoFormat("The format value " + std::to_string(static_cast<int>(format)), " for ", name, " is not supported.");
}

/// Two-valued voxels as other programs show them: black and white.
std::valarray<unsigned char> MakeBlackAndWhite(const Image3d<bool>& frame) {
    std::valarray<unsigned char> bytes = detail::MakeUnsetBlock<unsigned char>(frame.GetNumVoxels());
    std::transform(frame.begin(), frame.end(), std::begin(bytes),
                   [](bool set) { return static_cast<unsigned char>(set ? 255 : 0); });
    return bytes;
}

template <typename T>
std::string WriteFrame(const std::string& name, FileFormat format, bool compress, const Image3d<T>& frame) {
    constexpr detail::TargetType type = detail::targetType<T>;
    detail::FrameToWrite toWrite;
    toWrite.header.format = format;
    toWrite.header.size = frame.size;
    toWrite.header.sample = detail::GetStoredType(type);
    toWrite.header.components = type.shape == detail::VoxelShape::Colour ? 3 : 1;
    toWrite.header.storedBits = 8 * static_cast<int>(toWrite.header.sample.GetSampleBytes());
    toWrite.header.resolution = frame.resolution;
    toWrite.header.offset = frame.offset;
    toWrite.header.description = frame.description;
    toWrite.compress = compress;

    std::valarray<unsigned char> blackAndWhite;
    if constexpr (std::is_same_v<T, bool>) {
        blackAndWhite = MakeBlackAndWhite(frame);
        toWrite.voxels = reinterpret_cast<const std::byte*>(&blackAndWhite[0]);
    } else {
        toWrite.voxels = reinterpret_cast<const std::byte*>(frame.begin());
    }
    return format == FF_ICS ? detail::WriteIcsFrame(name, toWrite) : detail::WriteTiffFrame(name, toWrite);
}

} // namespace

template <typename T>
std::string Image3d<T>::SaveImage(const char* fileName, FileFormat format, bool compress, const PixelBox* voi) const {
    const std::string name = fileName != nullptr ? fileName : "";
    const FileFormat chosen = ChooseFormat(name, format);
    if (IsEmpty() || (voi != nullptr && voi->IsEmpty()))
        throw IOException("SaveImage(): The image has no voxels.", name, "The image has no voxels.");
    try {
        return voi != nullptr ? WriteFrame(name, chosen, compress, Image3d(*this, voi))
                              : WriteFrame(name, chosen, compress, *this);
    } catch (const IOException&) {
        throw;
    } catch (const LibException& error) {
        detail::ThrowCannotWrite(name, error.GetText());
    } catch (const std::bad_alloc&) {
        detail::ThrowCannotWrite(name, "not enough memory");
    } catch (const std::length_error&) {
        detail::ThrowCannotWrite(name, "not enough memory");
    }
}

#define KEP_INSTANTIATE(T)                                                                                             \
    template std::string Image3d<T>::SaveImage(const char*, FileFormat, bool, const PixelBox*) const;
KEP_FRAME_TYPES(KEP_INSTANTIATE)
#undef KEP_INSTANTIATE

} // namespace kep
