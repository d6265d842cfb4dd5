#pragma once

// A user in front of the dialogs that the system brings: each is open, and closes when its function returns.

#include "tests/support/gui_test.h"

#include <wx/dirdlg.h>
#include <wx/filedlg.h>

#include <dlfcn.h>

#include <string>

namespace zel::test {

/// A function of the system beneath the toolkit, which comes without headers.
template <typename Signature>
Signature* OfSystem(const char* name) {
    void* const function = dlsym(RTLD_DEFAULT, name);
    if (function == nullptr)
        throw std::runtime_error(std::string("the system has no ") + name);
    return reinterpret_cast<Signature*>(function);
}

enum class SystemButton : int { open = -3, ok = -5, cancel = -6 }; // GTK_RESPONSE_...

/// Presses a button of the system's.
inline void PressSystemButton(wxDialog& dialog, SystemButton button) {
    OfSystem<void(void*, int)>("gtk_dialog_response")(dialog.GetHandle(), static_cast<int>(button));
}

inline void ChooseColour(wxDialog& dialog, const wxColour& colour) {
    const double rgba[] = {colour.Red() / 255.0, colour.Green() / 255.0, colour.Blue() / 255.0, 1.0};
    void* const selection =
        OfSystem<void*(void*)>("gtk_color_selection_dialog_get_color_selection")(dialog.GetHandle());
    OfSystem<void(void*, const void*)>("gtk_color_selection_set_current_rgba")(selection, rgba);
    PressSystemButton(dialog, SystemButton::ok);
}

/// Gives an open colour dialog a single custom colour, which it returns with OK.
inline void SetFirstCustomColour(const wxColour& colour) {
    void* const settings = OfSystem<void*()>("gtk_settings_get_default")();
    OfSystem<void(void*, const char*, const char*, const char*)>("gtk_settings_set_string_property")(
        settings, "gtk-color-palette", colour.GetAsString(wxC2S_HTML_SYNTAX).utf8_str(), "test");
}

/// @param description  as the system writes it: "Sans Bold 14"
inline void ChooseFont(wxDialog& dialog, const std::string& description) {
    OfSystem<void(void*, const char*)>("gtk_font_chooser_set_font")(dialog.GetHandle(), description.c_str());
    Settle();
    PressSystemButton(dialog, SystemButton::ok);
}

/// @param path  in UTF-8
inline void ChooseFile(wxDialog& dialog, const std::string& path) {
    auto& files = dynamic_cast<wxFileDialog&>(dialog);
    const wxString wished = wxString::FromUTF8(path);
    files.SetPath(wished);
    EXPECT_TRUE(WaitUntil([&] { return files.GetPath() == wished; })) << files.GetPath().utf8_string();
    files.EndModal(wxID_OK);
}

/// @param path  of a folder that is there, in UTF-8
inline void ChooseFolder(wxDialog& dialog, const std::string& path) {
    auto& folders = dynamic_cast<wxDirDialog&>(dialog);
    folders.SetPath(wxString::FromUTF8(path));
    static auto* const getName = OfSystem<char*(void*)>("gtk_file_chooser_get_filename");
    static auto* const freeName = OfSystem<void(void*)>("g_free");
    const auto isShown = [&] {
        char* const name = getName(folders.GetHandle());
        const bool same = name != nullptr && name == path;
        freeName(name);
        return same;
    };
    EXPECT_TRUE(WaitUntil(isShown)) << "the dialog does not show " << path;
    PressSystemButton(dialog, SystemButton::open);
}

} // namespace zel::test
