#include "app/arrow_picker.h"

#include "app/arrow_tile.h"
#include "app/plain_widgets.h"
#include "app/text.h"
#include "editor/app_state.h"
#include "l10n/labels.h"
#include "render/built_in_arrows.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace velmora
{
namespace
{

constexpr double sheetWidth = 580;

} // namespace

ArrowPicker::ArrowPicker(const AppContext& context, int margin, QWidget* parent)
    : QWidget(parent), m_context(context), m_tiles(new QButtonGroup(this))
{
    const Look& look = lookOf(this);
    setObjectName(QStringLiteral("picker"));
    AppState& state = m_context.state;
    auto* import = makeLargeButton(localized("arrow_picker_custom"), "picker.import");
    auto* cancel = makeLargeButton(localized("defaults.cancel"), "picker.cancel");
    auto* add = makeLargeButton(qtText(Labels::addArrow), "picker.add");
    add->setDefault(true);

    auto* grid = new QGridLayout;
    grid->setSpacing(look.length(12));
    int index = 0;
    for (const Arrow& arrow : BuiltInArrowLibrary::all()) {
        auto* tile = new ArrowTile(qtText(arrow.displayName()), m_context.arrows.previewImage(arrow.id));
        tile->setObjectName(QStringLiteral("picker.tile.") + qtText(arrow.id));
        m_tiles->addButton(tile, index);
        grid->addWidget(tile, index / 3, index % 3);
        connect(tile, &ArrowTile::doubleClicked, this, &ArrowPicker::addChosen);
        ++index;
    }
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(look.length(8));
    buttons->addWidget(import);
    buttons->addStretch(1);
    buttons->addWidget(cancel);
    buttons->addWidget(add);
    auto* layout = new QVBoxLayout(this);
    layout->setSpacing(0);
    layout->addWidget(makeLabel(localized("arrow_picker_title"), Type::sheetTitle));
    layout->addSpacing(look.length(2));
    layout->addWidget(makeHint(localized("arrow_picker_hint"), Type::control));
    layout->addSpacing(look.length(12));
    layout->addLayout(grid);
    layout->addSpacing(look.length(12));
    layout->addLayout(buttons);
    // The pictures, not the tiles round them, stand below the title.
    const int outside = ArrowTile::padding(look);
    layout->setContentsMargins(margin - outside, margin, margin - outside, margin);
    for (int i = 0; i < layout->count(); ++i) {
        if (QWidget* label = layout->itemAt(i)->widget())
            label->setContentsMargins(outside, 0, outside, 0);
    }
    buttons->setContentsMargins(outside, 0, outside, 0);

    connect(cancel, &QPushButton::clicked, &state, [&state] { state.setShowArrowPicker(false); });
    connect(add, &QPushButton::clicked, this, &ArrowPicker::addChosen);
    connect(import, &QPushButton::clicked, &state, [&state] {
        state.setShowArrowPicker(false);
        state.addOverlayImage(std::nullopt);
    });
}

QSize ArrowPicker::sizeHint() const
{
    const int width = lookOf(this).length(sheetWidth);
    return {width, layout()->totalHeightForWidth(width)};
}

QWidget* ArrowPicker::prepare()
{
    m_context.arrows.warmCache();
    m_tiles->button(0)->setChecked(true);
    leadTabToChosen(*m_tiles);
    return m_tiles->button(0);
}

void ArrowPicker::addChosen()
{
    const auto chosen = static_cast<std::size_t>(m_tiles->checkedId());
    m_context.state.setShowArrowPicker(false);
    m_context.state.addBuiltInArrow(std::string(BuiltInArrowLibrary::all()[chosen].id), std::nullopt);
}

} // namespace velmora
