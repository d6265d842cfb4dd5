#include "viewer/zel_firstshow.h"

#include <wx/toplevel.h>

#ifdef __WXGTK__
#include <dlfcn.h>
#endif

namespace zel {

void PrepareFirstShow(wxTopLevelWindow& window) {
#ifdef __WXGTK__
    struct Allocation {
        int x, y, width, height;
    };
    using SetAllocation = void (*)(void* widget, const Allocation*);
    const auto setAllocation = reinterpret_cast<SetAllocation>(dlsym(RTLD_DEFAULT, "gtk_widget_set_allocation"));
    using IsRealized = int (*)(void* widget);
    const auto isRealized = reinterpret_cast<IsRealized>(dlsym(RTLD_DEFAULT, "gtk_widget_get_realized"));
    if (setAllocation == nullptr || isRealized == nullptr || isRealized(window.GetHandle()) != 0)
        return;
    const wxSize size = window.GetSize();
    const Allocation allocation{0, 0, size.x, size.y};
    setAllocation(window.GetHandle(), &allocation);
#else
    wxUnusedVar(window);
#endif
}

} // namespace zel
