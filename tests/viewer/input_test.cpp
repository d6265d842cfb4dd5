#include "tests/viewer/noting_canvas.h"

#include <memory>

using namespace zel;
using namespace zel::test;

namespace {

using Vector = kep::Vector3d<float>;

/// A view into the middle of the box: 4 x 5 x 3 microns of 20 x 20 x 7, from (5, 6, 2), the cut at (10, 9, 3).
class InputTest : public NotingCanvasTest {
protected:
    void SetUp() override {
        NotingCanvasTest::SetUp();
        canvas->GetView().visibleBox = view;
        canvas->GetView().scrollStep = {0.75F, 1.0F, 0.5F};
        canvas->GetView().options.cut = cut;
        canvas->GetView().cutStep = {1.0F, 0.5F, 0.25F};
    }
    /// The key, and what it told the canvas.
    Calls After(zel_ProjectionType type, int key, int modifiers = wxMOD_NONE) {
        Forget();
        EXPECT_TRUE(PressKey(Window(type), key, modifiers)) << key;
        return canvas->calls;
    }
    void PointAt(zel_ProjectionType type, const wxPoint& client) { MovePointerTo(Window(type), client); }
    void PointNowhere() { MovePointer({1590, 1190}); }

    const MicronBox view{{5, 6, 2}, {4, 5, 3}};
    const Vector cut{10, 9, 3};
};

/// Notes the mouse events that reach the canvas.
struct MouseNote {
    zel_DrWin3d* window;
    wxEventType type;
    wxPoint at;
    int id;
    bool control;
};

} // namespace

TEST_F(InputTest, ArrowsScrollAlongTheWindowsAxes) {
    struct Case {
        zel_ProjectionType type;
        int key;
        Vector offset;
        const char* call;
    };
    for (const Case& c : {Case{zel_PT_XY, WXK_LEFT, {4.25F, 6, 2}, "OnVis3dChange 3"},
                          Case{zel_PT_XY, WXK_RIGHT, {5.75F, 6, 2}, "OnVis3dChange 3"},
                          Case{zel_PT_XY, WXK_UP, {5, 5, 2}, "OnVis3dChange 5"},
                          Case{zel_PT_XY, WXK_DOWN, {5, 7, 2}, "OnVis3dChange 5"},
                          Case{zel_PT_XZ, WXK_LEFT, {4.25F, 6, 2}, "OnVis3dChange 3"},
                          Case{zel_PT_XZ, WXK_RIGHT, {5.75F, 6, 2}, "OnVis3dChange 3"},
                          Case{zel_PT_XZ, WXK_UP, {5, 6, 1.5F}, "OnVis3dChange 6"},
                          Case{zel_PT_XZ, WXK_DOWN, {5, 6, 2.5F}, "OnVis3dChange 6"},
                          Case{zel_PT_YZ, WXK_LEFT, {5, 6, 1.5F}, "OnVis3dChange 6"},
                          Case{zel_PT_YZ, WXK_RIGHT, {5, 6, 2.5F}, "OnVis3dChange 6"},
                          Case{zel_PT_YZ, WXK_UP, {5, 5, 2}, "OnVis3dChange 5"},
                          Case{zel_PT_YZ, WXK_DOWN, {5, 7, 2}, "OnVis3dChange 5"}}) {
        canvas->GetView().visibleBox = view;
        EXPECT_EQ(After(c.type, c.key), (Calls{c.call})) << c.type << " " << c.key;
        EXPECT_EQ(canvas->GetVisibleBox().offset, c.offset) << c.type << " " << c.key;
        EXPECT_EQ(canvas->GetVisibleBox().size, view.size);
        EXPECT_EQ(canvas->GetCut(), cut);
        EXPECT_EQ(canvas->cutInfos, 1);
    }
}

