#include "dialogs/zel_histgraph.h"

#include "tests/support/user.h"

#include <memory>

using namespace zel;
using namespace zel::test;

namespace {

class HistGraphTest : public GuiTest {
protected:
    void SetUp() override {
        histogram = std::make_unique<Histogram<unsigned char>>();
        histogram->Init(0, 4, 5);
        const std::size_t counts[] = {1, 10, 0, 5, 20};
        std::copy(std::begin(counts), std::end(counts), histogram->begin());
        frame = new wxFrame(nullptr, wxID_ANY, "graph");
        auto* const panel = new wxPanel(frame);
        graph =
            new HistGraph<unsigned char>(panel, histogram.get(), 10004, wxPoint(0, 0), wxSize(104, 54), wxBORDER_NONE);
        ASSERT_TRUE(ShowAndWait(*frame));
    }
    void TearDown() override {
        frame->Destroy();
        GuiTest::TearDown();
    }
    wxColour At(int x, int y) {
        graph->Refresh(false);
        Settle();
        return ColourAt(Screen(*graph), {x, y});
    }

    const wxColour white{255, 255, 255};
    const wxColour red{255, 0, 0};
    const wxColour gray{158, 154, 145};
    std::unique_ptr<Histogram<unsigned char>> histogram;
    wxFrame* frame = nullptr;
    HistGraph<unsigned char>* graph = nullptr;
};

// The graph of 104 x 54 has five bins 25 pixels apart from 2 on, with their feet above row 52; 10 is 50 high.

TEST_F(HistGraphTest, PaintsFrameGridAndBars) {
    graph->SetGraphType(1);
    EXPECT_EQ(white, At(0, 0));
    EXPECT_EQ(gray, At(1, 30)); // frame
    EXPECT_EQ(gray, At(60, 52));
    EXPECT_EQ(white, At(60, 53)); // outside
    // Lines at multiples of 1 + round(102 / 10 = 10.2) = 11 across, and of 1 + round(52 / 5 = 10.4) = 11 down.
    EXPECT_EQ(gray, At(66, 20));
    EXPECT_EQ(gray, At(60, 22));
    EXPECT_EQ(white, At(60, 20));
    EXPECT_EQ(red, At(10, 51));
}

TEST_F(HistGraphTest, TypeColourAndCellsCanBeChosen) {
    graph->SetGraphType(1);
    EXPECT_EQ(1, graph->GetGraphType());
    graph->SetBarColour(*wxBLACK);
    EXPECT_EQ(*wxBLACK, At(80, 30)) << "5 of 10: 25 high, rows 27 to 51";
    EXPECT_EQ(white, At(80, 20));
    graph->SetGraphType(0);
    EXPECT_EQ(*wxBLACK, At(80, 20)) << "logarithmic 35 high, rows 17 to 51";
    EXPECT_EQ(white, At(80, 14));
    graph->SetCells(2, 1);
    EXPECT_EQ(white, At(66, 20));
    EXPECT_EQ(gray, At(52, 20)) << "1 + 102 / 2";
}

TEST_F(HistGraphTest, ShowsAnotherHistogram) {
    Histogram<unsigned char> other;
    other.Init(0, 4, 5);
    other[2] = 3;
    graph->SetHistogram(&other);
    EXPECT_EQ(&other, graph->GetHistogram());
    EXPECT_EQ(red, At(60, 10));
    EXPECT_EQ(white, At(40, 20));
    graph->SetHistogram(nullptr);
    EXPECT_EQ(white, At(60, 20));
}

TEST_F(HistGraphTest, LeavesTheHistogramAloneWhenHidden) {
    frame->Hide();
    Settle();
    histogram.reset(); // the sanitizer tells if it is read again
    graph->Refresh(false);
    graph->Update();
    Settle();
    EXPECT_FALSE(graph->IsShownOnScreen());
}

} // namespace
