#pragma once

#include "image/kep.h"
#include "image/zel_framegrid.h"
#include "model/zel_export.h"
#include "model/zel_extremes.h"

#include <wx/arrstr.h>
#include <wx/string.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <valarray>
#include <vector>

/// Sequences of frames, as the viewers show them.
namespace mor {

namespace detail {
struct FrameGeometry;
}

/// A time sequence of 3D frames of one voxel type: the image that a viewer shows. All frames share one offset,
/// resolution and size; each has a name and its own block of voxels. Minimum and maximum over all frames are cached.
///
/// A voxel is addressed by its frame t and inside the frame by coordinates or by an index in which x runs fastest:
/// index = (sizeY * z + y) * sizeX + x. Accessors test nothing: a wrong index is undefined. Failures of the class
/// itself are kep::InternalException, thrown before anything has changed; those of files are kep::IOException.
///
/// The container owns its frames. Nothing is locked: use it on one thread.
template <typename T>
class ZEL_EXPORT Image4d {
public:
    using Frame = kep::Image3d<T>;                            ///< type of a frame
    using PixelBox = kep::VOI<kep::T_pair<int, std::size_t>>; ///< part of a frame, in voxels

    /// An empty container. Null pointers give offset (0, 0, 0) and no resolution; others are copied from.
    /// @param offset      microns, position of the first voxel
    /// @param resolution  pixels per micron
    /// @param timeStep    time between two frames, in the unit of whoever gives it
    explicit Image4d(const kep::Vector3d<float>* offset = nullptr, const kep::Resolution* resolution = nullptr,
                     float timeStep = 0);

    /// A deep copy, or a deep copy of one box of every frame. With a box the size is the box's, and the offset is
    /// src.offset + PixelsToMicrons(box origin, src.resolution); voxels of the box outside src are T(). The extremes
    /// are those of the copy.
    /// @param src  not changed; shares nothing with the copy
    /// @param voi  in voxels, or null for the whole
    /// @throws kep::InternalException src is not consistent; std::bad_alloc
    Image4d(const Image4d& src, const PixelBox* voi = nullptr);

    /// Shallow: the two containers then share the frames of src, and only one of them may be destroyed. The frames
    /// that this container had are neither deleted nor kept: call DestroyData before, unless another container holds
    /// them.
    Image4d& operator=(const Image4d& src);

    /// Deletes the frames.
    ~Image4d();

    // --- size and geometry ---

    /// @{
    /// Voxels along the axes of a frame, or frames of the sequence. Width, height and slices are x, y and z.
    kep::Vector3d<std::size_t> GetSize() const { return size; }
    std::size_t GetSizeX() const { return size.x; }
    std::size_t GetSizeY() const { return size.y; }
    std::size_t GetSizeZ() const { return size.z; }
    std::size_t GetSizeT() const { return sizeT; }
    std::size_t GetWidth() const { return size.x; }
    std::size_t GetHeight() const { return size.y; }
    std::size_t GetNumSlices() const { return size.z; }
    std::size_t GetNumFrames() const { return sizeT; }
    /// @}
    /// Voxels of one slice.
    std::size_t GetSliceSize() const { return size.x * size.y; }
    /// Voxels of one frame.
    std::size_t GetFrameSize() const { return size.x * size.y * size.z; }
    /// Microns, position of the first voxel. A change through the reference does not reach the frames.
    kep::Vector3d<float>& GetOffset() { return offset; }
    const kep::Vector3d<float>& GetOffset() const { return offset; } ///< to read
    /// Pixels per micron. A change through the reference does not reach the frames.
    kep::Resolution& GetResolution() { return resolution; }
    const kep::Resolution& GetResolution() const { return resolution; } ///< to read
    float GetTimeStep() const { return timeStep; } ///< between two frames, in the unit of whoever gave it
    /// There is no frame, or the frames have no voxels.
    bool IsEmpty() const { return sizeT == 0 || size.x == 0 || size.y == 0 || size.z == 0; }
    void SetTimeStep(float newTimeStep) { timeStep = newTimeStep; } ///< in any unit; the viewer has no use for it
    /// Moves the container and every frame. Microns.
    void SetOffset(const kep::Vector3d<float>& newOffset);
    /// Scales the container and every frame. Pixels per micron.
    void SetResolution(const kep::Resolution& newResolution);

