#include "app/about.h"

#include "app/kit/icons.h"
#include "app/plain_widgets.h"
#include "app/text.h"
#include "platform/ports/desktop.h"
#include "platform/version.h"
#include "update/app_links.h"

#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace velmora
{

QWidget* makeAboutContent(Desktop& desktop, const QString& area, QWidget* parent)
{
    auto* content = new QWidget(parent);
    const Look& look = lookOf(content);
    auto* icon = new QLabel;
    icon->setPixmap(programIconPixmap(look.length(104), content->devicePixelRatioF()));
    icon->setAccessibleName(QStringLiteral("Velmora"));
    auto* website = makeLargeButton(localized("about.visit"), "about.website");
    website->setObjectName(area + QStringLiteral(".website"));
    website->setAutoDefault(false);
    QObject::connect(website, &QPushButton::clicked, website, [&desktop] { desktop.openAddress(AppLinks::website); });

    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins({});
    layout->setSpacing(look.length(6));
    const auto add = [layout](QWidget* widget) { layout->addWidget(widget, 0, Qt::AlignHCenter); };
    add(icon);
    layout->addSpacing(look.length(8));
    add(makeLabel(QStringLiteral("Velmora"), Type::pageTitle));
    QLabel* version = makeHint(localized("about.version", QString::fromLatin1(programVersion)), Type::control);
    version->setWordWrap(false);
    version->setTextInteractionFlags(Qt::TextSelectableByMouse);
    add(version);
    layout->addSpacing(look.length(6));
    add(makeLabel(localized("about.tagline"), Type::control));
    layout->addSpacing(look.length(12));
    add(website);
    return content;
}

void showAboutPanel(Desktop& desktop, QWidget* parent)
{
    const QString name = QStringLiteral("aboutPanel");
    auto* panel = parent->findChild<QDialog*>(name);
    if (!panel) {
        panel = new QDialog(parent);
        panel->setObjectName(name);
        panel->setAttribute(Qt::WA_DeleteOnClose);
        panel->setWindowTitle(localized("menu.about"));
        auto* layout = new QVBoxLayout(panel);
        const int margin = lookOf(panel).length(32);
        layout->setContentsMargins(margin, margin, margin, margin);
        layout->setSizeConstraint(QLayout::SetFixedSize);
        layout->addWidget(makeAboutContent(desktop, QStringLiteral("about")));
    }
    panel->show();
    panel->raise();
    panel->activateWindow();
}

} // namespace velmora
