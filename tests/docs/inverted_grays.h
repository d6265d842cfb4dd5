#pragma once

// What docs/embedding.md quotes of a mapping module.

#include "mapping/zel_graymapping.h"

namespace zel::docs {

/// The gray mapping with one entry more in its menu: "In&verted" shows the negative of what the others make.
template <typename T>
class InvertedGrays : public zel_GrayMappingModule<T> {
public:
    using zel_GrayMappingModule<T>::zel_GrayMappingModule;

    wxMenu* CreateMenu(int& id) override {
        wxMenu* const menu = zel_GrayMappingModule<T>::CreateMenu(id);
        menu->AppendCheckItem(++id, "In&verted", "Show the negative");
        this->Bind(wxEVT_MENU, &InvertedGrays::OnInverted, this, id);
        return menu;
    }

    void Map(const T* data, ColourBuffer& buffer) const override {
        zel_GrayMappingModule<T>::Map(data, buffer);
        if (!m_inverted)
            return;
        const auto negative = [](unsigned char level) { return static_cast<unsigned char>(255 - level); };
        for (std::size_t i = 0; i < buffer.GetCount(); ++i) {
            const kep::RGB_generic<unsigned char> colour = buffer.data[i];
            buffer.data[i] = {negative(colour.red), negative(colour.green), negative(colour.blue)};
        }
    }

private:
    void OnInverted(wxCommandEvent& event) {
        this->RunCommand(event, [this, &event](int) { m_inverted = event.IsChecked(); });
    }

    bool m_inverted = false;
};

} // namespace zel::docs
