#include "overlay/zel_overlayer.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace zel {

template <typename L>
zel_OverlayBuffer<L>::zel_OverlayBuffer(zel_OverlayWindowType windowType) : m_windowType(windowType) {}

template <typename L>
std::size_t zel_OverlayBuffer<L>::GetWidth() const {
    const bool isYZ = m_windowType == zel_OverlayWindowCutYZ || m_windowType == zel_OverlayWindowAutofocusYZ;
    return isYZ ? m_layers[0].GetSize().y : m_layers[0].GetSize().x;
}

template <typename L>
std::size_t zel_OverlayBuffer<L>::GetHeight() const {
    const bool isXY = m_windowType == zel_OverlayWindowWhole || m_windowType == zel_OverlayWindowCutXY ||
                      m_windowType == zel_OverlayWindowAutofocusXY;
    return isXY ? m_layers[0].GetSize().y : m_layers[0].GetSize().z;
}

template class zel_OverlayBuffer<unsigned short>;

template <typename L, typename V>
zel_Overlayer<L, V>::~zel_Overlayer() {
    delete[] m_palette;
}

template <typename L, typename V>
void zel_Overlayer<L, V>::SetPalette(const Palette& palette) {
    auto colours = std::make_unique<kep::RGB_generic<unsigned char>[]>(palette.size());
    std::copy(palette.begin(), palette.end(), colours.get());
    delete[] std::exchange(m_palette, colours.release());
    m_paletteSize = palette.size();
}

#define ZEL_INSTANTIATE(L, V) template class zel_Overlayer<L, V>;
KEP_LABEL_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE

} // namespace zel
