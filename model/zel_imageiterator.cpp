#include "model/zel_imageiterator.h"

#include "core/kepcore/kep_exceptions.h"

#include <utility>

namespace mor {

namespace {

void Require(bool condition, const char* text) {
    if (!condition)
        throw kep::InternalException(text);
}

constexpr auto lastBelowFirst = "Last index can't be smaller than the first index.";
constexpr auto incorrectIndex = "Incorrect index given.";

} // namespace

ImageIterator::ImageIterator(int first, int last)
    : limitFirst(first), limitLast(last), rangeFirst(first), rangeLast(last), current(first) {
    Require(last >= first, lastBelowFirst);
}

void ImageIterator::SetLimits(int first, int last) {
    limitFirst = first;
    limitLast = last;
    Require(last >= first, lastBelowFirst);
    if (rangeFirst < first)
        rangeFirst = first;
    if (rangeLast > last)
        rangeLast = last;
    Clamp();
}

void ImageIterator::SetRange(int first, int last) {
    Require(first >= limitFirst && last <= limitLast, incorrectIndex);
    rangeFirst = first;
    rangeLast = last;
    Clamp();
}

void ImageIterator::SetRangeFirst(int i) {
    Require(limitFirst <= i && i <= rangeLast, incorrectIndex);
    rangeFirst = i;
    Clamp();
}

void ImageIterator::SetRangeLast(int i) {
    Require(rangeFirst <= i && i <= limitLast, incorrectIndex);
    rangeLast = i;
    Clamp();
}

bool ImageIterator::IsStepAllowed(int n) const {
    return 1 <= n && n <= static_cast<long long>(rangeLast) - rangeFirst + 1;
}

void ImageIterator::SetStep(int n) {
    Require(IsStepAllowed(n), "Incorrect step size given.");
    step = n;
}

void ImageIterator::SetNameTemplate(const std::string& newTemplate) {
    Require(newTemplate.find('X') != std::string::npos, "Missing the number-replacement character 'X'.");
    nameTemplate = newTemplate;
}

void ImageIterator::SetFPS(int n) {
    Require(IsFPSAllowed(n), "Incorrect FPS requested.");
    fps = n;
}

bool ImageIterator::Clamp() {
    const int before = current;
    if (current < rangeFirst)
        current = rangeFirst;
    if (current > rangeLast)
        current = rangeLast;
    return moved = current != before;
}

void ImageIterator::MoveBySteps(int sign) {
    if (rangeFirst > rangeLast)
        return;
    const long long at = current;
    const long long room = sign < 0 ? at - rangeFirst : rangeLast - at;
    const long long distance = step * (room / step);
    current = static_cast<int>(at + sign * distance);
    moved = moved || distance != 0;
}

int ImageIterator::GoToFirst() {
    direction = 1;
    Clamp();
    MoveBySteps(-1);
    return current;
}

int ImageIterator::GoToLast() {
    direction = -1;
    Clamp();
    MoveBySteps(+1);
    return current;
}

int ImageIterator::StepTo(long long next) {
    if (!IsInRange(next))
        return current;
    const int before = current;
    current = static_cast<int>(next);
    moved = moved || current != before;
    return current;
}

int ImageIterator::Advance() {
    Clamp();
    const long long c = current;
    long long next = c + static_cast<long long>(step) * direction;
    if (next > rangeLast && loopMode) {
        if (oscillationMode) {
            direction = -direction;
            next = c + static_cast<long long>(step) * direction;
        } else {
            direction = 1;
            MoveBySteps(-1);
            next = current;
        }
    }
    if (next < rangeFirst && loopMode) {
        if (oscillationMode) {
            direction = -direction;
            next = c + static_cast<long long>(step) * direction;
        } else {
            direction = -1;
            MoveBySteps(+1);
            next = current;
        }
    }
    return StepTo(next);
}

int ImageIterator::StepForward() {
    Clamp();
    const long long next = static_cast<long long>(current) + step;
    if (next > rangeLast && loopMode)
        return GoToFirst();
    return StepTo(next);
}

int ImageIterator::StepBackward() {
    Clamp();
    const long long next = static_cast<long long>(current) - step;
    if (next < rangeFirst && loopMode)
        return GoToLast();
    return StepTo(next);
}

} // namespace mor