    // --- index arithmetic inside a frame; the frame must have voxels ---

    /// @{
    /// Coordinates of a voxel from its index in the frame, or the index from the coordinates. Nothing is tested.
    std::size_t GetX(std::size_t i) const { return i % size.x; }
    std::size_t GetY(std::size_t i) const { return (i / size.x) % size.y; }
    /// No modulo: an index past the frame gives a z past the frame.
    std::size_t GetZ(std::size_t i) const { return (i / size.x) / size.y; }
    kep::Vector3d<std::size_t> GetFramePos(std::size_t i) const { return detail::IndexToPosition(size, i); }
    kep::Vector3d<int> GetInFrameCoords(std::size_t i) const { return detail::IndexToCoordinates(size, i); }
    std::size_t GetInFrameIndex(std::size_t x, std::size_t y, std::size_t z) const {
        return detail::PositionToIndex(size, x, y, z);
    }
    std::size_t GetInFrameIndex(const kep::Vector3d<std::size_t>& p) const {
        return detail::PositionToIndex(size, p.x, p.y, p.z);
    }
    /// @}

    // --- tests of position ---

    /// Each coordinate is at least 0 and at most its size - 1.
    bool Include(int x, int y, int z) const { return detail::IncludesPosition(size, x, y, z); }
    bool Include(const kep::Vector3d<int>& p) const { return Include(p.x, p.y, p.z); } ///< the same
    /// The same, and 0 <= t < sizeT - 1. The last frame is outside on purpose, so a sequence of one frame includes
    /// no t at all: hosts rely on it.
    bool Include(int x, int y, int z, int t) const { return Include(x, y, z) && detail::IncludesTime(sizeT, t); }
    bool Include(const kep::Vector3d<int>& p, int t) const { return Include(p.x, p.y, p.z, t); } ///< the same
    /// The voxel lies on a face of the frame. An axis of size 1 has no faces.
    bool OnFrameBorder(std::size_t x, std::size_t y, std::size_t z) const {
        return detail::OnFrameBorder(size, x, y, z);
    }
    bool OnFrameBorder(const kep::Vector3d<std::size_t>& p) const { return OnFrameBorder(p.x, p.y, p.z); } ///< the same
    /// OnFrameBorder, or t is the first or last of several frames.
    bool OnBorder(std::size_t x, std::size_t y, std::size_t z, std::size_t t) const {
        return OnFrameBorder(x, y, z) || detail::OnAxisBorder(sizeT, t);
    }
    /// The same.
    bool OnBorder(const kep::Vector3d<std::size_t>& p, std::size_t t) const { return OnBorder(p.x, p.y, p.z, t); }
    /// t is the first or the last frame; a single frame is both.
    bool OnSequenceBorder(std::size_t t) const { return detail::OnSequenceBorder(sizeT, t); }

    // --- voxels and frames; writing leaves the cached extremes as they are ---

