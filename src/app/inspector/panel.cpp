#include "app/inspector/panel.h"

#include "app/kit/form.h"

#include <QVBoxLayout>

namespace velmora
{

InspectorPanel::InspectorPanel(const AppContext& context, QWidget* parent)
    : QWidget(parent), m_context(context), m_layout(new QVBoxLayout(this))
{
    m_layout->setContentsMargins({});
    m_layout->setSpacing(0);
    m_layout->addStretch(1);
}

Section* InspectorPanel::addSection(const QString& title)
{
    auto* section = new Section(title);
    insertSection(section);
    return section;
}

void InspectorPanel::insertSection(Section* section)
{
    m_layout->insertWidget(m_layout->count() - 1, section);
}

void InspectorPanel::refresh()
{
    for (const auto& read : m_reads)
        read();
}

} // namespace velmora
