#pragma once

// Definitions of Image4d: reading, saving, inserting and removing frames. Included where it is instantiated.

#include "image/sequence/zel_frameconversion.h"
#include "image/sequence/zel_framelist.h"
#include "image/zel_image4d.h"

#include <wx/log.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <utility>

namespace mor {

template <typename T>
typename Image4d<T>::MeasuredFrame Image4d<T>::ReadFrame(const wxString& name, bool binary) {
    auto frame = std::make_unique<Frame>();
    if (binary) {
        const kep::Image3d<bool> twoValued(name.fn_str(), nullptr, false, -1, nullptr, nullptr);
        BinaryFrameToVoxels(twoValued, *frame);
        return {std::move(frame), {}};
    }
    RunningExtremes<T> extremes;
    bool isSound = true; // what is not changes after it was read
    {
        const kep::VoxelVisitor<T> measure([&](const T* first, std::size_t number) {
            extremes.Add(first, number);
            if constexpr (requires { AreFinite(first, number); })
                isSound = isSound && AreFinite(first, number);
        });
        frame->ReadImage(name.fn_str(), nullptr, false, -1, nullptr, nullptr);
    }
    if constexpr (requires { ReplaceInvalidFloats(*frame); })
        if (!isSound)
            ReplaceInvalidFloats(*frame);
    return {std::move(frame), isSound ? std::optional(extremes.Get()) : std::nullopt};
}

template <typename T>
void Image4d<T>::TakeGeometry(const Frame& frame) {
    offset = frame.GetOffset();
    resolution = frame.GetResolution();
    size = frame.GetSize();
}

template <typename T>
void Image4d<T>::ReadSequence(const wxArrayString& Names, bool binary) {
    const wxArrayString list = Names; // it may be this container's own, which the first step empties
    ReadSequence_First(list, binary);
    while (sizeT < list.size())
        ReadSequence_Next(list, binary);
}

template <typename T>
void Image4d<T>::ReadSequence_First(const wxArrayString& Names, bool binary) {
    detail::CheckNames(Names);
    const wxString name = Names[0];
    DestroyData();
    wxLogMessage("%s", "I_Reading: " + name);
    MeasuredFrame read = ReadFrame(name, binary);
    TakeGeometry(*read.frame);
    AppendFrame(std::move(read.frame), name, read.extremes);
}

template <typename T>
void Image4d<T>::ReadSequence_Next(const wxArrayString& Names, bool binary) {
    detail::CheckNames(Names);
    const wxString name = Names[sizeT];
    wxLogMessage("%s", "I_Reading: " + name);
    MeasuredFrame read = ReadFrame(name, binary);
    detail::CheckGeometry(detail::GeometryOf(*read.frame), GetGeometry());
    AppendFrame(std::move(read.frame), name, read.extremes);
}

template <typename T>
void Image4d<T>::SaveSequence(const char* prefix, int digits, const char* suffix, int StartIndex, int StopIndex) const {
    const auto save = [](const Frame& frame, const char* name) {
        return frame.SaveImage(name, kep::FF_BY_NAME, true, nullptr);
    };
    detail::SaveFrames(frames, prefix, digits, suffix, StartIndex, StopIndex, TestConsistency(), save);
}

template <typename T>
void Image4d<T>::InsertFrame(Frame* const frame, const wxString& name, int t) {
    detail::InsertFrameAt(t, frame, name, GetGeometry(), sizeT, frames, names);
    ++sizeT;
    TakeExtremes(*frame);
}

template <typename T>
void Image4d<T>::InsertFrame(const Frame& frame, const wxString& name, int t) {
    auto copy = std::make_unique<Frame>(frame);
    InsertFrame(copy.get(), name, t);
    copy.release(); // it is in the sequence now
}

template <typename T>
void Image4d<T>::InsertFrame(const wxString& fileName, int t) {
    if (fileName.empty())
        throw kep::InternalException("InsertFrame(): Empty image name given!");
    auto frame = std::make_unique<Frame>(fileName.fn_str(), nullptr, false, -1, nullptr, nullptr);
    InsertFrame(frame.get(), fileName, t);
    frame.release(); // it is in the sequence now
}

template <typename T>
void Image4d<T>::RemoveFrame(int t) {
    detail::RemoveFrameAt(t, sizeT, frames, names);
    --sizeT;
    UpdateMinMaxValues();
}

} // namespace mor