    /// @{
    /// A voxel by its frame and its place there.
    T GetVoxel(std::size_t i, std::size_t t) const { return frames[t]->GetVoxel(i); }
    T GetVoxel(std::size_t x, std::size_t y, std::size_t z, std::size_t t) const {
        return frames[t]->GetVoxel(x, y, z);
    }
    T GetVoxel(const kep::Vector3d<std::size_t>& p, std::size_t t) const { return frames[t]->GetVoxel(p); }
    /// @}
    /// @{
    /// Sets a voxel by its frame and its place there.
    void SetVoxel(std::size_t i, std::size_t t, T v) { frames[t]->SetVoxel(i, v); }
    void SetVoxel(std::size_t x, std::size_t y, std::size_t z, std::size_t t, T v) { frames[t]->SetVoxel(x, y, z, v); }
    void SetVoxel(const kep::Vector3d<std::size_t>& p, std::size_t t, T v) { frames[t]->SetVoxel(p.x, p.y, p.z, v); }
    /// @}
    /// @{
    /// Address of a voxel by its frame and its place there; holds until the frame gets another block.
    T* GetVoxelAddr(std::size_t i, std::size_t t) { return frames[t]->GetVoxelAddr(i); }
    const T* GetVoxelAddr(std::size_t i, std::size_t t) const { return GetFirstVoxelAddr(t) + i; }
    T* GetVoxelAddr(std::size_t x, std::size_t y, std::size_t z, std::size_t t) {
        return frames[t]->GetVoxelAddr(x, y, z);
    }
    const T* GetVoxelAddr(std::size_t x, std::size_t y, std::size_t z, std::size_t t) const {
        return GetFirstVoxelAddr(t) + GetInFrameIndex(x, y, z);
    }
    /// @}
    /// Null in a frame without voxels.
    T* GetFirstVoxelAddr(std::size_t t) { return frames[t]->GetFirstVoxelAddr(); }
    const T* GetFirstVoxelAddr(std::size_t t) const { return GetImage(t)->GetFirstVoxelAddr(); } ///< to read
    /// @{
    /// The voxels of a frame in one block.
    std::valarray<T>& GetVoxelData(std::size_t t) { return frames[t]->GetVoxelData(); }
    const std::valarray<T>& GetVoxelData(std::size_t t) const { return GetImage(t)->GetVoxelData(); }
    /// @}
    /// The frames in time order, owned by the container. Whoever changes the vector keeps TestConsistency at 0.
    std::vector<Frame*>& GetVoxelData() { return frames; }
    const std::vector<Frame*>& GetVoxelData() const { return frames; } ///< to read
    /// @{
    /// A frame, which stays the container's.
    Frame* GetImage(std::size_t t) { return frames[t]; }
    const Frame* GetImage(std::size_t t) const { return frames[t]; }
    Frame* operator[](std::size_t t) { return frames[t]; }
    const Frame* operator[](std::size_t t) const { return frames[t]; }
    /// @}
    /// @{
    /// Names of the frames: those of their files, or what the host has given them.
    const wxString& GetImageName(std::size_t t) const { return names[t]; }
    void SetImageName(std::size_t t, const wxString& name) { names[t] = name; }
    const wxArrayString& GetImageNames() const { return names; }
    /// @}

    // --- contents ---

    /// Gives the container t frames of x * y * z voxels, all with its offset and resolution and with the name "no
    /// file specified". Frames that it has are resized in place, missing ones made, surplus ones deleted. What the
    /// voxels hold is not promised. The extremes stay. With t = 0 it gives an empty container the geometry that
    /// InsertFrame asks for.
    /// @throws kep::LibException too many voxels; std::bad_alloc. A frame that could not be made has changed nothing;
    ///         if only some could be resized, the container is left without frames.
    void MakeRoom(std::size_t x, std::size_t y, std::size_t z, std::size_t t);
    /// The same.
    void MakeRoom(const kep::Vector3d<std::size_t>& newSize, std::size_t t) {
        MakeRoom(newSize.x, newSize.y, newSize.z, t);
    }

    /// Deletes the frames; size and sizeT become 0. Offset, resolution, time step and extremes stay.
    void DestroyData();

    /// Lets go of the voxels alone: the size becomes 0, the frames stay, with their names.
    void DisposeData();

    /// The first fault found: 0 none; 1 the numbers of frames, of names and sizeT differ; then frame by frame, 2 its
    /// size, 3 its offset, 4 its resolution differs from the container's. Compared exactly; a NaN differs from all.
    int TestConsistency() const;

    /// Fills this container with one box of each frame of src, reusing the frames that it has. Frames too many are
    /// deleted. If src has more frames than this container, exactly one is added and the rest of src is left out.
    ///
    /// The new offset is src's plus PixelsToMicrons of the box's origin by the resolution that this container had
    /// before. The added frame takes the box's six numbers as microns. Both may make the result inconsistent where
    /// the resolutions are not 1: TestConsistency tells. Make the container with the copy constructor to avoid it.
    /// @throws kep::InternalException src is not consistent: nothing has changed. When memory runs out, the container
    ///         keeps the frames copied so far.
    void CopyFromVOI(const Image4d& src, const PixelBox& voi);

    // --- extremes; read, inserted and copied frames keep the cache current, writes to voxels do not ---

