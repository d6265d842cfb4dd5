#pragma once

// Definitions of Image4d: its life, its geometry, its copies and its extremes. Included where it is instantiated.

#include "image/sequence/zel_framelist.h"
#include "image/zel_image4d.h"

#include <algorithm>
#include <utility>

namespace mor {

template <typename T>
Image4d<T>::Image4d(const kep::Vector3d<float>* anOffset, const kep::Resolution* aResolution, float aTimeStep)
    : offset(anOffset != nullptr ? *anOffset : kep::Vector3d<float>()),
      resolution(aResolution != nullptr ? *aResolution : kep::Resolution()),
      timeStep(aTimeStep) {}

// The constructor called first makes the object, so a copy that fails deletes its frames in the destructor.
template <typename T>
Image4d<T>::Image4d(const Image4d& src, const PixelBox* voi) : Image4d(&src.offset, &src.resolution, src.timeStep) {
    if (src.TestConsistency() != 0)
        throw kep::InternalException("Image4d, copy constructor: Source image is not consistent!");
    if (voi != nullptr) {
        size = voi->size;
        offset += kep::PixelsToMicrons(voi->offset, resolution);
    } else {
        size = src.size;
    }
    frames.reserve(src.frames.size());
    for (std::size_t t = 0; t < src.frames.size(); ++t)
        AppendFrame(std::make_unique<Frame>(*src.frames[t], voi), src.names[t]);
}

template <typename T>
Image4d<T>& Image4d<T>::operator=(const Image4d& src) = default;

template <typename T>
Image4d<T>::~Image4d() {
    DestroyData();
}

template <typename T>
void Image4d<T>::SetOffset(const kep::Vector3d<float>& newOffset) {
    offset = newOffset;
    for (Frame* frame : frames)
        frame->SetOffset(offset);
}

template <typename T>
void Image4d<T>::SetResolution(const kep::Resolution& newResolution) {
    resolution = newResolution;
    for (Frame* frame : frames)
        frame->SetResolution(resolution);
}

template <typename T>
void Image4d<T>::MakeRoom(std::size_t x, std::size_t y, std::size_t z, std::size_t t) {
    detail::MakeSequence({offset, resolution, {x, y, z}}, t, size, sizeT, frames, names);
}

template <typename T>
void Image4d<T>::DestroyData() {
    size = {};
    detail::CutFrames(frames, names, 0);
    sizeT = 0;
}

template <typename T>
void Image4d<T>::DisposeData() {
    size = {};
    for (Frame* frame : frames)
        frame->DisposeData();
}

template <typename T>
int Image4d<T>::TestConsistency() const {
    return detail::TestFrames(GetGeometry(), sizeT, frames, names.size());
}

template <typename T>
void Image4d<T>::CopyFromVOI(const Image4d& src, const PixelBox& voi) {
    if (src.TestConsistency() != 0)
        throw kep::InternalException("Image4d, copy from VOI: Source image is not consistent!");
    // src may be this container, so what is asked of it comes before what changes here.
    const std::size_t sourceCount = src.frames.size();
    const std::size_t ownCount = frames.size();
    // By the resolution from before the copy: the order is part of the contract.
    const kep::Vector3d<float> shift = kep::PixelsToMicrons(voi.offset, resolution);
    offset = src.offset;
    offset += shift;
    resolution = src.resolution;
    timeStep = src.timeStep;
    size = voi.size;
    sizeT = 0;
    try {
        for (std::size_t t = 0; t < std::min(sourceCount, ownCount); ++t) {
            frames[t]->CopyFromVOI(*src.frames[t], voi, false, T());
            if (t < names.size())
                names[t] = src.names[t];
            else
                names.Add(src.names[t]);
            ++sizeT;
            TakeExtremes(*frames[t]);
        }
        detail::CutFrames(frames, names, sizeT);
        if (ownCount < sourceCount) {
            const kep::VOI<kep::T_pair<float, float>> box(
                static_cast<float>(voi.offset.x), static_cast<float>(voi.offset.y), static_cast<float>(voi.offset.z),
                static_cast<float>(voi.size.x), static_cast<float>(voi.size.y), static_cast<float>(voi.size.z));
            AppendFrame(std::make_unique<Frame>(*src.frames[ownCount], box), src.names[ownCount]);
        }
    } catch (...) {
        detail::CutFrames(frames, names, sizeT);
        throw;
    }
}

template <typename T>
void Image4d<T>::UpdateMinMaxValues() {
    extremes.SetEmpty();
    bool found = false;
    for (const Frame* frame : frames) {
        if (frame->IsEmpty())
            continue;
        if (found)
            MergeFrameExtremes(*frame, extremes);
        else
            ComputeFrameExtremes(*frame, extremes);
        found = true;
    }
}

template <typename T>
detail::FrameGeometry Image4d<T>::GetGeometry() const {
    return {offset, resolution, size};
}

template <typename T>
void Image4d<T>::AppendFrame(std::unique_ptr<Frame> frame, const wxString& name,
                             const std::optional<ExtremaValues<T>>& known) {
    detail::AppendFrame(std::move(frame), name, frames, names);
    ++sizeT;
    TakeExtremes(*frames.back(), known);
}

template <typename T>
void Image4d<T>::TakeExtremes(const Frame& frame, const std::optional<ExtremaValues<T>>& known) {
    if (sizeT == 1)
        extremes.SetEmpty();
    if (frame.IsEmpty())
        return;
    // Frames without voxels have no part in the extremes: the first one with voxels sets them.
    const auto end = frames.begin() + static_cast<std::ptrdiff_t>(sizeT);
    const bool widens =
        std::any_of(frames.begin(), end, [&frame](const Frame* other) { return other != &frame && !other->IsEmpty(); });
    ExtremaValues<T> own;
    if (known)
        own = *known;
    else
        ComputeFrameExtremes(frame, own);
    if (widens)
        extremes.Merge(own);
    else
        extremes = own;
}

} // namespace mor
