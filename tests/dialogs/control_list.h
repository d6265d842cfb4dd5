#pragma once

// What a dialog shows, as one text for each control.

#include <wx/notebook.h>
#include <wx/radiobox.h>
#include <wx/spinctrl.h>
#include <wx/statbox.h>
#include <wx/statline.h>
#include <wx/wx.h>

#include <string>
#include <vector>

namespace zel::test {

/// A radio box as "label [first|second] 2 columns, first", the last one selected.
inline std::string DescribeRadioBox(const wxRadioBox& box) {
    std::string text = box.GetLabel().utf8_string() + " [";
    for (unsigned i = 0; i < box.GetCount(); ++i)
        text += (i == 0 ? "" : "|") + box.GetString(i).utf8_string();
    return text + "] " + std::to_string(box.GetColumnCount()) + " columns, " + box.GetStringSelection().utf8_string();
}

inline std::string DescribeControl(const wxWindow& control) {
    const std::string label = control.GetLabel().utf8_string();
    const std::string id = control.GetId() < 0 ? "-" : std::to_string(control.GetId());
    if (dynamic_cast<const wxTextCtrl*>(&control) != nullptr)
        return id + " field";
    if (dynamic_cast<const wxStaticLine*>(&control) != nullptr)
        return id + " line";
    if (dynamic_cast<const wxStaticBox*>(&control) != nullptr)
        return "box " + label;
    if (dynamic_cast<const wxNotebook*>(&control) != nullptr)
        return id + " notebook";
    if (dynamic_cast<const wxCheckBox*>(&control) != nullptr)
        return id + " check box " + label;
    if (dynamic_cast<const wxRadioButton*>(&control) != nullptr)
        return id + " radio button " + label;
    if (const auto* const box = dynamic_cast<const wxRadioBox*>(&control))
        return id + " radio box " + DescribeRadioBox(*box);
    if (const auto* const spin = dynamic_cast<const wxSpinCtrl*>(&control))
        return id + " spin " + std::to_string(spin->GetMin()) + " to " + std::to_string(spin->GetMax()) + ", " +
               std::to_string(spin->GetValue());
    if (const auto* const book = dynamic_cast<const wxNotebook*>(control.GetParent()))
        return "page " + book->GetPageText(static_cast<std::size_t>(book->FindPage(&control))).utf8_string();
    return id + " " + label;
}

inline void AppendControls(const wxWindow& window, std::vector<std::string>& lines) {
    for (const wxWindow* const child : window.GetChildren()) {
        lines.push_back(DescribeControl(*child));
        AppendControls(*child, lines);
    }
}

/// The window's controls and theirs, in the order in which they stand on the screen and the Tab key visits them. Each
/// begins with its id, "-" for one of the toolkit's; buttons and static texts go on with their label.
inline std::vector<std::string> ListControls(const wxWindow& window) {
    std::vector<std::string> lines;
    AppendControls(window, lines);
    return lines;
}

} // namespace zel::test
