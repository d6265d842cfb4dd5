#pragma once

#include "model/zel_export.h"

#include <string>

namespace mor {

/// The state of browsing a sequence: which frame is shown, in which range, by which steps, and what automatic
/// browsing does at the ends. A plain value that knows no image.
///
/// Setters throw kep::InternalException and then leave `moved` as it was. The moves and the setters of limits and
/// range first clear `moved` and then set it when `current` changed, be it by being held in the range.
class ZEL_EXPORT ImageIterator {
public:
    /// Limits and range from first to last; the current index is the first.
    /// @throws kep::InternalException "Last index can't be smaller than the first index."
    ImageIterator(int first, int last);

    /// Stores both limits before any test, then holds the range inside them. Limits that miss the range leave
    /// rangeFirst above rangeLast.
    /// @throws kep::InternalException "Last index can't be smaller than the first index."
    void SetLimits(int first, int last);
    /// limitFirst <= first, last <= limitLast. @throws kep::InternalException "Incorrect index given."
    void SetRange(int first, int last);
    /// limitFirst <= i <= rangeLast. @throws kep::InternalException "Incorrect index given."
    void SetRangeFirst(int i);
    /// rangeFirst <= i <= limitLast. @throws kep::InternalException "Incorrect index given."
    void SetRangeLast(int i);
    /// 1 <= n <= rangeLast - rangeFirst + 1.
    bool IsStepAllowed(int n) const;
    /// IsStepAllowed(n). @throws kep::InternalException "Incorrect step size given."
    void SetStep(int n);
    /// Needs an upper-case "X". @throws kep::InternalException "Missing the number-replacement character 'X'."
    void SetNameTemplate(const std::string& newTemplate);
    /// n >= 1.
    static bool IsFPSAllowed(int n) { return n >= 1; }
    /// IsFPSAllowed(n). @throws kep::InternalException "Incorrect FPS requested."
    void SetFPS(int n);

    /// One step of automatic browsing, by `direction`, loop and oscillation mode.
    /// @return the index to show, which is `current`
    int Advance();
    /// One step by hand. At the end of the range: stays, or in loop mode starts again in the phase of the step.
    int StepForward();
    int StepBackward(); ///< likewise, at the start of the range
    /// Back to the first index of the range that whole steps reach; browsing goes forward from here.
    int GoToFirst();
    /// On to the last index of the range that whole steps reach; browsing goes backward from here.
    int GoToLast();

    /// Clears `moved`, then holds `current` in the range: raised to rangeFirst first, then lowered to rangeLast.
    /// @return `moved`
    bool Clamp();

    /// Milliseconds between two frames of automatic browsing, 0 above 1000 frames per second.
    int GetInterval() const { return 1000 / fps; }

    int limitFirst;                            ///< smallest index that the sequence has
    int limitLast;                             ///< largest index that the sequence has
    int rangeFirst;                            ///< first index of the browsed range
    int rangeLast;                             ///< last index of the browsed range
    int step = 1;                              ///< frames per move
    std::string nameTemplate = "imageXXX.tif"; ///< of exported files; the first run of X becomes the number
    int current;                               ///< the frame shown
    bool moved = false;                        ///< the last operation changed `current`
    bool loopMode = false;                     ///< automatic browsing goes on at the end of the range
    bool oscillationMode = false;              ///< going on means turning round; only with loopMode
    int direction = 1;                         ///< +1 or -1
    int fps = 1;                               ///< frames per second of automatic browsing

private:
    bool IsInRange(long long index) const { return rangeFirst <= index && index <= rangeLast; }
    void MoveBySteps(int sign);
    int StepTo(long long next);
};

} // namespace mor
