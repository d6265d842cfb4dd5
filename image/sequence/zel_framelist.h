#pragma once

// Private: what sequences of any kind of frame do with their list of frames and names.

#include "image/kep.h"

#include <wx/arrstr.h>
#include <wx/log.h>
#include <wx/string.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace mor::detail {

/// What all frames of a sequence share. Compared exactly; a NaN differs from all.
struct FrameGeometry {
    kep::Vector3d<float> offset;
    kep::Resolution resolution;
    kep::Vector3d<std::size_t> size;

    friend bool operator==(const FrameGeometry&, const FrameGeometry&) = default;
};

template <typename Frame>
FrameGeometry GeometryOf(const Frame& frame) {
    return {frame.offset, frame.resolution, frame.size};
}

/// The first fault of a sequence: 0 none, 1 counts, then frame by frame 2 size, 3 offset, 4 resolution.
template <typename Frame>
int TestFrames(const FrameGeometry& geometry, std::size_t sizeT, const std::vector<Frame*>& frames,
               std::size_t nameCount) {
    if (sizeT != frames.size() || sizeT != nameCount)
        return 1;
    for (const Frame* frame : frames) {
        if (frame->size != geometry.size)
            return 2;
        if (frame->offset != geometry.offset)
            return 3;
        if (frame->resolution != geometry.resolution)
            return 4;
    }
    return 0;
}

/// Deletes the frames from `count` on, and drops their names.
template <typename Frame>
void CutFrames(std::vector<Frame*>& frames, wxArrayString& names, std::size_t count) {
    for (std::size_t t = count; t < frames.size(); ++t)
        delete frames[t];
    frames.resize(std::min(count, frames.size()));
    if (names.size() > count)
        names.RemoveAt(count, names.size() - count);
}

/// Appends a frame, or throws and changes nothing.
template <typename Frame>
void AppendFrame(std::unique_ptr<Frame> frame, const wxString& name, std::vector<Frame*>& frames,
                 wxArrayString& names) {
    if (frames.size() == frames.capacity())
        frames.reserve(2 * frames.capacity() + 1);
    names.Add(name);
    frames.push_back(frame.release());
}

/// Gives the list exactly `count` frames of the geometry, resizing the first ones in place. The names are replaced by
/// a notice that there is no file. Throws what the frames' MakeRoom throws: then nothing has changed, or, when some
/// frames had been resized already, `frames` and `names` are empty.
template <typename Frame>
void MakeFrames(const FrameGeometry& geometry, std::size_t count, std::vector<Frame*>& frames, wxArrayString& names) {
    const auto make = [&geometry](Frame& frame) {
        frame.MakeRoom(geometry.size.x, geometry.size.y, geometry.size.z);
        frame.offset = geometry.offset;
        frame.resolution = geometry.resolution;
    };
    const std::size_t kept = std::min(frames.size(), count);
    std::vector<std::unique_ptr<Frame>> added;
    while (kept + added.size() < count) {
        added.push_back(std::make_unique<Frame>());
        make(*added.back());
    }
    frames.reserve(count);
    wxArrayString newNames;
    newNames.Add("no file specified", count);

    std::size_t resized = 0;
    try {
        for (; resized < kept; ++resized)
            make(*frames[resized]);
    } catch (...) {
        if (resized > 0)
            CutFrames(frames, names, 0);
        throw;
    }
    CutFrames(frames, names, kept);
    for (auto& frame : added)
        frames.push_back(frame.release());
    names.swap(newNames);
}

/// MakeFrames, with the sequence's own size and count: of an emptied list they become 0.
template <typename Frame>
void MakeSequence(const FrameGeometry& geometry, std::size_t count, kep::Vector3d<std::size_t>& size,
                  std::size_t& sizeT, std::vector<Frame*>& frames, wxArrayString& names) {
    const std::size_t before = frames.size();
    try {
        MakeFrames(geometry, count, frames, names);
    } catch (...) {
        if (frames.size() != before) {
            size = {};
            sizeT = 0;
        }
        throw;
    }
    size = geometry.size;
    sizeT = count;
}

/// @throws kep::InternalException there are no names to read
inline void CheckNames(const wxArrayString& names) {
    if (names.empty())
        throw kep::InternalException("ReadSequence(): array Names cannot be empty!");
}

