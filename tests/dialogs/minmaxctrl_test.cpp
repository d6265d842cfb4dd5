#include "dialogs/zel_minmaxctrl.h"

#include "tests/support/user.h"

#include <memory>

using namespace zel;
using namespace zel::test;

namespace {

/// A frame with a range control, that counts what it is told.
template <typename T>
class Bench {
public:
    Bench(T low, T high, bool showGamma, bool allowCrossing) : lowValue(low), highValue(high) {
        frame = new wxFrame(nullptr, wxID_ANY, "range", wxDefaultPosition, wxSize(400, 200));
        control = new VariableMinMaxCtrl<T>(frame, 10005, showGamma, allowCrossing, true, wxColour(0, 0, 255),
                                            wxColour(0, 255, 0), wxColour(255, 0, 0));
        frame->Bind(zel_EVT_MINMAXCTRL, [this](zel_MinMaxCtrlEvent& event) {
            EXPECT_EQ(0, event.GetId());
            ++told;
        });
        EXPECT_TRUE(ShowAndWait(*frame));
        control->SetSize(control->GetBestSize());
        control->Layout();
    }
    ~Bench() { frame->Destroy(); }
    Bench(const Bench&) = delete;
    Bench& operator=(const Bench&) = delete;

    void BindTo(T lowBound, T highBound, int positions) {
        control->BindVariables(&lowValue, &highValue, &gamma, lowBound, highBound, positions);
    }
    std::string Low() const { return control->GetLowText()->GetValue().utf8_string(); }
    std::string High() const { return control->GetHighText()->GetValue().utf8_string(); }
    std::string Gamma() const { return control->GetGammaText()->GetValue().utf8_string(); }
    Triangles& Row() const { return *control->GetTriangles(); }
    /// Left and right position of the stripe, which are those of the triangles.
    std::pair<int, int> Ends() const {
        EXPECT_EQ(control->GetStripe()->GetLeft(), Row().GetLeft());
        EXPECT_EQ(control->GetStripe()->GetRight(), Row().GetRight());
        return {Row().GetLeft(), Row().GetRight()};
    }
    /// Drags what is at a position to another one, with the real mouse.
    void DragFrom(int from, int to) { Drag(Row(), {PlaceOf(from), PlaceOf(to)}); }
    wxPoint PlaceOf(int position) const {
        const int width = Row().GetClientSize().x - 2;
        return {2 + (position * width + Row().GetCount() - 1) / Row().GetCount(), 4};
    }
    int Told() { return std::exchange(told, 0); }

