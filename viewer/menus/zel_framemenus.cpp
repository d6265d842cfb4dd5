#include "viewer/menus/zel_framemenus.h"

#include "viewer/zel_commands.h"

#include <wx/menu.h>

#include <initializer_list>

namespace zel {

namespace {

struct Entry {
    int id;
    const char* label;
    const char* help;
    wxItemKind kind;
};

constexpr Entry separator{wxID_SEPARATOR, "", "", wxITEM_SEPARATOR};

void Append(wxMenu& menu, std::initializer_list<Entry> entries) {
    for (const Entry& entry : entries) {
        if (entry.kind == wxITEM_SEPARATOR)
            menu.AppendSeparator();
        else
            menu.Append(entry.id, entry.label, entry.help, entry.kind);
    }
}

wxMenu* MakeSequenceMenu() {
    auto* const menu = new wxMenu;
    Append(*menu,
           {
               {zel_CMD_BROWSE_FORWARD, "Browse forward\tCtrl+F",
                "Starts to browse the sequence automatically as a slideshow.", wxITEM_CHECK},
               {zel_CMD_BROWSE_BACKWARD, "Browse backward\tCtrl+B",
                "Starts to browse the sequence automatically as a slideshow.", wxITEM_CHECK},
               {zel_CMD_STOP_BROWSING, "Stop browsing\tCtrl+T", "Stops the automatic browsing immediately.",
                wxITEM_NORMAL},
               separator,
               {zel_CMD_LOOP_MODE, "Loop mode",
                "When end of the sequence is reached, should automatic browsing start again?", wxITEM_CHECK},
               {zel_CMD_OSCILLATION_MODE, "Oscillation mode",
                "When end of the sequence is reached, should automatic browsing continue from the beginning or in an "
                "opposite direction?",
                wxITEM_CHECK},
               separator,
               {zel_CMD_BROWSING_RANGE, "Set browsing range...", "Open dialog for setting the image ranges",
                wxITEM_NORMAL},
               {zel_CMD_FASTER, "Increase browsing speed\tF",
                "Increases FPS (images per second) automatic browsing speed.", wxITEM_NORMAL},
               {zel_CMD_SLOWER, "Decrease browsing speed\tS",
                "Decreases FPS (images per second) automatic browsing speed.", wxITEM_NORMAL},
               {zel_CMD_LARGER_STEP, "Increase browsing step",
                "Increases number of images that are stepped over when moving to a next image.", wxITEM_NORMAL},
               {zel_CMD_SMALLER_STEP, "Decrease browsing step",
                "Decreases number of images that are stepped over when moving to a next image.", wxITEM_NORMAL},
           });
    return menu;
}

wxMenu* MakeWindowMenu() {
    auto* const menu = new wxMenu;
    Append(*menu, {
                      {zel_CMD_SHOW_XY, "Show XY\tZ", "Show/hide XY window", wxITEM_CHECK},
                      {zel_CMD_SHOW_XZ, "Show XZ\tY", "Show/hide XZ window", wxITEM_CHECK},
                      {zel_CMD_SHOW_YZ, "Show YZ\tX", "Show/hide YZ window", wxITEM_CHECK},
                  });
    return menu;
}

wxMenu* MakeAxisMenu() {
    auto* const menu = new wxMenu;
    Append(*menu, {
                      {zel_CMD_REVERSE_X, "Reverse X\tF9", "Reverse X axis", wxITEM_CHECK},
                      {zel_CMD_REVERSE_Y, "Reverse Y\tF10", "Reverse Y axis", wxITEM_CHECK},
                      {zel_CMD_REVERSE_Z, "Reverse Z\tF11", "Reverse Z axis", wxITEM_CHECK},
                  });
    return menu;
}

wxMenu* MakeAutofocusMenu() {
    auto* const menu = new wxMenu;
    Append(*menu, {
                      {zel_CMD_AUTOFOCUS_XY, "Window XY", "Autofocus in XY windows on/off", wxITEM_CHECK},
                      {zel_CMD_AUTOFOCUS_XZ, "Window XZ", "Autofocus in XZ windows on/off", wxITEM_CHECK},
                      {zel_CMD_AUTOFOCUS_YZ, "Window YZ", "Autofocus in YZ windows on/off", wxITEM_CHECK},
                  });
    return menu;
}

wxMenu* MakeViewMenu() {
    auto* const menu = new wxMenu;
    Append(
        *menu,
        {
            {zel_CMD_SAVE_3D_DATA, "Save 3D data...\tCtrl+S", "Save original 3D image data", wxITEM_NORMAL},
            {zel_CMD_SAVE_VIEW, "Save view...\tCtrl+V", "Save current view for publication purposes", wxITEM_NORMAL},
            {zel_CMD_SAVE_GALLERY, "Save gallery...\tCtrl+I", "Save slices of 3D data in chosen increment",
             wxITEM_NORMAL},
            separator,
            {zel_CMD_ADJUST_FRAME_SIZE, "Adjust frame size\tCtrl+E", "Adjust frame size according to the visible image",
             wxITEM_NORMAL},
            {zel_CMD_AUTO_ADJUST_FRAME_SIZE, "Auto adjust frame size", "Automatically adjust frame on zooming",
             wxITEM_CHECK},
            separator,
            {zel_CMD_VOLUME, "3D volume visualization\tV", "Show 3D visualization", wxITEM_NORMAL},
            separator,
            {zel_CMD_ZOOM_IN, "Zoom In\tF2", "Zoom in", wxITEM_NORMAL},
            {zel_CMD_ZOOM_OUT, "Zoom Out\tF3", "Zoom out", wxITEM_NORMAL},
            {zel_CMD_NORMAL_ZOOM, "Normal Zoom\t1", "Normal zoom", wxITEM_NORMAL},
            separator,
            {zel_CMD_AUTOFOCUS_ALL, "Autofocus in all windows\tA", "Autofocus in all windows on/off", wxITEM_CHECK},
            separator,
            {zel_CMD_SHOW_ANNOTATION, "Show windows annotation\tAlt+/", "Show/hide windows annotation", wxITEM_CHECK},
            {zel_CMD_SHOW_INFO, "Show info\tI", "Show/hide info window", wxITEM_CHECK},
            separator,
        });
    menu->Append(zel_CMD_WINDOW_MENU, "Window", MakeWindowMenu(), "Show/hide window");
    menu->Append(zel_CMD_AXIS_MENU, "Axis", MakeAxisMenu(), "Axis options");
    menu->Append(zel_CMD_AUTOFOCUS_MENU, "Autofocus", MakeAutofocusMenu(), "Switch autofocus on/off");
    Append(*menu, {separator, {zel_CMD_PREFERENCES, "Preferences\tCtrl-P", "Change screen options", wxITEM_NORMAL}});
    return menu;
}

} // namespace

wxMenuBar* MakeFrameMenuBar() {
    auto* const bar = new wxMenuBar;
    bar->Append(MakeSequenceMenu(), "&Sequence");
    bar->Append(MakeViewMenu(), "&View");
    for (const int id : {zel_CMD_AUTO_ADJUST_FRAME_SIZE, zel_CMD_SHOW_XY, zel_CMD_SHOW_XZ, zel_CMD_SHOW_YZ})
        bar->Check(id, true);
    return bar;
}

} // namespace zel
