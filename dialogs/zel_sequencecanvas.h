#pragma once

#include "model/zel_export.h"
#include "model/zel_imageiterator.h"

namespace zel {

/// What the export of a sequence needs of the canvas that shows it. Derived classes are windows.
class ZEL_EXPORT zel_SequenceCanvas {
public:
    /// A copy of the state of browsing.
    virtual mor::ImageIterator GetImageIterator() const = 0;
    /// Takes range, step, name template and speed from another state, and goes back by whole steps to the range's
    /// start; paints at once if that moves.
    /// @throws kep::InternalException from the setters, in the order range, step, template, speed
    virtual void UpdateImageIterator(const mor::ImageIterator& other) = 0;
    /// One step forward by hand, painted at once. @return whether another frame is shown
    virtual bool ShowNextImage() = 0;
    /// The viewer is about to go, and its image may be gone: nothing is drawn any more.
    virtual bool IsMapperDetached() const = 0;

protected:
    zel_SequenceCanvas() = default;
    /// @{
    /// For derived classes that can be copied; windows can't.
    zel_SequenceCanvas(const zel_SequenceCanvas&) = default;
    zel_SequenceCanvas& operator=(const zel_SequenceCanvas&) = default;
    /// @}
    virtual ~zel_SequenceCanvas() = default;
};

} // namespace zel