    wxFrame* frame;
    VariableMinMaxCtrl<T>* control;
    T lowValue;
    T highValue;
    double gamma = 1.0;
    int told = 0;
};

using Byte = unsigned char;
using Ends = std::pair<int, int>;

class RangeControlTest : public GuiTest {
protected:
    DialogAnswers answers; // no control may complain
};

TEST_F(RangeControlTest, PiecesStandOneUnderTheOther) {
    const Bench<Byte> bench(0, 255, true, false);
    const auto& control = *bench.control;
    EXPECT_EQ(wxSize(256, 6), control.GetStripe()->GetSize());
    EXPECT_EQ(wxSize(256, 6), control.GetRampStripe()->GetSize());
    EXPECT_EQ(wxSize(260, 8), control.GetTriangles()->GetSize());
    EXPECT_EQ(control.GetLowText(), control.FindWindow(20001));
    EXPECT_EQ(control.GetGammaText(), control.FindWindow(20002));
    EXPECT_EQ(control.GetHighText(), control.FindWindow(20000));
    EXPECT_EQ(256, bench.Row().GetCount());
    EXPECT_EQ(1.0, bench.Row().GetGamma());
    EXPECT_EQ(Ends(0, 255), bench.Ends());
    EXPECT_EQ(128, bench.Row().GetMiddle());
    int y = -1;
    for (const wxWindow* piece : std::initializer_list<wxWindow*>{control.GetStripe(), control.GetRampStripe(),
                                                                  control.GetTriangles(), control.GetLowText()}) {
        EXPECT_GT(piece->GetPosition().y, y);
        y = piece->GetPosition().y;
    }
    EXPECT_EQ(y, control.GetGammaText()->GetPosition().y);
    EXPECT_EQ(y, control.GetHighText()->GetPosition().y);
    EXPECT_LT(control.GetLowText()->GetPosition().x, control.GetGammaText()->GetPosition().x);
    EXPECT_LT(control.GetGammaText()->GetPosition().x, control.GetHighText()->GetPosition().x);
    // The tips of the outer triangles stand over the ends of the stripe.
    EXPECT_EQ(control.GetStripe()->GetPosition().x, control.GetTriangles()->GetPosition().x + 2);
    EXPECT_FALSE(control.GetLowText()->IsBound());
    EXPECT_EQ("", bench.Low());
}

TEST_F(RangeControlTest, WithoutVariablesNothingIsTold) {
    Bench<Byte> bench(0, 255, false, false);
    EXPECT_EQ(nullptr, bench.control->GetGammaText());
    bench.DragFrom(0, 100);
    bench.control->Reset();
    EXPECT_EQ(0, bench.Told());
}

TEST_F(RangeControlTest, BindingShowsTheVariablesAndTellsNothing) {
    Bench<Byte> bench(20, 200, true, false);
    bench.gamma = 2.0;
    bench.BindTo(0, 255, 256);
    EXPECT_EQ("20", bench.Low());
    EXPECT_EQ("200", bench.High());
    EXPECT_EQ("2", bench.Gamma());
    EXPECT_EQ(Ends(20, 200), bench.Ends());
    EXPECT_EQ(83, bench.Row().GetMiddle()); // 20 + round(0.69897 * 90 = 62.9)
    EXPECT_EQ(2.0, bench.control->GetStripe()->GetGamma());
    EXPECT_EQ(Ends(0, 255),
              Ends(bench.control->GetRampStripe()->GetLeft(), bench.control->GetRampStripe()->GetRight()));
    EXPECT_EQ(1.0, bench.control->GetRampStripe()->GetGamma());
    EXPECT_EQ(0, bench.Told());
}

TEST_F(RangeControlTest, BindingAnewStoresWhatWasShown) {
    Bench<Byte> bench(20, 200, true, false);
    bench.BindTo(0, 255, 256);
    bench.control->SetLow(30); // shown and not stored
    EXPECT_EQ(20, bench.lowValue);
    Byte low = 1;
    Byte high = 4;
    double gamma = 1.0;
    bench.control->BindVariables(&low, &high, &gamma, 0, 7, 8);
    EXPECT_EQ(30, bench.lowValue);
    EXPECT_EQ(200, bench.highValue);
    EXPECT_EQ(1, low);
    EXPECT_EQ(Ends(1, 4), bench.Ends());
    EXPECT_EQ(8, bench.control->GetStripe()->GetCount());
    EXPECT_EQ(8, bench.Row().GetCount());
    EXPECT_EQ(0, bench.Told());
}

TEST_F(RangeControlTest, ValuesOutsideTheBoundsStandAtTheEnds) {
    Bench<unsigned short> bench(5, 65535, false, false);
    bench.BindTo(10, 4095, 4086);
    EXPECT_EQ("5", bench.Low());
    EXPECT_EQ("65535", bench.High());
    EXPECT_EQ(Ends(0, 4085), bench.Ends());
}

TEST_F(RangeControlTest, DraggedTrianglesSetTheValues) {
    Bench<Byte> bench(20, 200, true, false);
    bench.BindTo(0, 255, 256);
    bench.DragFrom(20, 50);
    EXPECT_EQ(50, bench.lowValue);
    EXPECT_EQ("50", bench.Low());
    EXPECT_GE(bench.Told(), 1);
    bench.DragFrom(200, 220);
    EXPECT_EQ(220, bench.highValue);
    EXPECT_EQ(Ends(50, 220), bench.Ends());
    EXPECT_EQ(135, bench.Row().GetMiddle()) << "gamma 1 stays halfway";
    // half = 85, so gamma is 10^((85 + 50 - 100) / 85) = 2.58; the field and the variable have two digits of it.
    bench.DragFrom(135, 100);
    EXPECT_EQ("2.6", bench.Gamma());
    EXPECT_EQ(2.6, bench.gamma);
    EXPECT_EQ(100, bench.Row().GetMiddle());
    EXPECT_EQ(50, bench.lowValue);
    EXPECT_EQ(220, bench.highValue);
}

TEST_F(RangeControlTest, TheTriangleOfGammaStaysUnderThePointerThoughItsFieldIsRounded) {
    Bench<Byte> bench(50, 220, true, false);
    bench.BindTo(0, 255, 256);
    // half = 85, so gamma is 10^((85 + 50 - 133) / 85) = 1.05567. The 1.1 of the field would stand at 131.
    zel_TriangleEvent event(zel_triangleMiddle, 133);
    bench.control->ProcessWindowEvent(event);
    EXPECT_EQ("1.1", bench.Gamma());
    EXPECT_EQ(1.1, bench.gamma);
    EXPECT_EQ(133, bench.Row().GetMiddle());
    EXPECT_NEAR(1.05567, bench.control->GetStripe()->GetGamma(), 5e-6);
    EXPECT_EQ(bench.control->GetStripe()->GetGamma(), bench.Row().GetGamma());
    TypeInto(*bench.control->GetGammaText(), "1.234");
    Press(WXK_RETURN);
    EXPECT_EQ("1.2", bench.Gamma());
    EXPECT_EQ(1.2, bench.gamma);
    EXPECT_EQ(1.234, bench.control->GetStripe()->GetGamma());
    EXPECT_EQ(127, bench.Row().GetMiddle()); // 50 + round((1 - 0.09132) * 85 = 77.24)
    EXPECT_EQ(2, bench.Told());
}

TEST_F(RangeControlTest, EventsCanWaitWithWhatTheyCarry) {
    const std::unique_ptr<wxEvent> moved(zel_TriangleEvent(zel_triangleMiddle, 7).Clone());
    EXPECT_EQ(zel_triangleMiddle, moved->GetId());
    EXPECT_EQ(7, dynamic_cast<zel_TriangleEvent&>(*moved).GetPosition());
    EXPECT_EQ(wxEventType(zel_EVT_TRIANGLE), moved->GetEventType());
    const std::unique_ptr<wxEvent> changed(zel_MinMaxCtrlEvent().Clone());
    EXPECT_NE(nullptr, dynamic_cast<wxNotifyEvent*>(changed.get()));
    EXPECT_EQ(wxEventType(zel_EVT_MINMAXCTRL), changed->GetEventType());
    EXPECT_EQ(0, changed->GetId());
    EXPECT_TRUE(changed->ShouldPropagate()) << "to the dialog, past the box that the control stands in";
}

TEST_F(RangeControlTest, TrianglesCrossOnlyWhereTheyMay) {
    Bench<Byte> input(20, 200, false, false);
    input.BindTo(0, 255, 256);
    input.DragFrom(20, 230);
    EXPECT_EQ(200, input.lowValue);
    EXPECT_EQ(Ends(200, 200), input.Ends());
    Bench<Byte> output(20, 200, false, true);
    output.BindTo(0, 255, 256);
    output.DragFrom(20, 230);
    EXPECT_EQ(230, output.lowValue);
    EXPECT_EQ(200, output.highValue);
    EXPECT_EQ(Ends(230, 200), output.Ends());
}

TEST_F(RangeControlTest, TypedValuesStopAtTheOtherOne) {
    Bench<Byte> bench(20, 200, true, false);
    bench.BindTo(0, 255, 256);
    TypeInto(*bench.control->GetLowText(), "210");
    Press(WXK_RETURN);
    EXPECT_EQ(200, bench.lowValue);
    EXPECT_EQ("200", bench.Low());
    EXPECT_EQ(1, bench.Told());
    TypeInto(*bench.control->GetLowText(), "60");
    Press(WXK_TAB);
    EXPECT_EQ(60, bench.lowValue);
    EXPECT_EQ(bench.control->GetGammaText(), wxWindow::FindFocus());
    EXPECT_EQ(1, bench.Told());
    TypeInto(*bench.control->GetHighText(), "50");
    Press(WXK_RETURN);
    EXPECT_EQ(60, bench.highValue);
    EXPECT_EQ(Ends(60, 60), bench.Ends());
    TypeInto(*bench.control->GetGammaText(), "0.5");
    Press(WXK_RETURN);
    EXPECT_EQ(0.5, bench.gamma);
    EXPECT_EQ(0.5, bench.control->GetStripe()->GetGamma());
    EXPECT_EQ(2, bench.Told());
}

TEST_F(RangeControlTest, TypedValuesCrossWhereTheyMay) {
    Bench<Byte> bench(20, 200, false, true);
    bench.BindTo(0, 255, 256);
    TypeInto(*bench.control->GetHighText(), "5");
    Press(WXK_RETURN);
    EXPECT_EQ(5, bench.highValue);
    EXPECT_EQ(Ends(20, 5), bench.Ends());
}

TEST_F(RangeControlTest, ArrowKeysMoveTheTriangles) {
    Bench<Byte> bench(20, 200, false, false);
    bench.BindTo(0, 255, 256);
    Focus(*bench.control->GetHighText());
    Press(WXK_UP);
    Press(WXK_UP);
    EXPECT_EQ("202", bench.High());
    EXPECT_EQ(202, bench.highValue);
    EXPECT_EQ(Ends(20, 202), bench.Ends());
    EXPECT_EQ(2, bench.Told());
}

TEST_F(RangeControlTest, TextThatIsNoNumberGivesWayWhenATriangleMoves) {
    Bench<Byte> bench(20, 200, true, false);
    bench.BindTo(0, 255, 256);
    bench.control->GetLowText()->ChangeValue("300");
    bench.control->GetGammaText()->ChangeValue("");
    bench.DragFrom(200, 220);
    EXPECT_EQ("20", bench.Low());
    EXPECT_EQ("1", bench.Gamma());
    EXPECT_EQ(20, bench.lowValue);
    EXPECT_EQ(220, bench.highValue);
    EXPECT_EQ(1.0, bench.gamma);
    EXPECT_GE(bench.Told(), 1);
}

TEST_F(RangeControlTest, WhatWasTypedIsEnteredWhenATriangleMoves) {
    Bench<int> bench(-20, 200, true, false);
    bench.BindTo(-100, 300, 401);
    const auto moveHigh = [&bench](int position) {
        zel_TriangleEvent moved(zel_triangleRight, position);
        bench.control->ProcessWindowEvent(moved);
    };
    TypeInto(*bench.control->GetGammaText(), "-1"); // the focus stays
    moveHigh(310);
    EXPECT_EQ(210, bench.highValue);
    EXPECT_EQ(0.1, bench.gamma) << "held within its bounds, as nobody can make a table of -1";
    EXPECT_EQ("0.1", bench.Gamma());
    EXPECT_EQ(0.1, bench.Row().GetGamma());
    TypeInto(*bench.control->GetGammaText(), "1e-50");
    TypeInto(*bench.control->GetLowText(), "-500");
    moveHigh(320);
    EXPECT_EQ(0.1, bench.gamma);
    EXPECT_EQ(-100, bench.lowValue);
    EXPECT_EQ(Ends(0, 320), bench.Ends());
    TypeInto(*bench.control->GetLowText(), "250");
    moveHigh(330);
    EXPECT_EQ(230, bench.lowValue) << "not past the other one";
    EXPECT_EQ(230, bench.highValue);
    TypeInto(*bench.control->GetGammaText(), "-");
    moveHigh(340);
    EXPECT_EQ(0.1, bench.gamma);
    EXPECT_EQ("0.1", bench.Gamma());
}

TEST_F(RangeControlTest, ResetGoesToTheBoundsAndTellsNothing) {
    Bench<Byte> bench(20, 200, true, false);
    bench.gamma = 3.0;
    bench.BindTo(10, 240, 231);
    bench.control->Reset();
    EXPECT_EQ("10", bench.Low());
    EXPECT_EQ("240", bench.High());
    EXPECT_EQ("1", bench.Gamma());
    EXPECT_EQ(10, bench.lowValue);
    EXPECT_EQ(240, bench.highValue);
    EXPECT_EQ(1.0, bench.gamma);
    EXPECT_EQ(Ends(0, 230), bench.Ends());
    EXPECT_EQ(115, bench.Row().GetMiddle());
    EXPECT_EQ(1.0, bench.control->GetStripe()->GetGamma());
    EXPECT_EQ(0, bench.Told());
}

TEST_F(RangeControlTest, FloatsHaveTwoDecimalsAndTheirHighEndIsThere) {
    Bench<float> bench(0.0F, 1.0F, false, false);
    bench.BindTo(0.0F, 1.0F, 100);
    EXPECT_EQ("0.00", bench.Low());
    EXPECT_EQ("1.00", bench.High());
    EXPECT_EQ(Ends(0, 99), bench.Ends()) << "position 100 is the last one";
    bench.DragFrom(0, 29);
    EXPECT_EQ("0.29", bench.Low());
    EXPECT_EQ(0.29F, bench.lowValue);
    EXPECT_EQ(Ends(29, 99), bench.Ends()) << "0.29 / 0.01 is below 29";
}

TEST_F(RangeControlTest, FloatsThatNobodyTouchedKeepTheirDigits) {
    Bench<float> bench(0.0163F, 0.985977F, true, false);
    bench.gamma = 1.2345;
    for (int i = 0; i < 2; ++i) { // the second time it stores what the first has shown
        bench.BindTo(0.0163F, 0.985977F, 256);
        EXPECT_EQ("0.02", bench.Low());
        EXPECT_EQ("1.2", bench.Gamma());
        EXPECT_EQ("0.99", bench.High());
        EXPECT_EQ(Ends(0, 255), bench.Ends());
    }
    EXPECT_TRUE(bench.control->Validate() && bench.control->TransferDataFromWindow());
    bench.control->TransferDataToWindow(); // six digits
    EXPECT_TRUE(bench.control->Validate() && bench.control->TransferDataFromWindow());
    EXPECT_EQ(0.0163F, bench.lowValue);
    EXPECT_EQ(1.2345, bench.gamma);
    EXPECT_EQ(0.985977F, bench.highValue);
    TypeInto(*bench.control->GetHighText(), "0.5");
    Press(WXK_RETURN);
    EXPECT_EQ(0.0163F, bench.lowValue) << "changed alone";
    EXPECT_EQ(1.2345, bench.gamma);
    EXPECT_EQ(0.5F, bench.highValue);
    EXPECT_EQ(1, bench.Told());
}

TEST_F(RangeControlTest, ResetGoesToTheExactBounds) {
    Bench<float> bench(0.25F, 0.75F, false, false);
    bench.BindTo(0.0163F, 0.985977F, 256);
    bench.control->Reset();
    EXPECT_EQ("0.02", bench.Low());
    EXPECT_EQ("0.99", bench.High());
    EXPECT_EQ(0.0163F, bench.lowValue);
    EXPECT_EQ(0.985977F, bench.highValue);
    EXPECT_TRUE(bench.control->Validate() && bench.control->TransferDataFromWindow());
    EXPECT_EQ(0.985977F, bench.highValue);
}

TEST_F(RangeControlTest, TwoDecimalsThatLieOutsideTheBoundsAreNotTaken) {
    Bench<float> bench(0.25F, 0.75F, false, false);
    bench.BindTo(0.0163F, 0.985977F, 256);
    TypeInto(*bench.control->GetHighText(), "0.99"); // held at the bound, which shows as 0.99
    Press(WXK_RETURN);
    EXPECT_EQ(0.985977F, bench.highValue);
    EXPECT_EQ("0.99", bench.High());
    TypeInto(*bench.control->GetHighText(), "0.376");
    Press(WXK_RETURN);
    EXPECT_EQ(0.38F, bench.highValue) << "rounded, since that lies inside";
    EXPECT_TRUE(bench.control->Validate());
}

TEST_F(RangeControlTest, TwoDecimalsDoNotCarryAValuePastTheOther) {
    Bench<float> bench(0.124F, 0.75F, false, false);
    bench.BindTo(0.0F, 1.0F, 256);
    TypeInto(*bench.control->GetHighText(), "0.1"); // held at the low value, which shows as 0.12
    Press(WXK_RETURN);
    EXPECT_EQ(0.124F, bench.highValue);
    EXPECT_EQ("0.12", bench.High());
    EXPECT_EQ(Ends(32, 32), bench.Ends()); // 0.124 * 256 = 31.7
    EXPECT_EQ(0.124F, bench.lowValue);
}

TEST_F(RangeControlTest, BoundsThatShowTheSameTakeNumbersAsTheyAre) {
    Bench<float> bench(0.0196F, 0.0204F, false, false);
    bench.BindTo(0.0196F, 0.0204F, 256);
    bench.DragFrom(0, 64); // 0.0196 + 64 * 0.0008 / 256
    EXPECT_NEAR(0.0198F, bench.lowValue, 1e-6F);
    EXPECT_EQ(Ends(64, 255), bench.Ends());
    TypeInto(*bench.control->GetHighText(), "0.0201");
    Press(WXK_RETURN);
    EXPECT_EQ(0.0201F, bench.highValue);
    EXPECT_EQ("0.02", bench.High());
    EXPECT_EQ(Ends(64, 160), bench.Ends()); // 0.0005 / 0.0008 * 256
    EXPECT_TRUE(bench.control->Validate() && bench.control->TransferDataFromWindow());
    EXPECT_EQ(0.0201F, bench.highValue);
}

TEST_F(RangeControlTest, RangesOfOneValueHaveOnePosition) {
    Bench<float> bench(5.0F, 5.0F, true, false);
    bench.BindTo(5.0F, 5.0F, 1);
    EXPECT_EQ(Ends(0, 0), bench.Ends());
    EXPECT_EQ("5.00", bench.Low());
    Drag(bench.Row(), {{2, 4}, {100, 4}});
    EXPECT_EQ("1", bench.Gamma());
    EXPECT_EQ(5.0F, bench.lowValue);
    Focus(*bench.control->GetLowText());
    Press(WXK_UP);
    EXPECT_EQ("5.00", bench.Low());
}

TEST_F(RangeControlTest, FieldsHaveRoomForTheirBounds) {
    const auto fits = [](const auto& bench) {
        const wxTextCtrl& field = *bench.control->GetHighText();
        return field.GetSize().x >= field.GetTextExtent(field.GetValue()).x + 18 && // the theme's own margins
               field.GetRect().GetRight() < bench.control->GetClientSize().x;
    };
    Bench<Byte> narrow(0, 255, true, false);
    const int width = narrow.control->GetBestSize().x;
    narrow.BindTo(0, 255, 256);
    EXPECT_TRUE(fits(narrow));
    EXPECT_EQ(width, narrow.control->GetBestSize().x);
    narrow.BindTo(0, 255, 256);
    EXPECT_EQ(width, narrow.control->GetBestSize().x) << "and so it stays";
    Bench<float> wide(0.0F, 123456789.0F, true, false);
    wide.BindTo(0.0F, 123456789.0F, 256);
    wide.control->TransferDataToWindow(); // six decimals
    EXPECT_EQ("123456792.000000", wide.High()) << "the next float";
    EXPECT_TRUE(fits(wide));
    EXPECT_GT(wide.control->GetBestSize().x, width);
}

TEST_F(RangeControlTest, WholeRangeOfIntegers) {
    constexpr int least = std::numeric_limits<int>::min();
    constexpr int greatest = std::numeric_limits<int>::max();
    Bench<int> bench(least, greatest, false, false);
    bench.BindTo(least, greatest, 65536);
    EXPECT_EQ("-2147483648", bench.Low());
    EXPECT_EQ("2147483647", bench.High());
    EXPECT_EQ(Ends(0, 65535), bench.Ends());
    zel_TriangleEvent event(zel_triangleRight, 32768);
    bench.control->ProcessWindowEvent(event);
    EXPECT_EQ(0, bench.highValue) << "-2^31 + 2^15 * 2^16";
    EXPECT_EQ(1, bench.Told());
}

TEST_F(RangeControlTest, EveryWayOfPressingDrags) {
    Bench<Byte> bench(20, 200, false, false);
    bench.BindTo(0, 255, 256);
    // The second press of a double click takes hold, too.
    wxMouseEvent press(wxEVT_LEFT_DCLICK);
    press.SetLeftDown(true);
    press.SetPosition(bench.PlaceOf(60));
    bench.Row().ProcessWindowEvent(press);
    EXPECT_EQ(60, bench.lowValue);
    EXPECT_TRUE(bench.Row().HasCapture());
    wxMouseEvent move(wxEVT_MOTION);
    move.SetLeftDown(true);
    move.SetPosition(bench.PlaceOf(70));
    bench.Row().ProcessWindowEvent(move);
    EXPECT_EQ(70, bench.lowValue);
    // Who has lost the mouse holds no triangle any more.
    wxMouseCaptureLostEvent lost;
    bench.Row().ProcessWindowEvent(lost);
    move.SetPosition(bench.PlaceOf(80));
    bench.Row().ProcessWindowEvent(move);
    EXPECT_EQ(70, bench.lowValue);
    wxMouseEvent release(wxEVT_LEFT_UP);
    bench.Row().ProcessWindowEvent(release);
    EXPECT_FALSE(bench.Row().HasCapture());
    // A button that went down elsewhere takes nothing along.
    bench.Row().ProcessWindowEvent(move);
    EXPECT_EQ(70, bench.lowValue);
}

TEST_F(RangeControlTest, PictureFollowsTheValues) {
    Bench<Byte> bench(64, 192, false, false);
    bench.BindTo(0, 255, 256);
    const auto painted = [](wxWindow& window) {
        window.Update();
        Settle();
        return Screen(window);
    };
    const wxImage stripe = painted(*bench.control->GetStripe());
    EXPECT_EQ(wxColour(0, 0, 255), ColourAt(stripe, {10, 3}));
    EXPECT_EQ(wxColour(0, 255, 0), ColourAt(stripe, {250, 3}));
    EXPECT_EQ(wxColour(128, 0, 0), ColourAt(stripe, {64 + 1 + 64, 3})) << "half way: 255 / 2 rounded";
    const wxImage ramp = painted(*bench.control->GetRampStripe());
    EXPECT_EQ(wxColour(249, 0, 0), ColourAt(ramp, {251, 3})) << "255 * 250 / 256 = 249.02";
    const wxImage row = painted(bench.Row());
    EXPECT_EQ(wxColour(0, 0, 255), ColourAt(row, {66, 5})) << "64 * 256 / 255 + 2 = 66.3, inside the left triangle";
    EXPECT_EQ(wxColour(255, 0, 0), ColourAt(row, {194, 5})) << "192 * 256 / 255 + 2 = 194.8";
    EXPECT_EQ(bench.Row().GetBackgroundColour(), ColourAt(row, {130, 5}));
    bench.control->SetLow(128);
    EXPECT_EQ(wxColour(0, 0, 255), ColourAt(painted(*bench.control->GetStripe()), {100, 3}));
}

TEST_F(RangeControlTest, MiddleTriangleIsPainted) {
    Bench<Byte> bench(0, 255, true, false);
    bench.BindTo(0, 255, 256);
    Settle();
    // Halfway, 128 * 256 / 255 + 2 = 130.5; its colour is half the difference of (0, 0, 255) and (255, 0, 0).
    EXPECT_EQ(wxColour(127, 0, 127), ColourAt(Screen(bench.Row()), {130, 5}));
}

} // namespace