    /// Of all frames, as last measured; empty values if they never were.
    const ExtremaValues<T>& GetExtremes() const { return extremes; }
    T GetCachedMinValue() const { return extremes.min; } ///< for colours by component
    T GetCachedMaxValue() const { return extremes.max; } ///< for colours by component
    /// Scans all frames; without voxels the extremes become the empty values of ExtremaValues.
    void UpdateMinMaxValues();
    /// UpdateMinMaxValues, then the cached value: a full scan at every call.
    T GetUpdatedMinValue() {
        UpdateMinMaxValues();
        return extremes.min;
    }
    /// Likewise.
    T GetUpdatedMaxValue() {
        UpdateMinMaxValues();
        return extremes.max;
    }

    // --- files and frames ---

    /// Reads one file per frame. The old frames go first; the time step stays. Offset, resolution and size are those
    /// of the first file, and all others must have exactly the same. Float and complex files with invalid values ask
    /// for a running user interface, see ReplaceInvalidFloats. Takes the memory of the voxels plus, at most, one frame.
    /// @param Names   in time order
    /// @param binary  the files hold two-valued images: voxels become 255 and 0
    /// @throws kep::InternalException Names is empty (nothing has changed), or a file differs in geometry;
    ///         kep::IOException a file can't be read. The frames read so far stay.
    void ReadSequence(const wxArrayString& Names, bool binary);

    /// The first step of ReadSequence, for callers that show progress: then call ReadSequence_Next with the same
    /// array while GetNumFrames() is below the number of names.
    void ReadSequence_First(const wxArrayString& Names, bool binary);
    /// Reads Names[GetNumFrames()], which must exist, and appends it. A failure changes nothing.
    void ReadSequence_Next(const wxArrayString& Names, bool binary);

    /// Writes the frames StartIndex to StopIndex, both included, each to the file prefix + number + suffix. The number
    /// is the frame's own, padded with zeros to `digits` places. The suffix chooses the format (".ics", ".tif").
    /// The indexes are not tested. Where a format can't hold all of a frame's description, a warning is logged.
    /// @param prefix, suffix         UTF-8
    /// @param digits                 0 or more
    /// @param StartIndex, StopIndex  0 <= StartIndex <= StopIndex < GetNumFrames()
    /// @throws kep::InternalException wrong order of indexes, an inconsistent image or a name that is not UTF-8: no
    ///         file was written; kep::IOException
    void SaveSequence(const char* prefix, int digits, const char* suffix, int StartIndex, int StopIndex) const;

    /// Takes a frame into the sequence; the frames from t on move up by one. One pass over the voxels, for extremes.
    /// @param frame  same size, offset and resolution as the container, compared exactly; the container owns it on
    ///               return, the caller still does after a throw
    /// @param name   of the frame
    /// @param t      number that the frame gets, 0 <= t < GetNumFrames(), or -1 for behind the last
    /// @throws kep::InternalException numbers of frames and names differ, null frame, wrong t, other geometry
    void InsertFrame(Frame* const frame, const wxString& name, int t);
    /// Inserts a copy.
    void InsertFrame(const Frame& frame, const wxString& name, int t);
    /// Reads a file and inserts it under its file name. Invalid floats are kept.
    /// @throws kep::InternalException also for an empty name; kep::IOException
    void InsertFrame(const wxString& fileName, int t);

    /// Deletes a frame and scans the others for the extremes. The size stays, even without frames.
    /// @throws kep::InternalException numbers of frames and names differ, or not 0 <= t < GetNumFrames()
    void RemoveFrame(int t);

private:
    struct MeasuredFrame {
        std::unique_ptr<Frame> frame;
        std::optional<ExtremaValues<T>> extremes; ///< none: not known yet
    };
    static MeasuredFrame ReadFrame(const wxString& name, bool binary);
    detail::FrameGeometry GetGeometry() const;
    void TakeGeometry(const Frame& frame);
    void AppendFrame(std::unique_ptr<Frame> frame, const wxString& name,
                     const std::optional<ExtremaValues<T>>& known = {});
    void TakeExtremes(const Frame& frame, const std::optional<ExtremaValues<T>>& known = {});

    kep::Vector3d<float> offset;
    kep::Resolution resolution;
    kep::Vector3d<std::size_t> size;
    std::size_t sizeT = 0;
    float timeStep = 0;
    std::vector<Frame*> frames;
    wxArrayString names;
    ExtremaValues<T> extremes;
};

#define ZEL_DECLARE(T) extern template class Image4d<T>;
KEP_CONTAINER_TYPES(ZEL_DECLARE)
#undef ZEL_DECLARE

} // namespace mor