TEST_F(InputTest, ArrowsStopAtTheEdgesOfTheBox) {
    canvas->GetView().visibleBox.offset = {0.5F, 14.5F, 2};
    EXPECT_EQ(After(zel_PT_XY, WXK_LEFT), (Calls{"OnVis3dChange 3"}));
    EXPECT_EQ(canvas->GetVisibleBox().offset.x, 0.0F);
    EXPECT_EQ(After(zel_PT_XY, WXK_LEFT), Calls{}) << "at the edge";
    EXPECT_EQ(After(zel_PT_XY, WXK_DOWN), (Calls{"OnVis3dChange 5"}));
    EXPECT_EQ(canvas->GetVisibleBox().offset.y, 15.0F); // 20 - 5
    EXPECT_EQ(After(zel_PT_XY, WXK_DOWN), Calls{});
    EXPECT_EQ(After(zel_PT_YZ, WXK_DOWN), Calls{}) << "the same axis";
    canvas->GetView().visibleBox.offset = {15.5F, 0.25F, 3.75F};
    EXPECT_EQ(After(zel_PT_XZ, WXK_RIGHT), (Calls{"OnVis3dChange 3"}));
    EXPECT_EQ(canvas->GetVisibleBox().offset.x, 16.0F); // 20 - 4
    EXPECT_EQ(After(zel_PT_XZ, WXK_RIGHT), Calls{});
    EXPECT_EQ(After(zel_PT_XY, WXK_UP), (Calls{"OnVis3dChange 5"}));
    EXPECT_EQ(canvas->GetVisibleBox().offset.y, 0.0F);
    EXPECT_EQ(After(zel_PT_XY, WXK_UP), Calls{});
    EXPECT_EQ(After(zel_PT_YZ, WXK_RIGHT), (Calls{"OnVis3dChange 6"}));
    EXPECT_EQ(canvas->GetVisibleBox().offset.z, 4.0F); // 7 - 3
    EXPECT_EQ(After(zel_PT_YZ, WXK_RIGHT), Calls{});
}

TEST_F(InputTest, PageKeysMoveTheCutAlongTheThirdAxis) {
    struct Case {
        zel_ProjectionType type;
        int key;
        Vector cut;
        const char* call;
    };
    for (const Case& c : {Case{zel_PT_XY, WXK_PAGEUP, {10, 9, 2.75F}, "OnCutChange 1"},
                          Case{zel_PT_XY, WXK_PAGEDOWN, {10, 9, 3.25F}, "OnCutChange 1"},
                          Case{zel_PT_XZ, WXK_PAGEUP, {10, 8.5F, 3}, "OnCutChange 2"},
                          Case{zel_PT_XZ, WXK_PAGEDOWN, {10, 9.5F, 3}, "OnCutChange 2"},
                          Case{zel_PT_YZ, WXK_PAGEUP, {9, 9, 3}, "OnCutChange 4"},
                          Case{zel_PT_YZ, WXK_PAGEDOWN, {11, 9, 3}, "OnCutChange 4"}}) {
        canvas->GetView().options.cut = cut;
        EXPECT_EQ(After(c.type, c.key), (Calls{c.call})) << c.type << " " << c.key;
        EXPECT_EQ(canvas->GetCut(), c.cut);
        EXPECT_EQ(canvas->GetVisibleBox(), view);
    }
}

TEST_F(InputTest, PageKeysKeepTheCutInsideTheOuterLayers) {
    canvas->GetView().options.cut.z = 6.75F; // the last layer is 0.25 thick: its middle is 7 - 0.125
    EXPECT_EQ(After(zel_PT_XY, WXK_PAGEDOWN), (Calls{"OnCutChange 1"}));
    EXPECT_EQ(canvas->GetCut().z, 6.875F);
    EXPECT_EQ(After(zel_PT_XY, WXK_PAGEDOWN), Calls{});
    EXPECT_EQ(canvas->GetCut().z, 6.875F);
    canvas->GetView().options.cut.z = 0.25F;
    EXPECT_EQ(After(zel_PT_XY, WXK_PAGEUP), (Calls{"OnCutChange 1"}));
    EXPECT_EQ(canvas->GetCut().z, 0.125F);
    EXPECT_EQ(After(zel_PT_XY, WXK_PAGEUP), Calls{});
}

TEST_F(InputTest, SpaceSetsTheCutUnderThePointer) {
    // 10 pixels a micron: pixel (20, 30) is 2 and 3 microns from the view's corner.
    struct Case {
        zel_ProjectionType type;
        Vector cut;
        const char* call;
    };
    for (const Case& c : {Case{zel_PT_XY, {7, 9, 3}, "OnCutChange 6"}, Case{zel_PT_XZ, {7, 9, 5}, "OnCutChange 5"},
                          Case{zel_PT_YZ, {10, 9, 4}, "OnCutChange 3"}}) {
        canvas->GetView().options.cut = cut;
        PointAt(c.type, {20, 30});
        EXPECT_EQ(After(c.type, WXK_SPACE), (Calls{c.call})) << c.type;
        EXPECT_EQ(canvas->GetCut(), c.cut) << c.type;
    }
}

