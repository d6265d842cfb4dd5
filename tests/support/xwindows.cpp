#include "tests/support/xwindows.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <poll.h>

#include <chrono>
#include <stdexcept>
#include <thread>

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

struct WindowWatch::Connection {
    Display* display = XOpenDisplay(nullptr);

    Connection() {
        for (int tries = 100; display == nullptr && tries > 0; --tries) { // it may be starting anew
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
            display = XOpenDisplay(nullptr);
        }
        if (display == nullptr)
            throw std::runtime_error("there is no display to watch");
    }
    ~Connection() { XCloseDisplay(display); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    Window GetRoot() const { return DefaultRootWindow(display); }

    /// The window below the root that holds a window.
    Window TopOf(Window window) const {
        for (;;) {
            Window root = 0, parent = 0, *children = nullptr;
            unsigned count = 0;
            if (XQueryTree(display, window, &root, &parent, &children, &count) == 0)
                return window;
            if (children != nullptr)
                XFree(children);
            if (parent == root || parent == 0)
                return window;
            window = parent;
        }
    }

    bool HasTitle(Window window, const std::string& title) const {
        char* name = nullptr;
        if (XFetchName(display, window, &name) == 0 || name == nullptr)
            return false;
        const bool has = std::string(name).starts_with(title);
        XFree(name);
        return has;
    }
};

WindowWatch::WindowWatch() : m_connection(std::make_unique<Connection>()) {
    HasWindowManager(); // leaves a connection open: a display without any starts anew, and turns programs away
                        // meanwhile
    XSetErrorHandler([](Display*, XErrorEvent*) { return 0; }); // a window may go at any time
    XSelectInput(m_connection->display, m_connection->GetRoot(), SubstructureNotifyMask);
    XSync(m_connection->display, False);
}

WindowWatch::~WindowWatch() = default;

/// @return whether anything has happened
bool WindowWatch::TakeEvents() {
    Display* const display = m_connection->display;
    const auto configure = [this](Window window, const XRect& rect) {
        const auto mapped = m_windows.find(window);
        if (mapped == m_windows.end())
            m_unmapped[window] = rect;
        else if (rect != (mapped->second.later.empty() ? *mapped->second.first : mapped->second.later.back()))
            mapped->second.later.push_back(rect);
    };
    const bool any = XPending(display) > 0;
    while (XPending(display) > 0) {
        XEvent event;
        XNextEvent(display, &event);
        if (event.type == CreateNotify && event.xcreatewindow.parent == m_connection->GetRoot()) {
            const XCreateWindowEvent& made = event.xcreatewindow;
            configure(made.window, {made.x, made.y, made.width, made.height});
            XSelectInput(display, made.window, StructureNotifyMask); // wherever a window manager puts it
        } else if (event.type == ConfigureNotify && event.xconfigure.send_event == False) {
            const XConfigureEvent& changed = event.xconfigure;
            configure(changed.window, {changed.x, changed.y, changed.width, changed.height});
        } else if (event.type == MapNotify) {
            m_windows.try_emplace(event.xmap.window, Appearance{m_unmapped[event.xmap.window], {}});
        }
    }
    return FindMissed() || any;
}

/// A window manager may have taken and mapped a window before we asked to be told of it.
/// @return whether there is one
bool WindowWatch::FindMissed() {
    bool any = false;
    for (const auto& [window, rect] : m_unmapped) {
        XWindowAttributes now{};
        if (m_windows.contains(window) || XGetWindowAttributes(m_connection->display, window, &now) == 0 ||
            now.map_state == IsUnmapped)
            continue;
        if (XEventsQueued(m_connection->display, QueuedAlready) > 0)
            return true; // they came before this answer, and tell what has led to it
        m_windows.try_emplace(window, Appearance{XRect{now.x, now.y, now.width, now.height}, {}});
        any = true;
    }
    return any;
}

unsigned long WindowWatch::WaitFor(const std::string& title) {
    using Clock = std::chrono::steady_clock;
    using namespace std::chrono_literals;
    const Clock::time_point end = Clock::now() + 20s;
    unsigned long found = 0;
    for (Clock::time_point changed = Clock::now(); Clock::now() < end; std::this_thread::sleep_for(5ms)) {
        if (TakeEvents())
            changed = Clock::now();
        for (const auto& [window, appearance] : m_windows)
            if (found == 0 && m_connection->HasTitle(window, title))
                found = window;
        if (found != 0 && Clock::now() - changed > 700ms)
            break;
    }
    return found;
}

WindowWatch::Appearance WindowWatch::GetClient(unsigned long window) {
    TakeEvents();
    const auto withoutPlace = [](XRect rect) { return XRect{0, 0, rect.width, rect.height}; };
    const Appearance& seen = m_windows[window];
    Appearance client;
    if (seen.first)
        client.first = withoutPlace(*seen.first);
    for (const XRect& rect : seen.later)
        if (withoutPlace(rect) != (client.later.empty() ? *client.first : client.later.back()))
            client.later.push_back(withoutPlace(rect));
    return client;
}

WindowWatch::Appearance WindowWatch::GetWhole(unsigned long window) {
    TakeEvents();
    return m_windows[m_connection->TopOf(window)];
}

void WindowWatch::AskToClose(unsigned long window) {
    Display* const display = m_connection->display;
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = XInternAtom(display, "WM_PROTOCOLS", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = static_cast<long>(XInternAtom(display, "WM_DELETE_WINDOW", False));
    XSendEvent(display, window, False, NoEventMask, &event);
    XFlush(display);
}

} // namespace zel::test
