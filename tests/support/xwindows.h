#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zel::test {

/// All windows on the display, of every program, shown or not.
int CountXWindows();

bool HasWindowManager();

/// Waits until the window manager has dealt with all that the display told it before. Without one, nothing is waited
/// for. @return whether it has within five seconds
bool WaitForWindowManager();

/// The pixels of a part of the screen, row by row, three bytes each. What OpenGL has drawn the toolkit cannot read: it
/// keeps what it has read before.
std::vector<unsigned char> ReadScreen(int x, int y, int width, int height);

struct XRect {
    int x = 0, y = 0, width = 0, height = 0;
    bool operator==(const XRect&) const = default;
};

/// What the windows on the display, of every program, go through while one lives.
class WindowWatch {
public:
    WindowWatch();
    ~WindowWatch();
    WindowWatch(const WindowWatch&) = delete;
    WindowWatch& operator=(const WindowWatch&) = delete;

    struct Appearance {
        std::optional<XRect> first; ///< where and how large it was when it was mapped; none if it was not
        std::vector<XRect> later;   ///< what became of it after that, for as long as it changed
    };

    /// The first window whose title begins so, as soon as it is mapped and nothing on the display has changed for a
    /// while. @return 0 if none comes within 20 seconds
    unsigned long WaitFor(const std::string& title);
    /// Size of the window itself; its place is that in what the window manager puts around it, and left out: 0, 0.
    Appearance GetClient(unsigned long window);
    /// The same window with what the window manager puts around it.
    Appearance GetWhole(unsigned long window);
    /// As the button in a title bar does.
    void AskToClose(unsigned long window);

private:
    struct Connection;
    bool TakeEvents();
    bool FindMissed();

    std::unique_ptr<Connection> m_connection;
    std::map<unsigned long, Appearance> m_windows;
    std::map<unsigned long, XRect> m_unmapped; // as they were configured so far
};

} // namespace zel::test