TEST_F(InputTest, SpaceFollowsTheMirroredWindow) {
    canvas->ToggleAxisReverse(0);
    canvas->ToggleAxisReverse(1);
    PointAt(zel_PT_XY, {120, 130});
    EXPECT_EQ(After(zel_PT_XY, WXK_SPACE), (Calls{"OnCutChange 6"}));
    // Mirrored by the size with its border: 200 + border - 120 - 1 pixels from the right.
    const auto border = static_cast<float>(canvas->GetBorder());
    EXPECT_FLOAT_EQ(canvas->GetCut().x, 5 + (79 + border) / 10);
    EXPECT_FLOAT_EQ(canvas->GetCut().y, 6 + (69 + border) / 10);
    PointAt(zel_PT_YZ, {60, 30}); // X's flag mirrors YZ's horizontal axis too, which is Z
    EXPECT_EQ(After(zel_PT_YZ, WXK_SPACE), (Calls{"OnCutChange 3"}));
    EXPECT_FLOAT_EQ(canvas->GetCut().z, 2 + (9 + border) / 10);
}

TEST_F(InputTest, SpaceHoldsTheCutInTheBox) {
    canvas->GetView().visibleBox.offset = {-3, 15, 2};
    PointAt(zel_PT_XY, {10, 190}); // (-3 + 1, 15 + 19)
    EXPECT_EQ(After(zel_PT_XY, WXK_SPACE), (Calls{"OnCutChange 6"}));
    EXPECT_EQ(canvas->GetCut(), Vector(0, 20, 3));
}

TEST_F(InputTest, SpaceAndCActOnlyInTheWindowUnderThePointer) {
    const auto expectNothing = [&](const char* where) {
        for (const int key : {static_cast<int>(WXK_SPACE), static_cast<int>('C'), static_cast<int>('c')}) {
            EXPECT_EQ(After(zel_PT_XY, key), Calls{}) << where << " " << key;
            EXPECT_EQ(canvas->GetCut(), cut);
            EXPECT_EQ(canvas->GetVisibleBox(), view);
        }
    };
    PointAt(zel_PT_YZ, {20, 30});
    expectNothing("over another drawing window");
    MovePointer(canvas->ClientToScreen(wxPoint(350, 350)));
    expectNothing("over the canvas");
    PointNowhere();
    expectNothing("outside");
    PointAt(zel_PT_XY, {-1, 30}); // the frame line is the window's, but not its client area
    ASSERT_EQ(wxFindWindowAtPoint(wxGetMousePosition()), canvas->GetDrWin(zel_PT_XY));
    expectNothing("on the border");
    PointAt(zel_PT_XY, {0, 0});
    EXPECT_EQ(After(zel_PT_XY, WXK_SPACE), (Calls{"OnCutChange 6"})) << "the first pixel is inside";
}

TEST_F(InputTest, CCentresOnThePointer) {
    for (const int key : {'C', 'c'})
        for (const int modifiers : {wxMOD_NONE, wxMOD_SHIFT}) {
            canvas->GetView().visibleBox = view;
            PointAt(zel_PT_XY, {20, 30}); // (5 + 2, 6 + 3) = (7, 9)
            EXPECT_EQ(After(zel_PT_XY, key, modifiers), (Calls{"OnVis3dChange 7"}));
            EXPECT_EQ(canvas->GetVisibleBox().offset, Vector(5, 6.5F, 2)); // less half of 4 and 5
            EXPECT_EQ(canvas->GetCut(), cut);
        }
    canvas->GetView().visibleBox = view;
    PointAt(zel_PT_YZ, {10, 10}); // Z 2 + 1, Y 6 + 1
    EXPECT_EQ(After(zel_PT_YZ, 'C'), (Calls{"OnVis3dChange 7"}));
    EXPECT_EQ(canvas->GetVisibleBox().offset, Vector(5, 4.5F, 1.5F));
}

TEST_F(InputTest, AltCCentresOnTheCutWhereverThePointerIs) {
    PointNowhere();
    canvas->GetView().options.cut = {12, 9, 4};
    for (const int key : {'C', 'c'}) {
        canvas->GetView().visibleBox = view;
        EXPECT_EQ(After(zel_PT_XZ, key, wxMOD_ALT), (Calls{"OnVis3dChange 7"}));
        EXPECT_EQ(canvas->GetVisibleBox().offset, Vector(10, 6.5F, 2.5F)); // less half of 4, 5 and 3
    }
}

