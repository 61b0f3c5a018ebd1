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
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->setSpacing(0);
    layout->addWidget(makeLabel(localized("arrow_picker_title"), Type::sheetTitle));
    layout->addSpacing(look.length(2));
    auto* hint = makeHint(localized("arrow_picker_hint"), Type::control);
    hint->setWordWrap(false);
    layout->addWidget(hint);
    layout->addSpacing(look.length(16));
    layout->addLayout(grid);
    layout->addSpacing(look.length(20));
    layout->addLayout(buttons);

    connect(cancel, &QPushButton::clicked, &state, [&state] { state.setShowArrowPicker(false); });
    connect(add, &QPushButton::clicked, this, &ArrowPicker::addChosen);
    connect(import, &QPushButton::clicked, &state, [&state] {
        state.setShowArrowPicker(false);
        state.addOverlayImage(std::nullopt);
    });
}

QWidget* ArrowPicker::prepare()
{
    m_tiles->button(0)->setChecked(true);
    return m_tiles->button(0);
}

void ArrowPicker::addChosen()
{
    const auto chosen = static_cast<std::size_t>(m_tiles->checkedId());
    m_context.state.setShowArrowPicker(false);
    m_context.state.addBuiltInArrow(std::string(BuiltInArrowLibrary::all()[chosen].id), std::nullopt);
}

} // namespace velmora
