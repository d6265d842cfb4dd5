#include "tests/support/xwindows.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <poll.h>

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

/// A connection of our own, open until the program ends; null without a display.
Display* Connection() {
    static const std::unique_ptr<Display, int (*)(Display*)> display(XOpenDisplay(nullptr), &XCloseDisplay);
    return display.get();
}

bool HasWindowManager(Display* display) {
    Atom type = None;
    int format = 0;
    unsigned long count = 0, left = 0;
    unsigned char* value = nullptr;
    const Atom property = XInternAtom(display, "_NET_SUPPORTING_WM_CHECK", False);
    XGetWindowProperty(display, DefaultRootWindow(display), property, 0, 1, False, XA_WINDOW, &type, &format, &count,
                       &left, &value);
    if (value != nullptr)
        XFree(value);
    return type == XA_WINDOW && count == 1;
}

/// A window that asks the window manager how wide its decoration would be. Managers answer in the order of what they
/// are told, so with the answer everything before it has been dealt with.
class Question {
public:
    explicit Question(Display* display)
        : m_display(display), m_window(XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 1, 1, 0, 0, 0)) {
        XSelectInput(display, m_window, PropertyChangeMask);
    }
    ~Question() { XDestroyWindow(m_display, m_window); }
    Question(const Question&) = delete;
    Question& operator=(const Question&) = delete;

    void Ask() {
        XEvent event{};
        event.xclient.type = ClientMessage;
        event.xclient.window = m_window;
        event.xclient.message_type = XInternAtom(m_display, "_NET_REQUEST_FRAME_EXTENTS", False);
        event.xclient.format = 32;
        XSendEvent(m_display, DefaultRootWindow(m_display), False, SubstructureRedirectMask | SubstructureNotifyMask,
                   &event);
        XFlush(m_display);
    }
    bool IsAnswered(int milliseconds) {
        const Atom answer = XInternAtom(m_display, "_NET_FRAME_EXTENTS", False);
        for (;;) {
            while (XPending(m_display) > 0) {
                XEvent event;
                XNextEvent(m_display, &event);
                if (event.type == PropertyNotify && event.xproperty.atom == answer)
                    return true;
            }
            pollfd connection{ConnectionNumber(m_display), POLLIN, 0};
            if (poll(&connection, 1, milliseconds) <= 0)
                return false;
        }
    }

private:
    Display* m_display;
    Window m_window;
};

} // namespace

int CountXWindows() {
    return Connection() != nullptr ? CountBelow(Connection(), DefaultRootWindow(Connection())) : 0;
}

bool HasWindowManager() {
    return Connection() != nullptr && HasWindowManager(Connection());
}

std::vector<unsigned char> ReadScreen(int x, int y, int width, int height) {
    Display* const display = Connection();
    const auto destroy = [](XImage* image) { XDestroyImage(image); };
    const std::unique_ptr<XImage, decltype(destroy)> image(XGetImage(display, DefaultRootWindow(display), x, y,
                                                                     static_cast<unsigned>(width),
                                                                     static_cast<unsigned>(height), AllPlanes, ZPixmap),
                                                           destroy);
    std::vector<unsigned char> pixels;
    for (int row = 0; row < height; ++row)
        for (int column = 0; column < width; ++column) {
            const unsigned long pixel = XGetPixel(image.get(), column, row); // 24 bits: red, green, blue
            for (const int shift : {16, 8, 0})
                pixels.push_back(static_cast<unsigned char>(pixel >> shift));
        }
    return pixels;
}

bool WaitForWindowManager() {
    if (!HasWindowManager())
        return true;
    Question question(Connection());
    question.Ask();
    return question.IsAnswered(5000);
}

} // namespace zel::test
