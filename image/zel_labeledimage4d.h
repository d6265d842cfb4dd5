#pragma once

#include "image/kep.h"
#include "image/zel_framegrid.h"
#include "image/zel_image4d.h"
#include "model/zel_export.h"

#include <wx/arrstr.h>
#include <wx/string.h>

#include <complex>
#include <cstddef>
#include <memory>
#include <valarray>
#include <vector>

namespace mor {

/// A time sequence of labelled frames: the segmentation that lies over an Image4d. Its shape, its index arithmetic, its
/// accessors and its failures are those of Image4d; where nothing is said, so is what an operation does. It keeps no
/// extremes.
///
/// L is the type of labels, V the voxel type that files are read with.
///
/// The container owns its frames. Copies share them: only one of the copies may be destroyed. Nothing is locked: use
/// it on one thread.
template <typename L, typename V>
class ZEL_EXPORT LabeledImage4d {
public:
    using Frame = kep::LabeledImage3d<L, V>; ///< type of a frame

    /// An empty container. Null pointers give offset (0, 0, 0) and no resolution; others are copied from.
    /// @param useConnectedComponents  how a file becomes labels: false takes its voxels for labels, true gives each
    ///                                connected set of voxels that are not 0 a label of its own
    /// @param offset                  microns, position of the first voxel
    /// @param resolution              pixels per micron
    /// @param timeStep                time between two frames, in the unit of whoever gives it
    explicit LabeledImage4d(bool useConnectedComponents = false, const kep::Vector3d<float>* offset = nullptr,
                            const kep::Resolution* resolution = nullptr, float timeStep = 0);

    /// Shallow, as the assignment: the two containers share the frames of src, and only one of them may be destroyed.
    LabeledImage4d(const LabeledImage4d& src);
    /// The frames that this container had are neither deleted nor kept: call DestroyData before, unless another
    /// container holds them.
    LabeledImage4d& operator=(const LabeledImage4d& src);

    /// Deletes the frames.
    ~LabeledImage4d();

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
    std::size_t GetSliceSize() const { return size.x * size.y; }          ///< voxels
    std::size_t GetFrameSize() const { return size.x * size.y * size.z; } ///< voxels
    /// @{
    /// As in Image4d: microns, pixels per micron, and time in the unit of whoever gave it.
    kep::Vector3d<float>& GetOffset() { return offset; }
    const kep::Vector3d<float>& GetOffset() const { return offset; }
    kep::Resolution& GetResolution() { return resolution; }
    const kep::Resolution& GetResolution() const { return resolution; }
    float GetTimeStep() const { return timeStep; }
    /// There is no frame, or the frames have no voxels.
    bool IsEmpty() const { return sizeT == 0 || size.x == 0 || size.y == 0 || size.z == 0; }
    void SetTimeStep(float newTimeStep) { timeStep = newTimeStep; }
    void SetOffset(const kep::Vector3d<float>& newOffset);
    void SetResolution(const kep::Resolution& newResolution);
    /// @}

    // --- index arithmetic inside a frame; the frame must have voxels ---

    /// @{
    /// Coordinates of a voxel from its index in the frame, or the index from the coordinates. Nothing is tested.
    std::size_t GetX(std::size_t i) const { return detail::IndexToPosition(size, i).x; }
    std::size_t GetY(std::size_t i) const { return detail::IndexToPosition(size, i).y; }
    std::size_t GetZ(std::size_t i) const { return detail::IndexToPosition(size, i).z; }
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

