#include "app/inspector/fields.h"
#include "app/inspector/panel.h"
#include "app/kit/form.h"
#include "app/kit/look.h"
#include "app/kit/path_label.h"
#include "app/text.h"
#include "l10n/labels.h"
#include "platform/ports/desktop.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSignalBlocker>

namespace velmora
{
namespace
{

/// The items of the image and the details of the selected one.
class FileInfoPanel : public InspectorPanel
{
public:
    explicit FileInfoPanel(const AppContext& context) : InspectorPanel(context)
    {
        addItems();
        addDetails();
    }

private:
    AppState& state() { return m_context.state; }

    void addItems()
    {
        Section* section = addSection(qtText(Labels::items));
        m_list = new QListWidget;
        m_list->setObjectName(QStringLiteral("fileInfo.items"));
        m_list->setAccessibleName(qtText(Labels::items));
        m_list->setFixedHeight(lookOf(this).length(6 * 28));
        m_list->setUniformItemSizes(true);
        connect(m_list, &QListWidget::currentRowChanged, this, [this](int row) {
            const auto& items = state().project().items;
            if (row >= 0 && static_cast<std::size_t>(row) < items.size())
                state().selectItem(items[static_cast<std::size_t>(row)].id);
        });
        section->addRow(m_list);
        auto* addFiles = makeButton(localized("toolbar.add_files") + QStringLiteral("…"), "fileInfo.addFiles",
                                    [this] { state().addFilesViaPanel(); });
        auto* addLink = makeButton(qtText(Labels::addApplicationsLink), "fileInfo.addLink",
                                   [this] { state().addApplicationsLink(); });
        section->addRow(sideBySide({addFiles, addLink}));
        onRefresh([this] { showItems(); });
    }

    QPushButton* makeButton(const QString& text, const char* name, std::function<void()> act)
    {
        auto* button = new QPushButton(withoutMnemonics(text));
        button->setObjectName(QLatin1String(name));
        button->setAccessibleName(accessibleNameFor(text));
        connect(button, &QPushButton::clicked, this, std::move(act));
        return button;
    }

    void showItems()
    {
        const QSignalBlocker quiet(m_list);
        const auto& items = state().project().items;
        while (m_list->count() > static_cast<int>(items.size()))
            delete m_list->takeItem(m_list->count() - 1);
        int selected = -1;
        for (std::size_t i = 0; i < items.size(); ++i) {
            const int row = static_cast<int>(i);
            if (row == m_list->count())
                m_list->addItem(QString());
            const QString name = qtText(items[i].displayName);
            m_list->item(row)->setText(items[i].hidden ? name + qtText(Labels::leftOutSuffix) : name);
            if (items[i].id == state().selection())
                selected = row;
        }
        m_list->setCurrentRow(selected);
    }

    void addDetails()
    {
        Section* section = addSection(qtText(Labels::selectedItem));
        const auto selected = [this] { return state().selection(); };
        auto* name = new QLineEdit;
        name->setObjectName(QStringLiteral("fileInfo.name"));
        onRefresh(
            bindText(*name, elementField<DMGItem, std::string>(state(), selected, &DMGItem::displayName, "name")));
        section->addRow(qtText(Labels::name), name);
        auto* path = new PathLabel;
        path->setObjectName(QStringLiteral("fileInfo.path"));
        FormRow* pathRow = section->addRow(qtText(Labels::path), path);
        auto* hidden = new QCheckBox(qtText(Labels::leaveOut));
        hidden->setObjectName(QStringLiteral("fileInfo.leaveOut"));
        onRefresh(bindCheck(*hidden, elementField<DMGItem, bool>(state(), selected, &DMGItem::hidden, "")));
        section->addRow({}, hidden);
        auto* reveal = makeButton(qtText(Labels::reveal), "fileInfo.reveal", [this] {
            if (const DMGItem* item = state().selectedItem(); item && !item->isSymlink())
                m_context.desktop.reveal(item->sourcePath);
        });
        auto* remove = makeButton(qtText(Labels::removeItem), "fileInfo.remove", [this] { state().removeSelected(); });
        section->addRow(sideBySide({reveal, remove}));
        onRefresh([=, this] {
            const DMGItem* item = state().selectedItem();
            section->setVisible(item != nullptr);
            if (!item)
                return;
            pathRow->setLabel(qtText(item->isSymlink() ? Labels::target : Labels::path));
            path->setPath(qtText(item->isSymlink() ? item->symlinkTarget : item->sourcePath));
            reveal->setEnabled(!item->isSymlink());
        });
    }

    QListWidget* m_list = nullptr;
};

} // namespace

InspectorPanel* makeFileInfoPanel(const AppContext& context)
{
    return new FileInfoPanel(context);
}

} // namespace velmora
