#include "viewer/draw/zel_squareborder.h"

#ifdef __WXGTK__
#include <dlfcn.h>
#endif

namespace zel {

namespace {

#ifdef __WXGTK__
/// A function of the toolkit or of GTK, which come without headers for it; null if there is none.
template <typename Signature>
Signature* Find(const char* name) {
    return reinterpret_cast<Signature*>(dlsym(RTLD_DEFAULT, name));
}

/// The toolkit draws borders in the style of an entry field that is never shown: that one alone gets a rule more.
bool SquareHiddenEntry() {
    constexpr unsigned priority = 900; // above themes and the user's own style
    auto* const hiddenEntry = Find<void*()>("_ZN12wxGTKPrivate14GetEntryWidgetEv");
    auto* const styleOf = Find<void*(void*)>("gtk_widget_get_style_context");
    auto* const makeRules = Find<void*()>("gtk_css_provider_new");
    auto* const load = Find<int(void*, const char*, long, void**)>("gtk_css_provider_load_from_data");
    auto* const add = Find<void(void*, void*, unsigned)>("gtk_style_context_add_provider");
    auto* const release = Find<void(void*)>("g_object_unref");
    if (!hiddenEntry || !styleOf || !makeRules || !load || !add || !release)
        return false;
    void* const rules = makeRules();
    // Without the second rule the theme would have the corners change in time, which never passes for this widget.
    load(rules, "* { border-radius: 0; transition: none; }", -1, nullptr);
    add(styleOf(hiddenEntry()), rules, priority);
    release(rules); // the style holds them
    return true;
}
#endif

} // namespace

void SquareBorders() {
#ifdef __WXGTK__
    static const bool once = SquareHiddenEntry();
    static_cast<void>(once);
#endif
}

} // namespace zel
