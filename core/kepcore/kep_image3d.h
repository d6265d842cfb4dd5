#pragma once

#include "core/kepcore/kep_export.h"
#include "core/kepcore/kep_fileformat.h"
#include "core/kepcore/kep_resolution.h"
#include "core/kepcore/kep_vector.h"
#include "core/kepcore/kep_voxeltypes.h"

#include <cstddef>
#include <map>
#include <string>
#include <valarray>

/// The imaging core: frames, reading and saving of files, resampling, projections, look-up tables, labelled frames.
/// Knows no toolkit.
namespace kep {

static_assert(sizeof(bool) == 1, "two-valued frames are walked byte by byte");

/// One 3D frame: a block of voxels with its place in space. x runs fastest, then y, then z:
/// index = (size.y * z + y) * size.x + x.
///
/// Access to voxels tests nothing: an index outside the frame is undefined. Operations that throw have changed
/// nothing when they do.
template <typename T>
class KEP_EXPORT Image3d {
public:
    using PixelBox = VOI<T_pair<int, std::size_t>>; ///< part of a frame, in voxels; may reach beyond it
    using MicronBox = VOI<T_pair<float, float>>;    ///< part of space, in microns

    /// An empty frame. Null pointers give offset (0, 0, 0) and no resolution; others are copied from.
    explicit Image3d(const Vector3d<float>* offset = nullptr, const Resolution* res = nullptr);

    /// Reads a file, as ReadImage.
    Image3d(const char* fileName, const PixelBox* voi, bool reserved, int reservedNumber, const Vector3d<float>* offset,
            const Resolution* res);

    /// A deep copy of a frame, or of the box of it given in voxels. The copy has the box's size and the offset
    /// src.offset + PixelsToMicrons(box origin, src.resolution); voxels of the box outside src are T().
    /// @throws LibException the box holds more voxels than can be addressed; std::bad_alloc
    Image3d(const Image3d& src, const PixelBox* voi = nullptr);

    /// A deep copy of a box in microns, in the image's own coordinates, cut to what lies inside src: first voxel
    /// round((box offset - src offset) * r) and size round(box size * r) with the usable resolution r, clipped. The
    /// new offset is src's plus PixelsToMicrons of the first voxel. A box beside the frame gives a frame without
    /// voxels.
    Image3d(const Image3d& src, const MicronBox& voi);

    /// Takes the voxels and all else over. What is moved from is an empty frame then, like a new one.
    Image3d(Image3d&& src) noexcept;

    virtual ~Image3d();

    /// Deep assignment of all five fields.
    /// @throws std::bad_alloc
    Image3d& operator=(const Image3d& src);
    /// As the move constructor; what was here goes.
    Image3d& operator=(Image3d&& src) noexcept;

    /// Loads a TIFF or ICS file, recognised by content, and converts its voxels to T. A voxel that T can't hold
    /// refuses the file: nothing is clipped, scaled or wrapped.
    /// @param fileName        in the file system's encoding
    /// @param voi             the box to keep, or null for the whole frame
    /// @param reserved        must be false
    /// @param reservedNumber  must be -1
    /// @param offset, res     replace what the file says, if not null
    /// @throws IOException for everything that goes wrong; the frame is then unchanged. Lack of memory is "ReadImage():
    ///         Not enough memory for '<name>'.", or "Out of memory." where there is none for that text either
    void ReadImage(const char* fileName, const PixelBox* voi, bool reserved, int reservedNumber,
                   const Vector3d<float>* offset, const Resolution* res);

    /// Loads one frame of a file that may hold several, converted as by ReadImage; the voxels of others are not read. A
    /// file that ReadImage takes as one gray frame has it as channel 0 at time 0. For several frames of one file, a
    /// FrameReader (kep_framereader.h) is quicker.
    /// @param fileName       in the file system's encoding
    /// @param channel, time  counted from 0; ReadFileAxes (kep_fileaxes.h) tells how many there are
    /// @throws IOException as ReadImage, and for a channel or time point that the file does not have; the frame is then
    ///         unchanged
    void ReadFrame(const char* fileName, std::size_t channel, std::size_t time);

    /// Writes the frame, or a box of it. The file appears under its name only when it is whole; until then, and
    /// after any failure, what stood there stays. A description that is longer than the format holds is cut; all else
    /// comes back as it is, or the frame is refused.
    /// @param fileName  in the file system's encoding
    /// @param format    FF_BY_NAME goes by the suffix of the name
    /// @param compress  gzip in ICS, deflate in TIFF; else plain
    /// @param voi       the box to write, in voxels, or null for the whole frame
    /// @return a sentence for the user on what the file lacks of the description; empty if it has all of it
    /// @throws IOException; std::bad_alloc when there is not even memory for its text
    std::string SaveImage(const char* fileName, FileFormat format, bool compress, const PixelBox* voi) const;

    /// Gives the frame x * y * z voxels. What they hold is not promised, except that a new block is zeroed; a frame
    /// that has this size already keeps its block.
    /// @throws LibException("MakeRoom(): The image is too large."); std::bad_alloc. Nothing has changed then.
    void MakeRoom(std::size_t x, std::size_t y, std::size_t z);

    /// Lets go of the voxels; the size becomes (0, 0, 0). Offset, resolution and description stay.
    void DisposeData();

