// What the program asks of a person and the desktop, with Qt's own panels.

#include "app/ports/dialog_font_panel.h"
#include "app/ports/message_alerts.h"
#include "app/ports/system_desktop.h"
#include "render/fonts.h"

#include <QApplication>
#include <QDesktopServices>
#include <QFontDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <QUrl>
#include <gtest/gtest.h>

namespace velmora
{
namespace
{

/// Shows an alert, presses a button of it (nothing: Escape), and returns the answer.
std::size_t answer(const Alert& alert, const char* button, const std::function<void(QMessageBox&)>& look = {})
{
    QTimer::singleShot(0, [&] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_TRUE(box);
        if (look)
            look(*box);
        if (button)
            box->findChild<QPushButton*>(QLatin1String(button))->click();
        else
            box->reject();
    });
    return MessageAlerts().show(alert);
}

TEST(MessageAlerts, answersWithTheButtonAndTakesNoTextForMarkup)
{
    const Alert question{.title = "<b>Save & go?</b>",
                         .text = "<img src='file:///etc/passwd'>" + std::string(100'000, 'x'),
                         .buttons = {"Save", "Don't Save", "Cancel"}};
    EXPECT_EQ(answer(question, "alert.button0"), 0U);
    EXPECT_EQ(answer(question, "alert.button1"), 1U);
    EXPECT_EQ(answer(question, nullptr), 2U) << "closing it is the last button";
    EXPECT_EQ(answer({.title = "Velmora", .text = "Gone."}, nullptr), 0U);
    answer(question, nullptr, [](QMessageBox& box) {
        for (const QLabel* label : box.findChildren<QLabel*>()) {
            EXPECT_TRUE(label->text().isEmpty() || label->textFormat() == Qt::PlainText)
                << label->objectName().toStdString();
        }
        EXPECT_LT(box.informativeText().size(), 5000);
        EXPECT_EQ(box.defaultButton(), box.findChild<QPushButton*>("alert.button0"));
    });
}

class Browser : public QObject
{
    Q_OBJECT

public:
    Browser()
    {
        for (const char* scheme : {"https", "http", "file", "ssh"})
            QDesktopServices::setUrlHandler(QLatin1String(scheme), this, "open");
    }
    ~Browser() override
    {
        for (const char* scheme : {"https", "http", "file", "ssh"})
            QDesktopServices::unsetUrlHandler(QLatin1String(scheme));
    }
    QStringList opened{};

public slots:
    void open(const QUrl& url) { opened << url.toString(); }
};

TEST(SystemDesktop, opensNothingButWebPagesAndFolders)
{
    Browser browser;
    SystemDesktop desktop;
    for (const char* address : {"https://velmora.app/", "file:///etc/passwd", "ssh://host", "javascript:alert(1)",
                                "velmora.app", "https://two words", ""})
        desktop.openAddress(address);
    EXPECT_EQ(browser.opened, QStringList{"https://velmora.app/"});
    desktop.openFolder("/tmp/a#b %41");
    EXPECT_EQ(QUrl(browser.opened.last()).toLocalFile(), "/tmp/a#b %41");
}

TEST(DialogFontPanel, handsAnUninstalledNameBackWhileOnlyTheSizeChanges)
{
    DialogFontPanel panel;
    std::vector<FontChoice> chosen;
    panel.present({"NoSuchFont-Bold", 14}, [&](const FontChoice& choice) { chosen.push_back(choice); });
    QFontDialog* dialog = nullptr;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget->objectName() == QLatin1String("fontPanel"))
            dialog = qobject_cast<QFontDialog*>(widget);
    }
    ASSERT_TRUE(dialog);
    EXPECT_TRUE(chosen.empty()) << "showing a font is no choice";

    QFont font = dialog->currentFont();
    font.setPointSizeF(20);
    dialog->setCurrentFont(font);
    ASSERT_FALSE(chosen.empty());
    EXPECT_EQ(chosen.back(), (FontChoice{"NoSuchFont-Bold", 20}));

    font = Fonts::resolve("TeXGyreHeros-Bold").font;
    font.setPointSizeF(20);
    dialog->setCurrentFont(font);
    EXPECT_EQ(chosen.back().postScriptName, "TeXGyreHeros-Bold");

    const std::size_t count = chosen.size();
    dialog->reject();
    dialog->setCurrentFont(QFont(font.family(), 31));
    EXPECT_EQ(chosen.size(), count) << "the panel was closed";
}

} // namespace
} // namespace velmora

#include "ports_test.moc"
