// A host against the installed library: it needs no display, catches the library's exceptions and binds its events.
#include "factory/zel_viewer.h"

#include <wx/init.h>
#include <wx/log.h>

#include <cstdio>
#include <typeinfo>

int main() {
    wxInitializer toolkit;
    wxLogNull quiet;
    mor::Image4d<unsigned short> image;
    image.MakeRoom(3, 2, 1, 1);
    image.SetVoxel(2, 1, 0, 0, 1234);
    if (image.GetUpdatedMaxValue() != 1234)
        return 2;
    try {
        kep::Image3d<unsigned short> frame;
        frame.ReadImage("there-is-no-such-file.tif", nullptr, false, -1, nullptr, nullptr);
        return 3;
    } catch (const kep::IOException& e) {
        std::puts(e.what());
    }
    try {
        image.RemoveFrame(7);
        return 4;
    } catch (const kep::LibException& e) {
        std::puts(e.what());
    }
    bool told = false;
    wxEvtHandler handler;
    handler.Bind(zel::zel_EVT_MAPPING_CHANGED, [&told](zel::zel_MappingEvent& event) { told = event.IsCommitted(); });
    zel::zel_MappingEvent event(true);
    handler.ProcessEvent(event);
    return told ? 0 : 5;
}