    /// @{
    /// Each coordinate is at least 0 and at most its size - 1.
    bool Include(int x, int y, int z) const { return detail::IncludesPosition(size, x, y, z); }
    bool Include(const kep::Vector3d<int>& p) const { return Include(p.x, p.y, p.z); }
    /// The last frame is outside, as in Image4d.
    bool Include(int x, int y, int z, int t) const { return Include(x, y, z) && detail::IncludesTime(sizeT, t); }
    bool Include(const kep::Vector3d<int>& p, int t) const { return Include(p.x, p.y, p.z, t); }
    /// @}
    /// @{
    /// As in Image4d.
    bool OnFrameBorder(std::size_t x, std::size_t y, std::size_t z) const {
        return detail::OnFrameBorder(size, x, y, z);
    }
    bool OnFrameBorder(const kep::Vector3d<std::size_t>& p) const { return OnFrameBorder(p.x, p.y, p.z); }
    bool OnBorder(std::size_t x, std::size_t y, std::size_t z, std::size_t t) const {
        return OnFrameBorder(x, y, z) || detail::OnAxisBorder(sizeT, t);
    }
    bool OnBorder(const kep::Vector3d<std::size_t>& p, std::size_t t) const { return OnBorder(p.x, p.y, p.z, t); }
    bool OnSequenceBorder(std::size_t t) const { return detail::OnSequenceBorder(sizeT, t); }
    /// @}

    // --- labels and frames; writing leaves the frames' components as they are ---

    /// @{
    /// A label by its frame and its place there.
    L GetVoxel(std::size_t i, std::size_t t) const { return frames[t]->GetVoxel(i); }
    L GetVoxel(std::size_t x, std::size_t y, std::size_t z, std::size_t t) const {
        return frames[t]->GetVoxel(x, y, z);
    }
    L GetVoxel(const kep::Vector3d<std::size_t>& p, std::size_t t) const { return frames[t]->GetVoxel(p); }
    /// @}
    /// @{
    /// Sets a label by its frame and its place there.
    void SetVoxel(std::size_t i, std::size_t t, L v) { frames[t]->SetVoxel(i, v); }
    void SetVoxel(std::size_t x, std::size_t y, std::size_t z, std::size_t t, L v) { frames[t]->SetVoxel(x, y, z, v); }
    void SetVoxel(const kep::Vector3d<std::size_t>& p, std::size_t t, L v) { frames[t]->SetVoxel(p.x, p.y, p.z, v); }
    /// @}
    /// @{
    /// Address of a label by its frame and its place there; holds until the frame gets another block.
    L* GetVoxelAddr(std::size_t i, std::size_t t) { return frames[t]->GetVoxelAddr(i); }
    const L* GetVoxelAddr(std::size_t i, std::size_t t) const { return GetImage(t)->GetVoxelAddr(i); }
    L* GetVoxelAddr(std::size_t x, std::size_t y, std::size_t z, std::size_t t) {
        return frames[t]->GetVoxelAddr(x, y, z);
    }
    const L* GetVoxelAddr(std::size_t x, std::size_t y, std::size_t z, std::size_t t) const {
        return GetImage(t)->GetVoxelAddr(x, y, z);
    }
    /// @}
    /// @{
    /// Null in a frame without voxels.
    L* GetFirstVoxelAddr(std::size_t t) { return frames[t]->GetFirstVoxelAddr(); }
    const L* GetFirstVoxelAddr(std::size_t t) const { return GetImage(t)->GetFirstVoxelAddr(); }
    /// @}
    /// @{
    /// The labels of a frame in one block.
    std::valarray<L>& GetVoxelData(std::size_t t) { return frames[t]->GetVoxelData(); }
    const std::valarray<L>& GetVoxelData(std::size_t t) const { return GetImage(t)->GetVoxelData(); }
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

    /// As in Image4d. Frames that change their size lose their components.
    void MakeRoom(std::size_t x, std::size_t y, std::size_t z, std::size_t t);
    /// The same.
    void MakeRoom(const kep::Vector3d<std::size_t>& newSize, std::size_t t) {
        MakeRoom(newSize.x, newSize.y, newSize.z, t);
    }
    /// @{
    /// As in Image4d.
    void DestroyData();
    void DisposeData();
    int TestConsistency() const;
    /// @}

