#include "tests/support/user.h"
#include "tests/viewer/frame_fixture.h"

using namespace zel;
using namespace zel::test;

namespace {

/// A frame whose sequence has 10 images.
class BrowsingRangeTest : public FrameTest {
protected:
    DialogAnswers answers;
};

TEST_F(BrowsingRangeTest, ANewRangeMovesTheCurrentFrameIntoIt) {
    answers.ExpectDriven([this](wxDialog& dialog) {
        EXPECT_EQ("Set Range", dialog.GetTitle());
        EXPECT_EQ(canvas, dialog.GetParent());
        EXPECT_EQ("0", In(dialog, 10001).GetLabel());
        EXPECT_EQ("9", In(dialog, 10002).GetLabel());
        EXPECT_EQ("0", In<wxTextCtrl>(dialog, 10004).GetValue());
        EXPECT_EQ("9", In<wxTextCtrl>(dialog, 10005).GetValue());
        TypeInto(In<wxTextCtrl>(dialog, 10004), "3");
        TypeInto(In<wxTextCtrl>(dialog, 10005), "5");
        Click(In(dialog, wxID_OK));
    });
    const std::string before = Message();
    Choose(zel_CMD_BROWSING_RANGE);
    EXPECT_EQ(3, canvas->m_iterator.rangeFirst);
    EXPECT_EQ(5, canvas->m_iterator.rangeLast);
    EXPECT_EQ((std::vector<int>{3}), canvas->shown);
    EXPECT_EQ(before, Message());
}

TEST_F(BrowsingRangeTest, ARangeAroundTheCurrentFrameShowsNothingAnew) {
    canvas->m_iterator.SetRange(0, 5);
    answers.ExpectDriven([](wxDialog& dialog) {
        EXPECT_EQ("5", In<wxTextCtrl>(dialog, 10005).GetValue());
        TypeInto(In<wxTextCtrl>(dialog, 10005), "7");
        Click(In(dialog, wxID_OK));
    });
    Choose(zel_CMD_BROWSING_RANGE);
    EXPECT_EQ(7, canvas->m_iterator.rangeLast);
    EXPECT_EQ((std::vector<int>{}), canvas->shown);
}

TEST_F(BrowsingRangeTest, CancelLeavesTheRange) {
    answers.ExpectDriven([](wxDialog& dialog) {
        TypeInto(In<wxTextCtrl>(dialog, 10004), "3");
        Press(WXK_ESCAPE);
    });
    Choose(zel_CMD_BROWSING_RANGE);
    EXPECT_EQ(0, canvas->m_iterator.rangeFirst);
    EXPECT_EQ((std::vector<int>{}), canvas->shown);
    EXPECT_NE("No change.", Message());
}

TEST_F(BrowsingRangeTest, ACanvasThatIsReplacedTakesItsDialogAlong) {
    auto* const other = new FrameCanvas(frame);
    other->Play(10);
    answers.ExpectDriven([&](wxDialog& dialog) {
        frame->SetCanvas(other);
        EXPECT_FALSE(dialog.IsModal());
    });
    const std::string before = Message();
    Choose(zel_CMD_BROWSING_RANGE);
    EXPECT_EQ(before, Message());
    EXPECT_EQ((std::vector<int>{}), other->shown);
    EXPECT_EQ(9, other->m_iterator.rangeLast);
}

TEST_F(BrowsingRangeTest, ASingleFrameHasNoRange) {
    canvas->Play(1);
    Choose(zel_CMD_BROWSING_RANGE); // no dialog comes, and no assertion
    EXPECT_EQ("No change.", Message());
}

} // namespace
