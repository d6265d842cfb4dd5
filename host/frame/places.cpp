#include "host/frame/places.h"

#include <algorithm>

namespace zelviewer {

wxRect CentredIn(const wxRect& area, wxSize size) {
    size.DecTo(area.GetSize());
    return {area.x + (area.width - size.x) / 2, area.y + (area.height - size.y) / 2, size.x, size.y};
}

wxRect MovedInto(const wxRect& area, wxRect rect) {
    rect.x = std::max(std::min(rect.x, area.x + area.width - rect.width), area.x);
    rect.y = std::max(std::min(rect.y, area.y + area.height - rect.height), area.y);
    return rect;
}

std::optional<wxRect> StillOnADisplay(const wxRect& remembered, const std::vector<wxRect>& areas) {
    const auto holds = [&remembered](const wxRect& area) { return area.Contains(remembered); };
    if (remembered.IsEmpty() || std::none_of(areas.begin(), areas.end(), holds))
        return std::nullopt;
    return remembered;
}

wxRect BesideOthers(wxRect rect, const std::vector<wxPoint>& others, const wxRect& area) {
    constexpr int step = 32; // pixels: the title below stays readable
    while (std::find(others.begin(), others.end(), rect.GetPosition()) != others.end()) {
        const wxRect moved(rect.GetPosition() + wxPoint(step, step), rect.GetSize());
        if (!area.Contains(moved))
            break;
        rect = moved;
    }
    return rect;
}

wxPoint PlaceBeside(const wxRect& window, const wxSize& dialog, const wxRect& area) {
    const int right = window.x + window.width, bottom = window.y + window.height;
    const wxPoint sides[] = {
        {right, window.y}, {window.x - dialog.x, window.y}, {window.x, bottom}, {window.x, window.y - dialog.y}};
    for (const wxPoint& side : sides) {
        const wxRect placed = MovedInto(area, wxRect(side, dialog));
        if (area.Contains(placed) && !placed.Intersects(window))
            return placed.GetPosition();
    }
    // How far two intervals overlap is least at one end of the way, so of all places a corner is the best.
    const int farX = std::max(area.x, area.x + area.width - dialog.x);
    const int farY = std::max(area.y, area.y + area.height - dialog.y);
    wxPoint best;
    long least = -1;
    for (const wxPoint& corner :
         {wxPoint(farX, farY), wxPoint(farX, area.y), wxPoint(area.x, farY), area.GetPosition()}) {
        const wxRect hidden = wxRect(corner, dialog).Intersect(window);
        const long pixels = long{hidden.width} * hidden.height;
        if (least >= 0 && pixels >= least)
            continue;
        least = pixels;
        best = corner;
    }
    return best;
}

} // namespace zelviewer
