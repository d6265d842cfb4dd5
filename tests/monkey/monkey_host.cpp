// What the monkey does as a host.

#include "tests/monkey/hands.h"
#include "tests/monkey/monkey.h"
#include "viewer/zel_commands.h"
#include "viewer/zel_fit.h"
#include "volume/vol3D_canvas.h"
#include "volume/vol3D_frame.h"

#include <wx/menu.h>

#include <limits>

namespace zel::test {

namespace {

constexpr std::size_t mostViewers = 3;

} // namespace

const std::vector<Monkey::Command>& Monkey::AllCommands() {
    static const std::vector<Command> commands{
        {"menu entry", 22, &Monkey::ChooseEntry, false},
        {"menu opened", 2, &Monkey::OpenMenu, true},
        {"command id", 6, &Monkey::SendAnyId, false},
        {"key", 14, &Monkey::PressKey, true},
        {"mouse", 10, &Monkey::UseMouse, true},
        {"drag", 5, &Monkey::DragMouse, true},
        {"real input", 3, &Monkey::UseHands, false},
        {"resize", 5, &Monkey::Resize, true},
        {"window state", 3, &Monkey::ChangeWindowState, true},
        {"focus", 2, &Monkey::MoveFocus, true},
        {"system event", 4, &Monkey::SendSystemEvent, true},
        {"any window", 6, &Monkey::TouchAnyWindow, false},
        {"volume window", 4, &Monkey::UseVolume, false},
        {"wait", 3, &Monkey::WaitAWhile, true},
        {"close", 1, &Monkey::CloseViewer, false},
        {"open", 2, &Monkey::OpenViewer, false},
        {"host: view", 6, &Monkey::ChangeView, true},
        {"host: settings", 3, &Monkey::ChangeSettings, true},
        {"host: browse", 5, &Monkey::Browse, true},
        {"host: frames", 5, &Monkey::ChangeFrames, false},
        {"host: modules", 1, &Monkey::ChangeModules, false},
        {"host: save", 3, &Monkey::Save, false},
        {"host: volume", 2, &Monkey::DriveVolume, false},
        {"host: odd moment", 2, &Monkey::GoAtOddMoment, false},
    };
    return commands;
}

void Monkey::OpenViewer() {
    if (m_viewers.size() >= mostViewers)
        return;
    wxWindow* parent = nullptr;
    if (m_host && m_dice.OneIn(4))
        parent = m_host;
    const auto open = [this] { Note("the program opens files"); };
    m_viewers.push_back(OpenAnyViewer(m_dice, parent, open));
    Note("opened: " + m_viewers.back()->name);
    if (m_dice.OneIn(2))
        PumpFor(100);
}

void Monkey::ChangeView() {
    if (m_viewer->GetCanvas() == nullptr)
        return;
    zel_Viewer3dCanvas& canvas = *m_viewer->GetCanvas();
    const MicronBox& box = canvas.GetBoundingBox();
    const auto within = [&](float low, float size) { return low + size * m_dice.Between(-0.1F, 1.1F); };
    const float x = within(box.offset.x, box.size.x), y = within(box.offset.y, box.size.y),
                z = within(box.offset.z, box.size.z);
    constexpr float odd[] = {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(), -1e30F,
                             1e30F, 0.0F};
    switch (m_dice.Any(11)) {
    case 0:
        canvas.ChangeCut({x, y, z});
        break;
    case 1:
        canvas.ChangeCut({m_dice.Of(odd), y, m_dice.Of(odd)});
        break;
    case 2:
        canvas.CentreOn({x, y, z});
        break;
    case 3:
        canvas.CentreOn({x, m_dice.Of(odd), z});
        break;
    case 4:
        canvas.CenterView();
        canvas.MakeDirtyAndRefresh(zel_PT_ALL);
        break;
    case 5:
        FillRoom(canvas, wxSize(m_dice.Any(700) - 10, m_dice.Any(700) - 10));
        break;
    case 6:
        ShowInTrueProportions(canvas);
        break;
    case 7:
        canvas.SetTruePictures({m_dice.OneIn(2), m_dice.OneIn(2), m_dice.OneIn(2), canvas.GetTruePictures().meshes});
        break;
    case 8:
        canvas.InfoFrame_Show(m_dice.OneIn(2));
        break;
    case 9:
        canvas.OnDataChange();
        break;
    default:
        m_viewer->AskAboutPixels(m_dice);
        m_viewer->frame->RefreshIcon();
    }
}

void Monkey::ChangeSettings() {
    if (m_viewer->GetCanvas() == nullptr)
        return;
    zel_CanvasSettings settings;
    m_viewer->GetCanvas()->GetSettings(settings);
    settings.showAnnotation = m_dice.OneIn(2);
    settings.cutPointer.style = m_dice.Any(8) - 1;
    settings.scaleBar.position = m_dice.Any(6) - 1;
    settings.scaleBar.length = m_dice.Between(-1, 30);
    settings.scaleBar.thickness = m_dice.Any(6) - 1;
    settings.timeBar.position = m_dice.Any(6) - 1;
    settings.timeBar.thickness = m_dice.Any(5) - 1;
    settings.timeBar.length = m_dice.Any(200) - 20;
    settings.annotation.positionYZ = m_dice.Any(6) - 1;
    settings.annotation.offsetXY = {m_dice.Any(300) - 100, m_dice.Any(300) - 100};
    settings.annotation.textXY = wxString(m_dice.Any(40), L'\u03bc');
    m_viewer->GetCanvas()->SetSettings(settings);
}

void Monkey::Browse() {
    if (m_viewer->GetCanvas() == nullptr)
        return;
    zel_Viewer3dCanvas& canvas = *m_viewer->GetCanvas();
    switch (m_dice.Any(4)) {
    case 0:
        canvas.ShowNextImage();
        break;
    case 1: {
        mor::ImageIterator iterator = canvas.GetImageIterator();
        const int first = m_dice.Any(iterator.limitLast + 1);
        iterator.SetRange(first, first + m_dice.Any(iterator.limitLast + 1 - first));
        iterator.SetStep(1 + m_dice.Any(iterator.rangeLast - iterator.rangeFirst + 1));
        iterator.SetFPS(1 + m_dice.Any(200));
        try {
            canvas.UpdateImageIterator(iterator);
        } catch (const kep::InternalException& failure) { // a range wholly above or below the one before
            EXPECT_EQ(failure.GetText(), "Incorrect index given.");
        }
        break;
    }
    case 2:
        m_viewer->frame->ProcessCommand(m_dice.OneIn(3) ? zel_CMD_STOP_BROWSING : zel_CMD_BROWSE_FORWARD);
        break;
    default:
        canvas.GoToFrame(m_dice.Any(14) - 2);
    }
}

void Monkey::ChangeFrames() {
    switch (m_dice.Any(4)) {
    case 0:
        m_viewer->InsertFrame(m_dice);
        break;
    case 1:
        m_viewer->RemoveFrame(m_dice);
        break;
    case 2:
        m_viewer->ChangeVoxels(m_dice);
        break;
    default:
        m_viewer->ChangeGeometry(m_dice);
    }
}

void Monkey::ChangeModules() {
    switch (m_dice.Any(5)) {
    case 0:
        m_viewer->ReplaceCanvas();
        break;
    case 1: {
        wxMenu menu;
        menu.Append(30000, "Of the host\tH");
        menu.AppendCheckItem(30001, "Checked by the host");
        m_viewer->frame->AppendMenuW(&menu, "H&ost");
        break;
    }
    case 2:
        m_viewer->frame->SetInfoStatusText("a message of the host", m_dice.Any(3));
        break;
    default:
        if (m_viewer->frame->GetMenuBar()->GetMenuCount() < 12)
            m_viewer->AddModule(m_dice.OneIn(2));
    }
}

void Monkey::Save() {
    if (m_viewer->GetCanvas() == nullptr)
        return;
    zel_Viewer3dCanvas& canvas = *m_viewer->GetCanvas();
    static const char* const names[] = {"host.tif", "host.ics", "no/such/folder.tif", "host.png", "host"};
    const std::string name = m_folder / m_dice.Of(names);
    Note(name);
    switch (m_dice.Any(3)) {
    case 0:
        canvas.Save3dData(wxString::FromUTF8(name));
        break;
    case 1:
        canvas.SaveActualView(name.c_str(), m_dice.Any(20), static_cast<zel_ProjectionType>(1 + m_dice.Any(7)));
        break;
    default: {
        const int first = m_dice.Any(6) - 1, last = m_dice.Any(22), step = m_dice.Any(4) - 1;
        const bool byRows = m_dice.OneIn(2);
        const int count = m_dice.Any(5) - 1;
        canvas.SaveGalleryView(name.c_str(), first, last, step, byRows, count, m_dice.Any(9));
    }
    }
}

void Monkey::DriveVolume() {
    vol3D_VolVisFrame* const volume =
        m_viewer->GetCanvas() != nullptr ? m_viewer->GetCanvas()->GetVolVisFrame() : nullptr;
    if (volume == nullptr)
        return;
    vol3D_VolVisCanvas& canvas = *volume->GetCanvas();
    switch (m_dice.Any(7)) {
    case 0:
        if (canvas.IsShownOnScreen())
            canvas.TakePicture();
        break;
    case 1:
        canvas.SetBackground(m_dice.Between(0, 1), m_dice.Between(0, 1), m_dice.Between(0, 1));
        break;
    case 2:
        canvas.SetViewDirection(-4, 0, 0, 1, 0, 1, 0);
        break;
    case 3:
        canvas.SaveViewFile(m_folder / "host.zelview");
        break;
    case 4: {
        static const char* const files[] = {"host.zelview", "garbage.txt", "garbage.tif", "empty.zelview", "none"};
        canvas.LoadViewFile(m_folder / m_dice.Of(files));
        break;
    }
    case 5:
        canvas.ResetView();
        break;
    default:
        m_viewer->GetCanvas()->UpdateVolVis();
        m_viewer->GetCanvas()->UpdateIsosurface();
    }
}

/// Under a dialog, on which a user has no other window to use.
void Monkey::ActAsHost() {
    ForgetTheGone();
    if (m_viewers.empty())
        return;
    m_viewer = m_viewers[static_cast<std::size_t>(m_dice.Any(static_cast<int>(m_viewers.size())))].get();
    constexpr void (Monkey::*acts[])() = {&Monkey::ChangeView,   &Monkey::ChangeSettings, &Monkey::Browse,
                                          &Monkey::ChangeFrames, &Monkey::Resize,         &Monkey::GoAtOddMoment,
                                          &Monkey::GoAtOddMoment};
    const int which = m_dice.Any(static_cast<int>(std::size(acts)));
    Note("meanwhile the host does " + std::to_string(which) + " to " + m_viewer->name);
    (this->*acts[which])();
}

void Monkey::GoAtOddMoment() {
    const int way = m_dice.Any(7);
    Note("way " + std::to_string(way));
    switch (way) {
    case 0:
        m_viewer->Destroy();
        break;
    case 1:
        m_viewer->frame->Close(true);
        break;
    case 2:
        delete m_viewer->frame.get();
        break;
    case 3:
        m_viewer->Detach();
        break;
    case 4: // in the middle of an event of another window
        m_viewer->frame->CallAfter([frame = wxWeakRef<wxFrame>(m_viewer->frame.get())] {
            if (frame)
                frame->Destroy();
        });
        break;
    case 5:
        if (m_viewer->GetCanvas() != nullptr)
            if (vol3D_VolVisFrame* const volume = m_viewer->GetCanvas()->GetVolVisFrame())
                volume->Destroy();
        break;
    default: // the host's window, with the viewers in it
        if (m_host && m_dice.OneIn(2)) {
            m_host->Destroy();
            m_host = new wxFrame(nullptr, wxID_ANY, "host", wxPoint(1400, 1000), wxSize(120, 80));
            m_host->Show();
        }
    }
}

} // namespace zel::test