TEST_F(InputTest, CtrlCIsPassedOn) {
    PointAt(zel_PT_XY, {20, 30});
    for (const int key : {'C', 'c'})
        for (const int modifiers : {0 | wxMOD_CONTROL, wxMOD_CONTROL | wxMOD_ALT, wxMOD_CONTROL | wxMOD_SHIFT}) {
            Forget();
            EXPECT_FALSE(PressKey(Window(zel_PT_XY), key, modifiers));
            EXPECT_EQ(canvas->calls, Calls{});
            EXPECT_EQ(canvas->GetVisibleBox(), view);
        }
}

TEST_F(InputTest, OtherKeysArePassedOn) {
    PointAt(zel_PT_XY, {20, 30});
    canvas->Play(5);
    canvas->m_iterator.StepForward();
    for (const int key : {static_cast<int>(WXK_F2), static_cast<int>(WXK_F9), static_cast<int>(WXK_TAB),
                          static_cast<int>(WXK_RETURN), static_cast<int>(WXK_ESCAPE), static_cast<int>(WXK_DELETE),
                          static_cast<int>(WXK_NUMPAD_LEFT), static_cast<int>(WXK_NUMPAD_HOME),
                          static_cast<int>(WXK_CONTROL), static_cast<int>(WXK_ALT), static_cast<int>('F'),
                          static_cast<int>('x'), static_cast<int>('1'), static_cast<int>('+'), static_cast<int>('_')}) {
        Forget();
        EXPECT_FALSE(PressKey(Window(zel_PT_XY), key)) << key;
        EXPECT_EQ(canvas->calls, Calls{}) << key;
        EXPECT_EQ(canvas->shown, std::vector<int>{}) << key;
    }
    EXPECT_EQ(canvas->GetImageIterator().current, 1);
}

TEST_F(InputTest, KeysMoveInTime) {
    canvas->Play(8);
    canvas->m_iterator.SetRange(1, 6);
    canvas->m_iterator.SetStep(2);
    canvas->m_iterator.current = 3;
    struct Case {
        int key;
        std::vector<int> shown;
        int direction;
    };
    // Home goes to 1 and End to 5, by whole steps of 2 from 3; 7 is out of range.
    for (const Case& c : {Case{WXK_HOME, {1}, 1}, Case{WXK_HOME, {}, 1}, Case{WXK_END, {5}, -1}, Case{WXK_END, {}, -1},
                          Case{'=', {}, -1}, Case{WXK_NUMPAD_ADD, {}, -1}, Case{'-', {3}, -1},
                          Case{WXK_NUMPAD_SUBTRACT, {1}, -1}, Case{'-', {}, -1}, Case{WXK_NUMPAD_SUBTRACT, {}, -1},
                          Case{'=', {3}, -1}, Case{WXK_NUMPAD_ADD, {5}, -1}, Case{WXK_HOME, {1}, 1}}) {
        Forget();
        EXPECT_TRUE(PressKey(Window(zel_PT_YZ), c.key));
        EXPECT_EQ(canvas->shown, c.shown) << c.key;
        EXPECT_EQ(canvas->GetImageIterator().direction, c.direction) << c.key;
        EXPECT_EQ(canvas->GetTime(), canvas->GetImageIterator().current);
        EXPECT_EQ(canvas->calls, Calls{});
    }
}

TEST_F(InputTest, KeysInTimeStartAgainInALoop) {
    canvas->Play(13);
    canvas->m_iterator.SetRange(3, 10);
    canvas->m_iterator.SetStep(4);
    canvas->m_iterator.loopMode = canvas->m_iterator.oscillationMode = true; // by hand it never turns round
    Forget();
    for (const int key : {'=', '=', '=', '-', '-'})
        PressKey(Window(zel_PT_XY), key);
    EXPECT_EQ(canvas->shown, (std::vector<int>{7, 3, 7, 3, 7}));
}

