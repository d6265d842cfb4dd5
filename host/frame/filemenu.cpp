#include "host/frame/filemenu.h"

#include "image/zel_modaldialog.h"
#include "model/zel_filenames.h"
#include "viewer/zel_commands.h"
#include "viewer/zel_viewer3dcanvas.h"

#include <wx/app.h>
#include <wx/dirdlg.h>
#include <wx/dnd.h>
#include <wx/filedlg.h>
#include <wx/menu.h>

#include <memory>
#include <utility>

namespace zelviewer {

namespace {

constexpr int openFolderCommand = 20100;

std::string NameOf(const wxString& path) {
    return static_cast<const char*>(path.fn_str());
}

/// In the order in which people expect them.
std::vector<std::string> NamesOf(const wxArrayString& paths) {
    std::vector<std::string> names;
    for (const wxString& path : paths)
        names.push_back(NameOf(path));
    zel::SortFileNames(names);
    return names;
}

wxString LastFolder(const HostActions& actions) {
    return {FolderOf(actions.recent()).c_str(), *wxConvFileName};
}

void AskForFiles(wxWindow* parent, const HostActions& actions) {
    std::vector<std::string> files;
    {
        wxFileDialog dialog(parent, "Open images: one, or one for each point in time", LastFolder(actions),
                            wxEmptyString,
                            "Images (*.tif;*.tiff;*.ics)|*.tif;*.tiff;*.TIF;*.TIFF;*.ics;*.ICS|All files|*",
                            wxFD_OPEN | wxFD_FILE_MUST_EXIST | wxFD_MULTIPLE);
        if (zel::RunModal(dialog) != wxID_OK)
            return;
        wxArrayString paths;
        dialog.GetPaths(paths);
        files = NamesOf(paths);
    }
    actions.open(std::move(files));
}

void AskForFolder(wxWindow* parent, const HostActions& actions) {
    std::string folder;
    {
        wxDirDialog dialog(parent, "Open all images in a folder", LastFolder(actions),
                           wxDD_DEFAULT_STYLE | wxDD_DIR_MUST_EXIST);
        if (zel::RunModal(dialog) != wxID_OK)
            return;
        folder = NameOf(dialog.GetPath());
    }
    actions.open({std::move(folder)});
}

class DroppedFiles : public wxFileDropTarget {
public:
    explicit DroppedFiles(HostActions actions) : m_actions(std::move(actions)) {}

    bool OnDropFiles(wxCoord, wxCoord, const wxArrayString& paths) override {
        // Later: the program that they are dragged from waits for the answer.
        wxTheApp->CallAfter([open = m_actions.open, files = NamesOf(paths)] { open(files); });
        return true;
    }

private:
    HostActions m_actions;
};

/// The submenu of what was opened before. It is filled again whenever the menu above it opens: other windows and other
/// programs open files too.
class RecentMenu {
public:
    RecentMenu(wxMenuItem& item, HostActions actions) : m_item(item), m_actions(std::move(actions)) {}

    void Fill() {
        wxMenu& menu = *m_item.GetSubMenu();
        while (menu.GetMenuItemCount() > 0)
            menu.Destroy(menu.FindItemByPosition(0));
        m_files = m_actions.recent();
        for (std::size_t i = 0; i < m_files.size(); ++i) {
            wxString name = wxString::FromUTF8(DescribeFiles(m_files[i]));
            name.Replace("&", "&&"); // one alone underlines a letter
            menu.Append(wxID_FILE1 + static_cast<int>(i), wxString::Format("&%zu ", i + 1) + name,
                        wxString::FromUTF8(m_files[i].front()));
        }
        m_item.Enable(!m_files.empty());
    }

    void Open(int id) const {
        const auto number = static_cast<std::size_t>(id - wxID_FILE1);
        if (number < m_files.size())
            m_actions.open(m_files[number]);
    }

private:
    wxMenuItem& m_item;
    HostActions m_actions;
    std::vector<OpenedFiles> m_files;
};

/// A second entry for a command of the library's menus.
void AppendCopy(wxMenu& menu, const wxMenuBar& bar, int id) {
    const wxMenuItem& item = *bar.FindItem(id);
    menu.Append(id, item.GetItemLabel(), item.GetHelp());
}

} // namespace

void AddFileMenu(zel::zel_Viewer3dFrame& frame, const HostActions& actions) {
    auto* const menu = new wxMenu;
    menu->Append(wxID_OPEN, "&Open...\tCtrl+O", "Open images in a window of their own");
    menu->Append(openFolderCommand, "Open &folder...\tCtrl+Shift+O", "Open all images in a folder");
    wxMenuItem* const recentItem = menu->AppendSubMenu(new wxMenu, "Open &recent", "Open what was opened before");
    menu->AppendSeparator();
    for (const int id : {zel::zel_CMD_SAVE_3D_DATA, zel::zel_CMD_SAVE_VIEW, zel::zel_CMD_SAVE_GALLERY})
        AppendCopy(*menu, *frame.GetMenuBar(), id);
    menu->AppendSeparator();
    menu->Append(wxID_CLOSE, "&Close\tCtrl+W", "Close this window");
    menu->Append(wxID_EXIT, "&Quit\tCtrl+Q", "Close all windows");
    frame.GetMenuBar()->Insert(0, menu, "&File");

    const auto recent = std::make_shared<RecentMenu>(*recentItem, actions);
    recent->Fill();
    frame.Bind(wxEVT_MENU_OPEN, [recent, menu](wxMenuEvent& event) {
        event.Skip();
        if (event.GetMenu() == menu)
            recent->Fill();
    });
    const auto bind = [&frame](int id, const auto& handle) { frame.Bind(wxEVT_MENU, handle, id); };
    for (int id = wxID_FILE1; id < wxID_FILE1 + static_cast<int>(mostRecentFiles); ++id)
        bind(id, [recent](wxCommandEvent& event) { recent->Open(event.GetId()); });
    bind(wxID_OPEN, [&frame, actions](wxCommandEvent&) { AskForFiles(&frame, actions); });
    bind(openFolderCommand, [&frame, actions](wxCommandEvent&) { AskForFolder(&frame, actions); });
    bind(wxID_CLOSE, [&frame](wxCommandEvent&) { frame.Close(); });
    bind(wxID_EXIT, [actions](wxCommandEvent&) { actions.quit(); });
    frame.SetDropTarget(new DroppedFiles(actions)); // the window owns it, here and below
    for (const zel::zel_ProjectionType type : {zel::zel_PT_XY, zel::zel_PT_XZ, zel::zel_PT_YZ})
        frame.GetCanvas()->GetDrWin(type)->SetDropTarget(new DroppedFiles(actions));
}

} // namespace zelviewer
