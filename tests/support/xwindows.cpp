#include "tests/support/xwindows.h"

#include <X11/Xlib.h>

#include <memory>

namespace zel::test {

namespace {

int CountBelow(Display* display, Window window) {
    Window root = 0;
    Window parent = 0;
    Window* children = nullptr;
    unsigned count = 0;
    if (XQueryTree(display, window, &root, &parent, &children, &count) == 0)
        return 0;
    const std::unique_ptr<Window, int (*)(void*)> owner(children, &XFree);
    int all = static_cast<int>(count);
    for (unsigned i = 0; i < count; ++i)
        all += CountBelow(display, children[i]);
    return all;
}

} // namespace

int CountXWindows() {
    const std::unique_ptr<Display, int (*)(Display*)> display(XOpenDisplay(nullptr), &XCloseDisplay);
    return display != nullptr ? CountBelow(display.get(), DefaultRootWindow(display.get())) : 0;
}

} // namespace zel::test