TEST_F(InputTest, MouseEventsReachTheCanvasAndGoOn) {
    std::vector<MouseNote> notes;
    canvas->Bind(zel_EVT_MOUSE3D, [&](zel_Mouse3dEvent& event) {
        const wxMouseEvent& mouse = event.GetMouseEvent();
        notes.push_back(
            {event.GetWindow(), mouse.GetEventType(), mouse.GetPosition(), event.GetId(), mouse.ControlDown()});
        event.Skip();
    });
    for (const wxEventTypeTag<wxMouseEvent>& type :
         {wxEVT_LEFT_DOWN,     wxEVT_LEFT_UP,      wxEVT_LEFT_DCLICK,  wxEVT_MIDDLE_DOWN,  wxEVT_MIDDLE_UP,
          wxEVT_MIDDLE_DCLICK, wxEVT_RIGHT_DOWN,   wxEVT_RIGHT_UP,     wxEVT_RIGHT_DCLICK, wxEVT_AUX1_DOWN,
          wxEVT_AUX1_UP,       wxEVT_AUX1_DCLICK,  wxEVT_AUX2_DOWN,    wxEVT_AUX2_UP,      wxEVT_AUX2_DCLICK,
          wxEVT_MOTION,        wxEVT_LEAVE_WINDOW, wxEVT_ENTER_WINDOW, wxEVT_MOUSEWHEEL,   wxEVT_MAGNIFY})
        for (const zel_ProjectionType projection : {zel_PT_XY, zel_PT_XZ, zel_PT_YZ}) {
            notes.clear();
            Forget();
            wxMouseEvent event(type);
            event.SetPosition({12, 34});
            event.SetControlDown(true);
            event.SetId(77);
            EXPECT_FALSE(Window(projection).ProcessWindowEvent(event)) << "skipped, for the toolkit";
            ASSERT_EQ(notes.size(), 1U);
            EXPECT_EQ(notes[0].window, canvas->GetDrWin(projection));
            EXPECT_EQ(notes[0].type, type);
            EXPECT_EQ(notes[0].at, wxPoint(12, 34));
            EXPECT_EQ(notes[0].id, 77);
            EXPECT_TRUE(notes[0].control);
            EXPECT_EQ(canvas->pixelInfos, 1);
            EXPECT_EQ(canvas->calls, Calls{}) << "neither cut nor view";
        }
}

TEST_F(InputTest, AMouseEventCopiesItself) {
    wxMouseEvent mouse(wxEVT_MOUSEWHEEL);
    mouse.SetPosition({3, 4});
    mouse.SetId(9);
    const zel_Mouse3dEvent event(canvas->GetDrWin(zel_PT_XZ), mouse);
    EXPECT_EQ(event.GetEventType(), zel_EVT_MOUSE3D);
    const std::unique_ptr<wxEvent> copy(event.Clone());
    const auto* const clone = dynamic_cast<const zel_Mouse3dEvent*>(copy.get());
    ASSERT_NE(clone, nullptr);
    EXPECT_EQ(clone->GetEventType(), zel_EVT_MOUSE3D);
    EXPECT_EQ(clone->GetId(), 9);
    EXPECT_EQ(clone->GetWindow(), canvas->GetDrWin(zel_PT_XZ));
    EXPECT_EQ(clone->GetMouseEvent().GetPosition(), wxPoint(3, 4));
    EXPECT_EQ(clone->GetMouseEvent().GetEventType(), wxEVT_MOUSEWHEEL);
}

TEST_F(InputTest, TheWindowWithTheKeyboardHasTheCross) {
    zel_DrWin3d& window = Window(zel_PT_XZ);
    wxFocusEvent lost(wxEVT_KILL_FOCUS), got(wxEVT_SET_FOCUS);
    window.ProcessWindowEvent(lost);
    EXPECT_FALSE(window.GetCursor().IsOk());
    window.ProcessWindowEvent(got);
    EXPECT_TRUE(window.GetCursor().IsOk());
    window.ProcessWindowEvent(lost);
    EXPECT_FALSE(window.GetCursor().IsOk());
}

TEST_F(InputTest, APressGivesTheWindowTheKeyboard) {
    wxUIActionSimulator hand;
    for (const zel_ProjectionType type : {zel_PT_YZ, zel_PT_XY, zel_PT_XZ}) {
        PointAt(type, {20, 30});
        hand.MouseClick();
        EXPECT_TRUE(WaitUntil([&] { return wxWindow::FindFocus() == canvas->GetDrWin(type); })) << type;
        for (const zel_ProjectionType other : {zel_PT_XY, zel_PT_XZ, zel_PT_YZ})
            EXPECT_EQ(Window(other).GetCursor().IsOk(), other == type);
    }
}