/// @throws kep::InternalException the frame just read differs from the sequence
inline void CheckGeometry(const FrameGeometry& frame, const FrameGeometry& sequence) {
    if (frame != sequence)
        throw kep::InternalException("ReadSequence(): The frame metadata differs from the sequence metadata!");
}

// The texts of both tests name InsertFrame, whichever operation makes them: hosts know them so.

/// @throws kep::InternalException the numbers of frames and names are not that of the sequence
template <typename Frame>
void CheckCounts(std::size_t sizeT, const std::vector<Frame*>& frames, const wxArrayString& names) {
    if (sizeT != frames.size() || sizeT != names.size())
        throw kep::InternalException("InsertFrame(): Image4d metadata is not consistent.");
}

/// @throws kep::InternalException not least <= t < sizeT
inline void CheckTime(int t, int least, std::size_t sizeT) {
    if (t < least || static_cast<long long>(t) >= static_cast<long long>(sizeT))
        throw kep::InternalException("InsertFrame(): Incorrect value of the time parameter.");
}

/// Takes a frame into the list, which owns it on return; the frames from t on move up by one. Throws and changes
/// nothing, or does all.
/// @param t  -1 for behind the last
/// @throws kep::InternalException; std::bad_alloc
template <typename Frame>
void InsertFrameAt(int t, Frame* frame, const wxString& name, const FrameGeometry& sequence, std::size_t sizeT,
                   std::vector<Frame*>& frames, wxArrayString& names) {
    CheckCounts(sizeT, frames, names);
    if (frame == nullptr)
        throw kep::InternalException("InsertFrame(): NULL image pointer given.");
    CheckTime(t, -1, sizeT);
    if (GeometryOf(*frame) != sequence)
        throw kep::InternalException("InsertFrame(): Inserted image is not consistent with the sequence!");
    const std::size_t at = t == -1 ? sizeT : static_cast<std::size_t>(t);
    if (frames.size() == frames.capacity())
        frames.reserve(2 * frames.capacity() + 1);
    names.Insert(wxString(name), at); // a copy, as the name may be one of the list's own
    frames.insert(frames.begin() + static_cast<std::ptrdiff_t>(at), frame);
}

/// Deletes frame t and its name.
/// @throws kep::InternalException before anything changed
template <typename Frame>
void RemoveFrameAt(int t, std::size_t sizeT, std::vector<Frame*>& frames, wxArrayString& names) {
    CheckCounts(sizeT, frames, names);
    CheckTime(t, 0, sizeT);
    delete frames[static_cast<std::size_t>(t)];
    frames.erase(frames.begin() + t);
    names.RemoveAt(static_cast<std::size_t>(t));
}

/// Name of the file of frame i: prefix, the number with zeros in front up to `digits` places, suffix.
/// @param prefix, suffix  UTF-8
/// @throws kep::InternalException a name that is not UTF-8, which would otherwise lose its prefix or suffix
inline wxString MakeFrameFileName(const char* prefix, int digits, const char* suffix, int i) {
    const auto decode = [](const char* text) {
        const wxString decoded = wxString::FromUTF8(text);
        if (decoded.empty() && *text != '\0')
            throw kep::InternalException("SaveSequence(): The file name is not valid UTF-8!");
        return decoded;
    };
    const wxString format = wxString::Format("%%0%dd", digits);
    return decode(prefix) + wxString::Format(format, i) + decode(suffix);
}

/// What SaveSequence does, after its tests. Warns in the log of what a file lacks.
/// @param fault  result of TestConsistency
/// @param save   called with each frame and the name of its file; returns what the file lacks of the frame
/// @throws kep::InternalException; what `save` throws
template <typename Frame, typename Save>
void SaveFrames(const std::vector<Frame*>& frames, const char* prefix, int digits, const char* suffix, int startIndex,
                int stopIndex, int fault, Save save) {
    if (stopIndex < startIndex)
        throw kep::InternalException("SaveSequence(): StopIndex cannot be smaller than StartIndex!");
    if (fault != 0)
        throw kep::InternalException("SaveSequence(): The image is not consistent!");
    for (int i = startIndex; i <= stopIndex; ++i) {
        const wxString name = MakeFrameFileName(prefix, digits, suffix, i);
        wxLogMessage("%s", "Saving: " + name);
        const std::string loss = save(*frames[static_cast<std::size_t>(i)], name.fn_str());
        if (!loss.empty())
            wxLogWarning("%s", name + ": " + wxString::FromUTF8(loss));
    }
}

} // namespace mor::detail
