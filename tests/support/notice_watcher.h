#pragma once

// What a program says on the screen while it works.

#include <wx/eventfilter.h>
#include <wx/stattext.h>
#include <wx/toplevel.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

namespace zel::test {

/// While one lives, notes the text of each window when it appears, and how many of them stood at most.
class NoticeWatcher : public wxEventFilter {
public:
    NoticeWatcher() { wxEvtHandler::AddFilter(this); }
    ~NoticeWatcher() override { wxEvtHandler::RemoveFilter(this); }
    NoticeWatcher(const NoticeWatcher&) = delete;
    NoticeWatcher& operator=(const NoticeWatcher&) = delete;

    int FilterEvent(wxEvent& event) override {
        const auto* const window = dynamic_cast<wxTopLevelWindow*>(event.GetEventObject());
        if (event.GetEventType() == wxEVT_SHOW && window != nullptr && static_cast<wxShowEvent&>(event).IsShown()) {
            texts.push_back(TextIn(*window));
            most = std::max(most, CountShown());
        }
        return Event_Skip;
    }
    static std::size_t CountShown() {
        std::size_t shown = 0;
        for (const wxWindow* const window : wxTopLevelWindows)
            shown += window->IsShown() ? 1U : 0U;
        return shown;
    }

    std::vector<std::string> texts;
    std::size_t most = 0;

private:
    static std::string TextIn(const wxWindow& window) {
        for (const wxWindow* const child : window.GetChildren()) {
            if (const auto* const text = dynamic_cast<const wxStaticText*>(child))
                return text->GetLabel().ToStdString();
            if (const std::string text = TextIn(*child); !text.empty())
                return text;
        }
        return {};
    }
};

} // namespace zel::test
