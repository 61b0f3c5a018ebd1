#pragma once

#include "model/project.h"

#include <algorithm>
#include <string>
#include <vector>

namespace velmora
{

class AppState;

/// The project's list of the elements of a kind: project.*elementsOf<DMGItem>.
template <typename Element>
inline constexpr std::vector<Element> DMGProject::*elementsOf = nullptr;
template <>
inline constexpr auto elementsOf<DMGItem> = &DMGProject::items;
template <>
inline constexpr auto elementsOf<DMGOverlayImage> = &DMGProject::overlayImages;
template <>
inline constexpr auto elementsOf<DMGTextOverlay> = &DMGProject::textOverlays;

/// The first element with an id, or null.
template <typename List>
auto* findElement(List& elements, const std::optional<Uuid>& id)
{
    const auto found = std::find_if(elements.begin(), elements.end(), [&](const auto& e) { return e.id == id; });
    return found == elements.end() ? nullptr : &*found;
}

/// Reads and writes one element of the open project, found by its id at every use. The editor state outlives it.
template <typename Element>
class ElementBinding
{
public:
    ElementBinding(AppState& state, const Uuid& id) : m_state(&state), m_id(id) {}

    /// The element, or a placeholder with a fresh id when it has gone.
    [[nodiscard]] Element read() const;
    /// Puts `element` in its place and marks the document modified, even when nothing differs; does nothing when it has
    /// gone. Writes to one `field` that follow each other closely are one undo step; without a field each is its own.
    void write(const Element& element, const std::string& field = {}) const;

private:
    AppState* m_state;
    Uuid m_id{};
};

extern template class ElementBinding<DMGItem>;
extern template class ElementBinding<DMGOverlayImage>;
extern template class ElementBinding<DMGTextOverlay>;

} // namespace velmora
