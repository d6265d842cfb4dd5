#pragma once

// Private to the library: what the formats and the frames tell each other.

#include "core/kepcore/file/kep_refusal.h"
#include "core/kepcore/kep_fileaxes.h"
#include "core/kepcore/kep_fileformat.h"
#include "core/kepcore/kep_plainfile.h"
#include "core/kepcore/kep_resolution.h"
#include "core/kepcore/kep_rgb.h"
#include "core/kepcore/kep_vector.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kep::detail {

/// How one number of a voxel is stored, after unpacking: in whole bytes, in the machine's byte order. Half floats
/// become 32-bit floats, 24-bit numbers 32-bit ones, packed samples the next whole size.
enum class NumberKind { Unsigned, Signed, Float, ComplexSigned, ComplexFloat };

struct SampleType {
    NumberKind kind = NumberKind::Unsigned;
    int bytes = 1; ///< of one number, or of one part of a complex one: 1, 2, 4, 8 (Float and ComplexFloat: 4, 8)

    bool IsComplex() const { return kind == NumberKind::ComplexSigned || kind == NumberKind::ComplexFloat; }
    std::size_t GetSampleBytes() const { return static_cast<std::size_t>(bytes) * (IsComplex() ? 2U : 1U); }
    friend bool operator==(const SampleType&, const SampleType&) = default;
};

/// Everything that a file says before its voxels.
struct FrameHeader {
    FileFormat format = FF_BY_NAME;
    Vector3d<std::size_t> size;
    SampleType sample;
    int components = 1; ///< 1, or 3 for colour: the numbers of a voxel then lie together, red first
    /// The three components are channels, which are no colour by themselves. Only RGB types take them, as red, green
    /// and blue; for all others the file "holds 3 channels; one frame holds one".
    bool componentsAreChannels = false;
    int storedBits = 8; ///< of a sample on disk, e.g. 1, 12, 16 for half floats too
    bool halfFloat = false;
    Resolution resolution;  ///< as the rules for voxel sizes give it; (0, 0, 0) if undefined
    Vector3d<float> offset; ///< microns
    std::map<std::string, std::string> description;
    std::vector<RGB_generic<unsigned short>> palette; ///< colours of the indexes, if the file has a table; else empty
    std::string compression;                          ///< for the user
    std::uint64_t fileSize = 0;
    std::string dataFile; ///< name of the file that holds the voxels, if it is another one

    /// Bytes of one slice after unpacking. The formats have made sure that this and all slices together fit.
    std::size_t GetSliceBytes() const {
        return size.x * size.y * static_cast<std::size_t>(components) * sample.GetSampleBytes();
    }
};

/// What a header tells to the user.
ImageInfo MakeImageInfo(const FrameHeader& header);

/// A file that was found good so far: its header, and its voxels slice by slice.
class FrameSource {
public:
    FrameSource() = default;
    FrameSource(const FrameSource&) = delete;
    FrameSource& operator=(const FrameSource&) = delete;
    virtual ~FrameSource() = default;

    virtual const FrameHeader& GetHeader() const = 0;

    /// Reads the next `count` slices, GetSliceBytes() each, unpacked and in the machine's byte order. Called for
    /// all slices in order, each once; the call that takes the last one also makes the format's final checks.
    /// @throws IOException damaged file
    virtual void ReadSlices(std::size_t count, std::byte* to) = 0;
};

/// A file's channels and time points.
struct FrameAxes {
    std::size_t channels = 1;
    std::size_t times = 1;
    std::vector<ChannelInfo> channelInfos; ///< of the first channels; may be fewer than there are
    std::optional<double> frameInterval;   ///< seconds
    std::optional<AxisCounts> series;      ///< as in FileAxes
};

/// A file that was found good so far, with the frames that it holds. A channel of it has one component, or three of a
/// colour.
class FrameSet {
public:
    FrameSet() = default;
    FrameSet(const FrameSet&) = delete;
    FrameSet& operator=(const FrameSet&) = delete;
    virtual ~FrameSet() = default;

    /// Of each frame.
    virtual const FrameHeader& GetHeader() const = 0;
    virtual const FrameAxes& GetAxes() const = 0;

    /// The frame of a channel at a time point, both of which exist. The source must not outlive this. One source at a
    /// time is used.
    /// @throws IOException the frame is not all in the file
    virtual std::unique_ptr<FrameSource> Open(std::size_t channel, std::size_t time) = 0;
};

class WatchState;

/// A plain file with its name, for messages. A ReadingWatch is told of all that is read from it.
class InputFile {
public:
    /// @throws IOException there is no such file, it is a folder or no plain file, there is no permission
    explicit InputFile(std::string fileName);

    const std::string& GetName() const { return name; }
    std::uint64_t GetLength() const { return file.GetLength(); }

    /// Whether the other one is the same file, by whatever name.
    bool IsSame(const InputFile& other) const { return file.IsSame(other.file); }

    /// Reads up to `bytes` bytes at `at` and returns how many there were.
    /// @throws IOException when the system fails to read; ReadingStopped
    std::size_t ReadAt(std::uint64_t at, void* to, std::size_t bytes) const;
    /// Reads exactly as much. @throws IOException "... is damaged: ..." when the file ends before.
    void ReadExactly(std::uint64_t at, void* to, std::size_t bytes) const;
    /// The same for many bytes, by a way that suits the processor.
    void ReadVoxels(std::uint64_t at, std::byte* to, std::size_t bytes) const;

private:
    std::size_t ReadAtOnce(std::uint64_t at, void* to, std::size_t bytes) const;
    std::size_t ReadWatched(std::uint64_t at, std::byte* to, std::size_t bytes) const;

    std::string name;
    PlainFile file;
    std::shared_ptr<WatchState> watch; ///< of the thread that opened the file; null if it had none
};

/// Has `read` called for the bytes from 0 to `bytes`; many of them in two shares, on two threads at once. Copying out
/// of the page cache and clearing the memory below the target are both work for a processor.
void ReadInShares(std::size_t bytes, const std::function<void(std::size_t from, std::size_t until)>& read);

/// The formats' entries. Each takes the file over.
bool LooksLikeTiff(const unsigned char* head, std::size_t bytes);
bool LooksLikeIcs(const unsigned char* head, std::size_t bytes);
std::unique_ptr<FrameSource> OpenTiffFrame(std::unique_ptr<InputFile> file);
std::unique_ptr<FrameSource> OpenIcsFrame(std::unique_ptr<InputFile> file);
std::unique_ptr<FrameSet> OpenTiffFrames(std::unique_ptr<InputFile> file);
std::unique_ptr<FrameSet> OpenIcsFrames(std::unique_ptr<InputFile> file);

/// Opens a file by its content, as the one frame that it must hold.
std::unique_ptr<FrameSource> OpenFrame(const char* fileName);
/// Opens a file by its content, as the frames that it holds.
std::unique_ptr<FrameSet> OpenFrames(const char* fileName);

/// What a writer gets: the header's size, sample, components, resolution, offset and description, and the voxels,
/// components together, in the machine's byte order.
struct FrameToWrite {
    FrameHeader header;
    const std::byte* voxels = nullptr;
    bool compress = false;
};
/// @return a sentence for the user on what the file lacks of the description; empty if it has all of it
std::string WriteTiffFrame(const std::string& fileName, const FrameToWrite& frame);
std::string WriteIcsFrame(const std::string& fileName, const FrameToWrite& frame);

} // namespace kep::detail
