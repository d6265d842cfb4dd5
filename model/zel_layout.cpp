#include "model/zel_layout.h"

#include "model/zel_truncate.h"

#include <algorithm>
#include <cmath>

namespace zel {

namespace {

/// Two windows that share `available` pixels, wanting `first` and `second`, none of them below 0.
struct Shares {
    int first;
    int second;
};

Shares Share(int available, int first, int second) {
    const int half = available / 2;
    if (first >= half && second >= half)
        return {half, half};
    // In 64 bits, since at high zoom both wanted sizes are held at the limit of int.
    const bool tooMuch = static_cast<long long>(first) + second > available;
    if (tooMuch && first > second)
        return {available - second, second};
    return {first, tooMuch ? available - first : second};
}

/// The new visible range around the old one's middle, inside the box. The lower bound wins.
void KeepCentre(float& offset, float& size, float newSize, float boxOffset, float boxSize) {
    if (!(newSize > 0.0F && std::isfinite(newSize)))
        newSize = boxSize; // no scale to measure by: 0, below 0, infinite or NaN
    offset += (size - newSize) * 0.5F;
    if (offset + newSize > boxOffset + boxSize)
        offset = boxOffset + boxSize - newSize;
    offset = std::max(boxOffset, offset); // in this order, which NaN does not pass
    size = newSize;
}

} // namespace

kep::Vector3d<float> ScaleAtZoom(const kep::Vector3d<float>& baseScale, int zoom) {
    const auto level = static_cast<float>(zoom);
    const auto scaled = [&](float base) {
        return zoom > 0 ? base * (level + 1.0F) : zoom < 0 ? base / (1.0F - level) : base;
    };
    return {scaled(baseScale.x), scaled(baseScale.y), scaled(baseScale.z)};
}

bool ComputeViewLayout(const ViewLayoutInput& in, ViewLayout& layout) {
    const bool xy = in.shown[zel_PT_XY];
    const bool xz = in.shown[zel_PT_XZ];
    const bool yz = in.shown[zel_PT_YZ];
    if (!(xy || xz || yz) || (in.client.x == 0 && in.client.y == 0))
        return false;

    const bool beside = yz && (xy || xz); // YZ stands to the right of something
    const bool below = xz && (xy || yz);  // XZ stands under something
    const int w = std::max(0, in.client.x - 2 - in.border - (beside ? in.border : 0));
    const int h = std::max(0, in.client.y - 2 - in.border - (below ? in.border : 0));

    const int sx = PixelsAlong(in.boundingBox.size.x, in.scale.x);
    const int sy = PixelsAlong(in.boundingBox.size.y, in.scale.y);
    const int sz = PixelsAlong(in.boundingBox.size.z, in.scale.z);

    int widthXY = std::min(sx, w);
    int heightXY = std::min(sy, h);
    int widthYZ = std::min(sz, w);
    int heightXZ = std::min(sz, h);
    if (beside) {
        const Shares shares = Share(w, sx, sz);
        widthXY = shares.first;
        widthYZ = shares.second;
    }
    if (below) {
        const Shares shares = Share(h, sy, sz);
        heightXY = shares.first;
        heightXZ = shares.second;
    }
    widthXY = std::max(1, widthXY);
    heightXY = std::max(1, heightXY);
    widthYZ = std::max(1, widthYZ);
    heightXZ = std::max(1, heightXZ);
    if (xz && yz)
        widthYZ = heightXZ = std::min(widthYZ, heightXZ);
    const int depth = yz ? widthYZ : heightXZ;

    MicronBox visible = in.visibleBox;
    const MicronBox& box = in.boundingBox;
    KeepCentre(visible.offset.x, visible.size.x, static_cast<float>(widthXY) / in.scale.x, box.offset.x, box.size.x);
    KeepCentre(visible.offset.y, visible.size.y, static_cast<float>(heightXY) / in.scale.y, box.offset.y, box.size.y);
    KeepCentre(visible.offset.z, visible.size.z, static_cast<float>(depth) / in.scale.z, box.offset.z, box.size.z);
    layout.visibleBox = visible;

    const int border = in.border;
    const int top = xy || yz ? heightXY + border + 1 : 1;
    const int left = xy || xz ? widthXY + border + 1 : 1;
    layout.windows[zel_PT_XY] = Rect(1, 1, widthXY + border, heightXY + border);
    layout.windows[zel_PT_XZ] = Rect(1, top, widthXY + border, heightXZ + border);
    layout.windows[zel_PT_YZ] = Rect(left, 1, widthYZ + border, heightXY + border);
    layout.scrollStep = {0.2F * visible.size.x, 0.2F * visible.size.y, 0.2F * visible.size.z};
    return true;
}

Size ComputeOptimalSize(const PerPlane<Size>& windows, const PerPlane<bool>& shown) {
    // Six pixels a window: its border, the gap before it, and some air.
    constexpr int margin = 6;
    const auto add = [](int a, int b) { return TruncToInt(static_cast<double>(a) + static_cast<double>(b)); };
    const bool xy = shown[zel_PT_XY];
    const bool xz = shown[zel_PT_XZ];
    const bool yz = shown[zel_PT_YZ];
    Size size;
    if (xy || yz)
        size.y = add(size.y, add(windows[zel_PT_XY].y, margin));
    if (xz)
        size.y = add(size.y, add(windows[zel_PT_XZ].y, margin));
    if (xy || xz)
        size.x = add(size.x, add(windows[zel_PT_XY].x, margin));
    if (yz)
        size.x = add(size.x, add(windows[zel_PT_YZ].x, margin));
    return size;
}

float ClampCenter(float centre, float visibleSize, float boxOffset, float boxSize) {
    const float offset = std::max(centre - visibleSize * 0.5F, boxOffset);
    return std::min(offset, boxOffset + boxSize - visibleSize);
}

int MirrorWindowCoordinate(int x, int extent, bool reversed) {
    return reversed ? extent - x - 1 : x;
}

} // namespace zel
