#include "editor/element_binding.h"

#include "editor/app_state.h"

namespace velmora
{

template <typename Element>
Element ElementBinding<Element>::read() const
{
    const Element* element = findElement(m_state->project().*elementsOf<Element>, m_id);
    return element ? *element : Element{};
}

template <typename Element>
void ElementBinding<Element>::write(const Element& element, const std::string& field) const
{
    if (!findElement(m_state->project().*elementsOf<Element>, m_id))
        return;
    m_state->edit({field, m_id},
                  [&](DMGProject& project) { *findElement(project.*elementsOf<Element>, m_id) = element; });
}

template class ElementBinding<DMGItem>;
template class ElementBinding<DMGOverlayImage>;
template class ElementBinding<DMGTextOverlay>;

} // namespace velmora
