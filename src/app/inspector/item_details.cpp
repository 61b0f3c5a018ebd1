#include "app/inspector/item_details.h"

#include "app/inspector/action_button.h"
#include "app/inspector/fields.h"
#include "app/inspector/file_facts.h"
#include "app/inspector/item_head.h"
#include "app/kit/form.h"
#include "app/kit/look.h"
#include "app/kit/note_banner.h"
#include "app/kit/paint.h"
#include "app/kit/path_label.h"
#include "app/kit/velmora_style.h"
#include "app/text.h"
#include "l10n/labels.h"
#include "platform/ports/desktop.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

namespace velmora
{
namespace
{

/// A column of facts, closer to each other than controls are.
class FactTable : public QWidget
{
public:
    FactTable() : m_grid(new QGridLayout(this))
    {
        const Look& look = lookOf(this);
        m_grid->setContentsMargins({});
        m_grid->setHorizontalSpacing(look.length(measure::rowGap));
        m_grid->setVerticalSpacing(look.length(6));
        m_grid->setColumnMinimumWidth(0, look.length(measure::labelWidth));
        m_grid->setColumnStretch(1, 1);
    }

    QLabel* add(const char* name, const char* objectName)
    {
        const int row = m_grid->rowCount();
        auto* label = new QLabel(qtText(name));
        label->setForegroundRole(QPalette::PlaceholderText);
        auto* value = new QLabel;
        value->setObjectName(QLatin1String(objectName));
        value->setTextFormat(Qt::PlainText);
        value->setTextInteractionFlags(Qt::TextSelectableByMouse);
        value->setWordWrap(true);
        value->setAccessibleName(qtText(name));
        m_grid->addWidget(label, row, 0, Qt::AlignTop);
        m_grid->addWidget(value, row, 1);
        return value;
    }

private:
    QGridLayout* m_grid;
};

QString sizeOf(const FileFacts& facts, const std::optional<FolderContent>& content)
{
    if (!facts.folder)
        return qtText(sizeText(static_cast<std::uintmax_t>(facts.size)));
    if (!content)
        return qtText(Labels::unknownValue);
    const QString size = qtText(sizeText(content->bytes));
    if (content->files == 1)
        return size + qtText(Labels::oneFileCount);
    return size + qtText(Labels::fileCount).arg(QLocale(QLocale::English).toString(qulonglong(content->files)));
}

/// The goal of a link. An empty one is not taken: the item would no longer be a link.
std::function<void()> bindTarget(QLineEdit& edit, const Field<std::string>& field)
{
    QObject::connect(&edit, &QLineEdit::textEdited, &edit, [&edit, field](const QString& text) {
        setMarkedWrong(&edit, text.isEmpty());
        if (!text.isEmpty())
            field.store(text.toStdString());
    });
    const auto show = [&edit, field] {
        const QString text = qtText(field.value());
        if (edit.text() != text && !(edit.hasFocus() && edit.text().isEmpty()))
            edit.setText(text);
    };
    QObject::connect(&edit, &QLineEdit::editingFinished, &edit, [&edit, field] {
        field.state.endTypingRun();
        edit.setText(qtText(field.value()));
        setMarkedWrong(&edit, false);
    });
    return show;
}

} // namespace

ItemDetails::ItemDetails(const AppContext& context, QWidget* parent)
    : InspectorPanel(context, parent),
      m_section(addSection(QStringLiteral(" "))),
      m_head(new ItemHead(48)),
      m_missing(new NoteBanner)
{
    m_section->addRow(m_head);
    m_missing->setObjectName(QStringLiteral("fileInfo.missing"));
    m_missing->setButton(qtText(Labels::locate));
    m_missing->button()->setObjectName(QStringLiteral("fileInfo.locate"));
    connect(m_missing, &NoteBanner::buttonClicked, this, [this] {
        if (const auto id = state().selection())
            state().replaceItemViaPanel(*id);
    });
    m_section->addRow(m_missing);

    const auto selected = [this] { return state().selection(); };
    auto* name = new QLineEdit;
    name->setObjectName(QStringLiteral("fileInfo.name"));
    onRefresh(bindText(*name, elementField<DMGItem, std::string>(state(), selected, &DMGItem::displayName, "name")));
    m_section->addRow(qtText(Labels::name), name);
    auto* target = new QLineEdit;
    target->setObjectName(QStringLiteral("fileInfo.target"));
    onRefresh(
        bindTarget(*target, elementField<DMGItem, std::string>(state(), selected, &DMGItem::symlinkTarget, "target")));
    m_target = m_section->addRow(qtText(Labels::target), target);
    addFacts();
    addButtons();
    connect(&m_count, &FolderCount::counted, this, &ItemDetails::refresh);
}

void ItemDetails::addFacts()
{
    const Look& look = lookOf(this);
    m_path = new PathLabel;
    m_path->setObjectName(QStringLiteral("fileInfo.path"));
    auto* kind = new FactTable;
    m_kind = kind->add(Labels::kind, "fileInfo.kind");
    auto* size = new FactTable;
    m_size = size->add(Labels::size, "fileInfo.size");
    auto* dates = new FactTable;
    m_created = dates->add(Labels::created, "fileInfo.created");
    m_modified = dates->add(Labels::modified, "fileInfo.modified");
    m_dates = dates;

    m_pathRow = new FormRow(qtText(Labels::path), m_path);
    auto* facts = new QWidget;
    auto* column = new QVBoxLayout(facts);
    column->setContentsMargins({});
    column->setSpacing(look.length(6));
    for (QWidget* table : {kind, size, dates})
        column->addWidget(table);

    // The path keeps room for a row of controls round it, the facts do not.
    auto* holder = new QWidget;
    auto* outer = new QVBoxLayout(holder);
    outer->setContentsMargins(0, 0, 0, look.length(4));
    outer->setSpacing(look.length(2));
    outer->addWidget(m_pathRow);
    outer->addWidget(facts);
    m_section->addRow(holder);
}

void ItemDetails::addButtons()
{
    QPushButton* reveal = actionButton(qtText(Labels::reveal), "fileInfo.reveal", [this] {
        if (const DMGItem* item = state().selectedItem(); item && !item->isSymlink())
            m_context.desktop.reveal(item->sourcePath);
    });
    QPushButton* replace = actionButton(qtText(Labels::replace), "fileInfo.replace", [this] {
        if (const auto id = state().selection())
            state().replaceItemViaPanel(*id);
    });
    m_buttons = sideBySide({reveal, replace});
    m_section->addRow(m_buttons);
}

void ItemDetails::refresh()
{
    const DMGItem* item = state().selectedItem();
    if (!item) {
        m_count.clear();
        return;
    }
    InspectorPanel::refresh();
    showFile(*item);
}

void ItemDetails::showFile(const DMGItem& item)
{
    const FileFacts facts = factsOf(item);
    const bool link = item.isSymlink();
    const bool missing = !link && !facts.exists;
    if (facts.folder)
        m_count.count(item.sourcePath);
    else
        m_count.clear();
    const QString kind = kindOf(item, facts);
    const QString size = facts.exists ? sizeOf(facts, m_count.content()) : qtText(Labels::unknownValue);
    const bool sized = facts.exists && (!facts.folder || m_count.content());

    m_section->setTitle(item.displayName.empty() ? kind : qtText(item.displayName));
    m_head->setItem(item, sized ? kind + QStringLiteral(" · ") + size.section(QLatin1String(" ("), 0, 0) : kind);
    m_head->setVisible(!missing);
    const auto told = missing ? std::optional(std::pair(item.id, item.hidden)) : std::nullopt;
    if (missing && told != m_told) // each is announced once
        m_missing->setText(qtText(Labels::fileMissing),
                           qtText(item.hidden ? Labels::fileMissingLeftOut : Labels::fileMissingRest));
    m_told = told;
    m_missing->setVisible(missing);
    m_target->setVisible(link);
    m_pathRow->setVisible(!link);
    if (const QString path = qtText(item.sourcePath); path != m_path->path())
        m_path->setPath(path);
    m_kind->setText(kind);
    m_size->setText(size);
    m_size->parentWidget()->setVisible(!link);
    m_created->setText(dateText(facts.created));
    m_modified->setText(dateText(facts.modified));
    m_dates->setVisible(facts.exists);
    m_buttons->setVisible(facts.exists);
}

void ItemDetails::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    drawHorizontalHairline(painter, 0, width(), 0, lookOf(this).palette.dividerColor);
}

void ItemDetails::expire()
{
    m_head->expireIcon();
    m_count.expire();
}

} // namespace velmora