    // --- files and frames ---

    /// Reads one file per frame. The old frames go first; the time step stays. Offset, resolution and size are those
    /// of the first file, and all others must have exactly the same. Takes the memory of the labels plus one frame as
    /// stored.
    /// @param Names      in time order
    /// @param reference  the image that the labels belong to: its offset, resolution and size must be exactly those of
    ///                   the first file. Null tests nothing; the number of frames is never compared.
    /// @throws kep::InternalException Names is empty (nothing has changed), or a file differs in geometry;
    ///         kep::LibException too many components; kep::IOException a file can't be read. The frames read so far
    ///         stay.
    template <typename T>
    void ReadSequence(const wxArrayString& Names, const Image4d<T>* const reference);
    /// The first step of ReadSequence, for callers that show progress: then call ReadSequence_Next with the same
    /// array while GetNumFrames() is below the number of names.
    template <typename T>
    void ReadSequence_First(const wxArrayString& Names, const Image4d<T>* const reference);
    /// Reads Names[GetNumFrames()], which must exist, and appends it. A failure changes nothing.
    void ReadSequence_Next(const wxArrayString& Names);

    /// As in Image4d, with labels as 16-bit numbers.
    void SaveSequence(const char* prefix, int digits, const char* suffix, int StartIndex, int StopIndex) const;

    /// Takes a frame that was made in memory into the sequence; the frames from t on move up by one. An empty
    /// container must have been given the frame's geometry before, by SetOffset, SetResolution and MakeRoom with t = 0.
    /// @param frame  same size, offset and resolution as the container, compared exactly; its components are those of
    ///               its labels. The container owns it on return, the caller still does after a throw
    /// @param name   of the frame
    /// @param t      number that the frame gets, 0 <= t < GetNumFrames(), or -1 for behind the last
    /// @throws kep::InternalException numbers of frames and names differ, null frame, wrong t, other geometry
    void InsertFrame(Frame* const frame, const wxString& name, int t);
    /// Deletes a frame. The size stays, even without frames.
    /// @throws kep::InternalException numbers of frames and names differ, or not 0 <= t < GetNumFrames()
    void RemoveFrame(int t);

protected:
    /// Makes the labelled frame of an image, by the way that the constructor was told.
    /// @return a new frame, which the caller owns
    Frame* CreateRegions(const kep::Image3d<V>& image, const kep::Neighbourhood& nb);

private:
    detail::FrameGeometry GetGeometry() const;
    void AppendFrame(std::unique_ptr<Frame> frame, const wxString& name);

    kep::Vector3d<float> offset;
    kep::Resolution resolution;
    kep::Vector3d<std::size_t> size;
    std::size_t sizeT = 0;
    float timeStep = 0;
    std::vector<Frame*> frames;
    wxArrayString names;
    bool useConnectedComponents;
};

/// Voxel types of the images that labels can be held against; X is called with each, and with L and V.
#define ZEL_REFERENCE_TYPES(X, L, V)                                                                                   \
    X(L, V, unsigned char) X(L, V, unsigned short) X(L, V, float) X(L, V, std::complex<float>)

#define ZEL_DECLARE_READING(L, V, T)                                                                                   \
    extern template ZEL_EXPORT void LabeledImage4d<L, V>::ReadSequence<T>(const wxArrayString&, const Image4d<T>*);    \
    extern template ZEL_EXPORT void LabeledImage4d<L, V>::ReadSequence_First<T>(const wxArrayString&,                  \
                                                                                const Image4d<T>*);
#define ZEL_DECLARE(L, V)                                                                                              \
    extern template class LabeledImage4d<L, V>;                                                                        \
    ZEL_REFERENCE_TYPES(ZEL_DECLARE_READING, L, V)
KEP_LABEL_TYPES(ZEL_DECLARE)
#undef ZEL_DECLARE
#undef ZEL_DECLARE_READING

} // namespace mor
