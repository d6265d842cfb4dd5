// Dialogs that are opened again and again: what an opening takes must not grow.

#include "tests/mapping/viewer_fixture.h"

#include <malloc.h>

#include <algorithm>
#include <ctime>

using namespace zel;
using namespace zel::test;

namespace {

/// While one lives, each modal dialog is cancelled once it is on the screen.
class CancelAll : public wxModalDialogHook {
public:
    CancelAll() { Register(); }
    ~CancelAll() override { Unregister(); }
    CancelAll(const CancelAll&) = delete;
    CancelAll& operator=(const CancelAll&) = delete;

    int seen = 0;

protected:
    int Enter(wxDialog* dialog) override {
        ++seen;
        wxTheApp->CallAfter([dialog] {
            EXPECT_TRUE(WaitUntil([dialog] { return dialog->IsModal() && dialog->IsShownOnScreen(); }));
            dialog->EndModal(wxID_CANCEL);
        });
        return wxID_NONE;
    }
    void Exit(wxDialog*) override {}
};

struct State {
    std::size_t children = 0;
    std::size_t topLevels = 0;
    int xWindows = 0;
    double megabytes = 0.0;
};

State Look(const wxFrame& frame) {
    Settle();
    const struct mallinfo2 heap = mallinfo2();
    return {frame.GetChildren().size(), wxTopLevelWindows.size(), CountXWindowsAtRest(),
            static_cast<double>(heap.uordblks + heap.hblkhd) / 1e6};
}

double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

class DialogOpenings : public GuiTest {
protected:
    /// Opens the dialogs of these entries in turn, 300 openings in all, after some for what the toolkit keeps for good.
    void ExpectFlat(const std::vector<int>& entries) {
        MappedViewer viewer(MakeImage<unsigned short>({20, 16, 9}, 2, [](auto x, auto, auto, auto) { return x; }));
        CancelAll cancelled;
        const auto open = [&](std::size_t number) { // the processor's time, which other programs do not lengthen
            const std::clock_t start = std::clock();
            viewer.Choose(entries[number % entries.size()]);
            return 1000.0 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
        };
        constexpr std::size_t first = 30;
        constexpr std::size_t count = 300;
        for (std::size_t i = 0; i < first; ++i)
            open(i);
        const State before = Look(*viewer.frame);
        std::vector<double> milliseconds;
        for (std::size_t i = 0; i < count; ++i)
            milliseconds.push_back(open(i));
        const State after = Look(*viewer.frame);
        EXPECT_EQ(static_cast<int>(first + count), cancelled.seen);
        EXPECT_EQ(before.children, after.children);
        EXPECT_EQ(before.topLevels, after.topLevels);
        EXPECT_EQ(before.xWindows, after.xWindows);
        EXPECT_GT(after.xWindows, 0);
        EXPECT_LT(after.megabytes, before.megabytes + 4.0);
        const double early = Median({milliseconds.begin(), milliseconds.begin() + 60});
        const double late = Median({milliseconds.end() - 60, milliseconds.end()});
        EXPECT_LT(late, 1.5 * early + 10.0);
        std::cout << "heap " << before.megabytes << " to " << after.megabytes << " MB, an opening " << early << " to "
                  << late << " ms, " << after.xWindows << " X windows\n";
    }

    LogCatcher toolkitLog; // the traces of the stretches
};

} // namespace

TEST_F(DialogOpenings, OfLevelsAndThresholdsTakeNoMoreEachTime) {
    ExpectFlat({zel_ME_LEVELS, zel_ME_THRESHOLD});
}

TEST_F(DialogOpenings, OfTheOtherDialogsTakeNoMoreEachTime) {
    ExpectFlat({zel_ME_RANGE, zel_ME_BITDEPTH});
}
