#include "tests/monkey/resources.h"

#include <wx/toplevel.h>

#include <gtest/gtest.h>

#include <X11/Xlib.h>
#include <X11/extensions/XRes.h>
#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <string_view>

// There under a sanitizer only, which has an allocator of its own.
extern "C" __attribute__((weak)) std::size_t __sanitizer_get_current_allocated_bytes();

namespace zel::test {

namespace {

double AllocatedBytes() {
    if (__sanitizer_get_current_allocated_bytes != nullptr)
        return static_cast<double>(__sanitizer_get_current_allocated_bytes());
    const struct mallinfo2 heap = mallinfo2();
    return static_cast<double>(heap.uordblks + heap.hblkhd);
}

double ResidentBytes() {
    std::ifstream file("/proc/self/statm");
    double all = 0, resident = 0;
    file >> all >> resident;
    return resident * static_cast<double>(sysconf(_SC_PAGESIZE));
}

void CountOnDisplay(Resources& resources) {
    static Display* const display = XOpenDisplay(nullptr);
    if (display == nullptr)
        throw std::runtime_error("there is no display");
    int clientCount = 0;
    XResClient* clients = nullptr;
    XResQueryClients(display, &clientCount, &clients);
    for (int i = 0; i < clientCount; ++i) {
        int typeCount = 0;
        XResType* types = nullptr;
        if (XResQueryClientResources(display, clients[i].resource_base, &typeCount, &types) == 0)
            continue;
        for (int k = 0; k < typeCount; ++k) {
            char* const name = XGetAtomName(display, types[k].resource_type);
            (std::string_view(name) == "PIXMAP" ? resources.pixmaps : resources.displayed) += types[k].count;
            XFree(name);
        }
        XFree(types);
    }
    XFree(clients);
}

} // namespace

Resources LookAtResources() {
    Resources now;
    now.heap = AllocatedBytes();
    now.resident = ResidentBytes();
    now.descriptors = static_cast<double>(std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}));
    CountOnDisplay(now);
    now.topLevels = static_cast<double>(wxTopLevelWindows.size());
    return now;
}

double Course::GetGrowth(double Resources::*quantity) const {
    const std::size_t third = m_points.size() / 3;
    const auto medianFrom = [&](std::size_t first) {
        std::vector<double> values;
        for (std::size_t i = first; i < first + third; ++i)
            values.push_back(m_points[i].*quantity);
        std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(third / 2), values.end());
        return values[third / 2];
    };
    return medianFrom(m_points.size() - third) - medianFrom(m_points.size() - 2 * third);
}

void Course::ExpectFlat(const std::string& name, double bytesAtATime) const {
    ASSERT_GE(m_points.size(), 9U);
    const auto third = static_cast<double>(m_points.size() / 3);
    const struct {
        const char* name;
        double Resources::*quantity;
        double most; // growth in a third of the times
    } quantities[] = {
        {"bytes of the heap", &Resources::heap, 20'000 + bytesAtATime * third},
        {"bytes resident", &Resources::resident, 4e6 + 2 * bytesAtATime * third},
        {"descriptors", &Resources::descriptors, 1},
        {"pixmaps", &Resources::pixmaps, 2 + 0.02 * third},
        {"others on the display", &Resources::displayed, 3 + 0.02 * third},
        {"windows of the toolkit", &Resources::topLevels, 0},
    };
    std::cout << name << ", " << m_points.size() << " times:\n";
    for (const auto& each : quantities) {
        std::cout << "    " << GetGrowth(each.quantity) / third << " " << each.name << " each time, in the end "
                  << m_points.back().*each.quantity << std::endl;
        EXPECT_LE(GetGrowth(each.quantity), each.most) << each.name << " of " << name;
    }
}

} // namespace zel::test
