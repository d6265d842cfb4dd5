#pragma once

#include <concepts>

namespace zel {

struct Point;
struct Size;
struct Rect;

namespace detail {

template <typename P>
concept OwnGeometry = std::same_as<P, Point> || std::same_as<P, Size> || std::same_as<P, Rect>;

} // namespace detail

/// Somebody else's pair of whole numbers, such as a toolkit's point or size.
template <typename P>
concept ForeignPair = !detail::OwnGeometry<P> && std::constructible_from<P, int, int> && requires(const P& pair) {
    { pair.x } -> std::same_as<const int&>;
    { pair.y } -> std::same_as<const int&>;
};

/// Somebody else's rectangle.
template <typename R>
concept ForeignRect =
    !detail::OwnGeometry<R> && std::constructible_from<R, int, int, int, int> && requires(const R& rect) {
    { rect.x } -> std::same_as<const int&>;
    { rect.y } -> std::same_as<const int&>;
    { rect.width } -> std::same_as<const int&>;
    { rect.height } -> std::same_as<const int&>;
};

// Places and extents in whole pixels, y downwards. The model knows no toolkit, so they turn into a toolkit's own and
// back by their form alone.

/// A place.
struct Point {
    int x = 0; ///< to the right
    int y = 0; ///< downwards

    constexpr Point() = default;
    constexpr Point(int newX, int newY) : x(newX), y(newY) {} ///< in this order
    template <ForeignPair P>
    constexpr Point(const P& other) : x(other.x), y(other.y) {} ///< of the toolkit's point or size
    /// Turns into a toolkit's point or size.
    template <ForeignPair P>
    constexpr operator P() const {
        return P(x, y);
    }
    friend constexpr bool operator==(const Point&, const Point&) = default; ///< of both coordinates
    /// Compares with a toolkit's point or size.
    template <ForeignPair P>
    friend constexpr bool operator==(const Point& a, const P& b) {
        return a.x == b.x && a.y == b.y;
    }
};

/// An extent: x is the width, y the height.
struct Size {
    int x = 0; ///< width
    int y = 0; ///< height

    constexpr Size() = default;
    constexpr Size(int width, int height) : x(width), y(height) {} ///< in this order
    template <ForeignPair P>
    constexpr Size(const P& other) : x(other.x), y(other.y) {} ///< of the toolkit's size or point
    /// Turns into a toolkit's size or point.
    template <ForeignPair P>
    constexpr operator P() const {
        return P(x, y);
    }
    friend constexpr bool operator==(const Size&, const Size&) = default; ///< of both extents
    /// Compares with a toolkit's size or point.
    template <ForeignPair P>
    friend constexpr bool operator==(const Size& a, const P& b) {
        return a.x == b.x && a.y == b.y;
    }
};

/// A place and an extent.
struct Rect {
    int x = 0;      ///< of the left edge
    int y = 0;      ///< of the top edge
    int width = 0;  ///< may be 0
    int height = 0; ///< may be 0

    constexpr Rect() = default;
    /// A rectangle from its top left corner.
    constexpr Rect(int left, int top, int newWidth, int newHeight)
        : x(left), y(top), width(newWidth), height(newHeight) {}
    /// A toolkit's rectangle.
    template <ForeignRect R>
    constexpr Rect(const R& other) : x(other.x), y(other.y), width(other.width), height(other.height) {}
    /// Turns into a toolkit's rectangle.
    template <ForeignRect R>
    constexpr operator R() const {
        return R(x, y, width, height);
    }
    friend constexpr bool operator==(const Rect&, const Rect&) = default; ///< of place and extent
    /// Compares with a toolkit's rectangle.
    template <ForeignRect R>
    friend constexpr bool operator==(const Rect& a, const R& b) {
        return a == Rect(b);
    }
};

} // namespace zel