    /// Fills this frame with a box of src, which may be this frame. Voxels of the box outside src get `fill`.
    /// @param src, voi      the frame, and the box of it in voxels
    /// @param keepGeometry  false: offset and resolution come from src and box as in the copy constructor; true: this
    ///                      frame keeps its own. The description stays in either case.
    /// @param fill          value of the voxels that src does not have
    /// @throws LibException("CopyFromVOI(): The box is too large.") it holds more voxels than can be addressed;
    ///         std::bad_alloc
    void CopyFromVOI(const Image3d& src, const PixelBox& voi, bool keepGeometry, T fill);

    T GetVoxel(std::size_t i) const { return begin()[i]; } ///< by its index
    /// The voxel at these coordinates.
    T GetVoxel(std::size_t x, std::size_t y, std::size_t z) const { return begin()[GetIndex(x, y, z)]; }
    /// The voxel at these coordinates.
    T GetVoxel(const Vector3d<std::size_t>& p) const { return begin()[GetIndex(p.x, p.y, p.z)]; }
    void SetVoxel(std::size_t i, T v) { begin()[i] = v; } ///< by its index
    /// Sets the voxel at these coordinates.
    void SetVoxel(std::size_t x, std::size_t y, std::size_t z, T v) { begin()[GetIndex(x, y, z)] = v; }

    T* GetVoxelAddr(std::size_t i) { return begin() + i; }             ///< holds until the frame gets another block
    const T* GetVoxelAddr(std::size_t i) const { return begin() + i; } ///< to read
    /// Address of a voxel by its coordinates; holds until the frame gets another block.
    T* GetVoxelAddr(std::size_t x, std::size_t y, std::size_t z) { return begin() + GetIndex(x, y, z); }
    /// The same, to read.
    const T* GetVoxelAddr(std::size_t x, std::size_t y, std::size_t z) const { return begin() + GetIndex(x, y, z); }

    /// The first voxel of the block; null in a frame without voxels.
    T* GetFirstVoxelAddr() { return begin(); }
    const T* GetFirstVoxelAddr() const { return begin(); }                   ///< to read
    T* begin() { return data.size() == 0 ? nullptr : &data[0]; }             ///< as GetFirstVoxelAddr
    const T* begin() const { return data.size() == 0 ? nullptr : &data[0]; } ///< to read
    T* end() { return begin() + data.size(); }                               ///< behind the last voxel
    const T* end() const { return begin() + data.size(); }                   ///< to read

    /// Index of a voxel by its coordinates.
    std::size_t GetIndex(std::size_t x, std::size_t y, std::size_t z) const { return (size.y * z + y) * size.x + x; }
    /// Coordinates of a voxel by its index. The frame must have voxels.
    Vector3d<std::size_t> GetPos(std::size_t i) const {
        return {i % size.x, (i / size.x) % size.y, (i / size.x) / size.y};
    }
    /// The voxel lies on a face of the frame. An axis of size 1 has no faces, so a 2D picture has its four sides only.
    bool OnBorder(std::size_t i) const {
        const Vector3d<std::size_t> p = GetPos(i);
        const auto outer = [](std::size_t at, std::size_t extent) {
            return extent != 1 && (at == 0 || at == extent - 1);
        };
        return outer(p.x, size.x) || outer(p.y, size.y) || outer(p.z, size.z);
    }

    const Vector3d<std::size_t>& GetSize() const { return size; } ///< voxels
    std::size_t GetSizeX() const { return size.x; }               ///< voxels along x
    std::size_t GetSizeY() const { return size.y; }               ///< voxels along y
    std::size_t GetSizeZ() const { return size.z; }               ///< voxels along z
    std::size_t GetNumVoxels() const { return data.size(); }      ///< of the whole frame
    bool IsEmpty() const { return data.size() == 0; }             ///< it has no voxels
    const Vector3d<float>& GetOffset() const { return offset; }   ///< microns, position of the first voxel
    /// Moves the frame. Microns.
    void SetOffset(const Vector3d<float>& microns) { offset = microns; }
    const Resolution& GetResolution() const { return resolution; } ///< pixels per micron
    /// Pixels per micron. The voxels stay as they are.
    void SetResolution(const Resolution& pixelsPerMicron) { resolution = pixelsPerMicron; }
    /// Free metadata of the file: names and values in UTF-8.
    const std::map<std::string, std::string>& GetDescription() const { return description; }
    /// What SaveImage writes besides the voxels, as far as the format has room: names and values in UTF-8.
    void SetDescription(const std::map<std::string, std::string>& newDescription) { description = newDescription; }
    std::valarray<T>& GetVoxelData() { return data; } ///< who changes its length keeps it in step with `size`
    const std::valarray<T>& GetVoxelData() const { return data; } ///< to read

    /// Sets all voxels.
    void Fill(T v);
    /// Exchanges all five fields.
    void Swap(Image3d& other) noexcept;

    Vector3d<float> offset;                         ///< microns, position of the first voxel
    Vector3d<std::size_t> size;                     ///< voxels
    Resolution resolution;                          ///< pixels per micron
    std::valarray<T> data;                          ///< size.x * size.y * size.z voxels in one block
    std::map<std::string, std::string> description; ///< free metadata of the file, carried along
};

#define KEP_DECLARE(T) extern template class Image3d<T>;
KEP_FRAME_TYPES(KEP_DECLARE)
#undef KEP_DECLARE

} // namespace kep