TEST_F(InputTest, RealKeysReachTheWindowWithTheKeyboard) {
    canvas->Play(3);
    Focus(Window(zel_PT_XZ));
    const auto press = [&](int key, int modifiers = wxMOD_NONE) {
        Forget();
        Press(key, modifiers);
    };
    const auto seesView = [&](const char* call) { EXPECT_EQ(canvas->calls, (Calls{call})); };
    press(WXK_LEFT), seesView("OnVis3dChange 3");
    press(WXK_RIGHT), seesView("OnVis3dChange 3");
    press(WXK_UP), seesView("OnVis3dChange 6");
    press(WXK_DOWN), seesView("OnVis3dChange 6");
    press(WXK_PAGEDOWN), seesView("OnCutChange 2");
    press(WXK_PAGEUP), seesView("OnCutChange 2");
    PointAt(zel_PT_XZ, {20, 30});
    press(WXK_SPACE), seesView("OnCutChange 5");
    press('C'), seesView("OnVis3dChange 7");
    press('C', wxMOD_ALT), seesView("OnVis3dChange 7");
    press('C', wxMOD_CONTROL);
    EXPECT_EQ(canvas->calls, Calls{});
    const auto seesTime = [&](int frameShown) { EXPECT_EQ(canvas->shown, std::vector<int>{frameShown}); };
    press('='), seesTime(1);
    press('-'), seesTime(0);
    press(WXK_NUMPAD_ADD), seesTime(1);
    press(WXK_NUMPAD_SUBTRACT), seesTime(0);
    press(WXK_END), seesTime(2);
    press(WXK_HOME), seesTime(0);
    EXPECT_EQ(wxWindow::FindFocus(), canvas->GetDrWin(zel_PT_XZ));
}

TEST_F(InputTest, AHeldKeyQueuesUpNoWork) {
    canvas->Play(1000);
    Settle();
    canvas->paintsXY = 0;
    for (int i = 0; i < 500; ++i) {
        PressKey(Window(zel_PT_XY), '=');
        PressKey(Window(zel_PT_XY), WXK_PAGEDOWN);
        PressKey(Window(zel_PT_XY), WXK_LEFT);
    }
    Settle();
    EXPECT_GE(canvas->paintsXY, 1);
    EXPECT_LE(canvas->paintsXY, 3) << "1,500 keys before the first paint";
    EXPECT_EQ(canvas->paintedTime, 500);
    EXPECT_EQ(canvas->paintedCut, canvas->GetCut());
    EXPECT_EQ(canvas->GetCut().z, 6.875F);
    EXPECT_EQ(canvas->paintedVisible.offset.x, 0.0F);
}

TEST_F(InputTest, APictureThatIsSlowFollowsTheHand) {
    canvas->Play(1000);
    canvas->drawMilliseconds = 60; // far longer than a held key takes to repeat
    Focus(Window(zel_PT_XY));
    Settle();
    Forget();
    wxUIActionSimulator hand;
    int paintsThen = 0;
    canvas->onShown = [&] {
        if (canvas->shown.size() == 15) {
            hand.KeyUp('=');
            paintsThen = canvas->paintsXY;
        }
    };
    hand.KeyDown('=');
    EXPECT_TRUE(WaitUntil([&] { return canvas->shown.size() >= 15; })) << "the key repeats";
    Settle();
    EXPECT_LE(canvas->shown.size(), 25U) << "keys that came while the last pictures were painted";
    EXPECT_LE(canvas->paintsXY - paintsThen, 4) << "they share their pictures";
    EXPECT_EQ(canvas->paintedTime, canvas->GetImageIterator().current);
    canvas->onShown = nullptr;
}

TEST_F(InputTest, AScaleOfNothingIsHarmless) {
    canvas->GetView().options.baseScale = {0, 0, 0};
    canvas->RecomputeVisible();
    Settle();
    ASSERT_EQ(Window(zel_PT_XY).GetClientSize(), wxSize(1, 1));
    PointAt(zel_PT_XY, {0, 0}); // 0 / 0 microns
    PressKey(Window(zel_PT_XY), 'C');
    PressKey(Window(zel_PT_XY), WXK_SPACE);
    EXPECT_EQ(canvas->GetCut(), Vector(0, 0, 3));
    canvas->GetView().options.baseScale = {10, 10, 10};
    canvas->RecomputeVisible();
    EXPECT_EQ(canvas->GetVisibleBox(), MicronBox({0, 0, 0}, {20, 20, 7}));
}
