#pragma once

// What the menus of the mapping modules hold.

#include <wx/menu.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zel::test {

struct Row {
    int offset; ///< -1 for a separator
    std::string label;
    std::string help;
    wxItemKind kind;
    bool isEnabled = true;
};
using Rows = std::vector<Row>;

const Row separator{-1, "", "", wxITEM_SEPARATOR};
const Row bitdepth{0, "Set bitdepth...", "Set \"real\" image bitdepth", wxITEM_NORMAL};

/// The entries that all modules have, in their order.
inline Rows CommonRows() {
    return {
        {1, "Set image ran&ge...", "Set the range of displayed image intensities", wxITEM_NORMAL},
        separator,
        {2, "&No stretch\tAlt-1", "Apply no stretching", wxITEM_CHECK},
        {3, "&Linear stretch\tAlt-2", "Apply linear stretch", wxITEM_CHECK},
        {4, "&Percentil stretch\tAlt-3", "Apply percentil stretch", wxITEM_CHECK},
        {5, "&Histogram equalization\tAlt-4", "Apply histogram equalization", wxITEM_CHECK},
        {6, "Levels\tAlt-5", "Show levels dialog", wxITEM_CHECK},
        separator,
        {7, "Threshold\tAlt-6", "Apply thresholding", wxITEM_CHECK},
    };
}

inline Rows PaletteRows() {
    return {
        separator,
        {8, "Gray", "View the data as labels", wxITEM_CHECK},
        {9, "Saturation", "Show saturated values in colours", wxITEM_CHECK},
        {10, "Labels", "View the data as labels", wxITEM_CHECK},
        {11, "Periodic", "View the data with a periodic palette", wxITEM_CHECK},
        {12, "Palette...", "Select custom palette", wxITEM_CHECK},
    };
}

inline Rows operator+(Rows rows, const Rows& more) {
    rows.insert(rows.end(), more.begin(), more.end());
    return rows;
}

/// A menu as CreateMenu leaves it: without marks, but for the one that the toolkit gives the first of radio entries.
inline void ExpectMenu(const wxMenu& menu, int firstId, const Rows& rows) {
    ASSERT_EQ(menu.GetMenuItemCount(), rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const wxMenuItem& item = *menu.FindItemByPosition(i);
        EXPECT_EQ(item.GetKind(), rows[i].kind) << i;
        if (rows[i].offset < 0)
            continue;
        EXPECT_EQ(item.GetId(), firstId + rows[i].offset) << i;
        EXPECT_EQ(item.GetItemLabel(), rows[i].label) << i;
        EXPECT_EQ(item.GetHelp(), rows[i].help) << i;
        EXPECT_EQ(item.IsEnabled(), rows[i].isEnabled) << i;
        EXPECT_FALSE(item.GetKind() == wxITEM_CHECK && item.IsChecked()) << i << ": marks come when the menu is opened";
    }
}

} // namespace zel::test
