#include "app/ports/message_alerts.h"

#include "app/text.h"

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>

#include <algorithm>

namespace velmora
{
namespace
{

/// A tool's output may be anything; a box that is higher than the screen cannot be closed.
constexpr qsizetype longestText = 1500;

QString shownText(const std::string& text)
{
    QString shown = qtText(text).trimmed();
    if (shown.size() > longestText)
        shown = shown.left(longestText) + QStringLiteral("…");
    return shown;
}

QMessageBox::ButtonRole roleOf(std::size_t index, std::size_t count)
{
    if (index == 0)
        return QMessageBox::AcceptRole;
    return index + 1 == count ? QMessageBox::RejectRole : QMessageBox::DestructiveRole;
}

} // namespace

std::size_t MessageAlerts::show(const Alert& alert)
{
    QMessageBox box(QApplication::activeWindow());
    box.setObjectName(QStringLiteral("alert"));
    box.setWindowTitle(QStringLiteral("Velmora"));
    box.setIcon(alert.style == AlertStyle::warning ? QMessageBox::Warning : QMessageBox::Information);
    // Texts hold file names and what tools print: nothing of that is markup.
    box.setTextFormat(Qt::PlainText);
    box.setText(shownText(alert.title));
    box.setInformativeText(shownText(alert.text));
    if (auto* label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_informativelabel")))
        label->setTextFormat(Qt::PlainText);

    std::vector<QAbstractButton*> buttons;
    for (std::size_t i = 0; i < alert.buttons.size(); ++i) {
        auto* button = box.addButton(withoutMnemonics(qtText(alert.buttons[i])), roleOf(i, alert.buttons.size()));
        button->setObjectName(QStringLiteral("alert.button%1").arg(i));
        buttons.push_back(button);
    }
    if (buttons.empty()) {
        box.setStandardButtons(QMessageBox::Ok);
    } else {
        box.setDefaultButton(static_cast<QPushButton*>(buttons.front()));
        box.setEscapeButton(buttons.back());
    }
    box.exec();
    const auto pressed = std::find(buttons.begin(), buttons.end(), box.clickedButton());
    if (pressed == buttons.end())
        return buttons.empty() ? 0 : buttons.size() - 1;
    return static_cast<std::size_t>(pressed - buttons.begin());
}

} // namespace velmora
