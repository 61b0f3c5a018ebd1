#include "app/kit/focus_ring.h"
#include "app/kit/look.h"
#include "app/theme/theme_manager.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace velmora
{
namespace
{

Look lookFor(AppTheme theme, const DesktopLook& desktop = {"Sans Serif", "Monospace"})
{
    return makeLook(theme, defaultSystemAccent(), desktop);
}

TEST(Look, growsWithALargeDesktopFontOnly)
{
    const struct {
        double fontPixels;
        double scale;
    } cases[] = {{9, 1}, {13, 1}, {14.9, 1}, {16.25, 1.25}, {40, 1.5}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.fontPixels);
        const Look look = lookFor(AppTheme::system, {"Sans Serif", "Monospace", c.fontPixels});
        EXPECT_EQ(look.scale, c.scale);
        EXPECT_EQ(look.font(Type::control).pixelSize(), qRound(12 * c.scale));
    }
}

TEST(Look, changesWithoutRebuildingAWidget)
{
    applyLook(*qApp, lookFor(AppTheme::midnight));
    const QStyle* style = QApplication::style();
    QPushButton button("Reveal");
    QLabel hint("Hint");
    hint.setForegroundRole(QPalette::PlaceholderText);
    button.setGeometry(300, 300, 80, 24); // away from the pointer
    button.show();
    hint.show();
    for (const AppTheme theme : {AppTheme::midnight, AppTheme::emerald, AppTheme::system}) {
        SCOPED_TRACE(displayName(theme));
        const Look look = lookFor(theme);
        applyLook(*qApp, look);
        QApplication::processEvents();
        EXPECT_EQ(QApplication::style(), style);
        EXPECT_EQ(button.grab().toImage().pixelColor(6, 12), look.roles.button);
        EXPECT_EQ(hint.palette().color(hint.foregroundRole()), look.roles.secondary);
        button.setEnabled(false);
        EXPECT_EQ(button.palette().color(QPalette::ButtonText), look.roles.disabled);
        button.setEnabled(true);
    }
}

class FocusRingTest : public testing::Test
{
protected:
    FocusRingTest()
    {
        applyLook(*qApp, lookFor(AppTheme::system));
        column->addWidget(button);
        column->addWidget(field);
        column->addWidget(other);
        window.resize(200, 200);
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }
    [[nodiscard]] QRect ring() const
    {
        const auto* found = window.findChild<FocusRing*>();
        return found && found->isVisible() ? found->geometry() : QRect();
    }

    QWidget window;
    QVBoxLayout* column = new QVBoxLayout(&window);
    QPushButton* button = new QPushButton("One");
    QLineEdit* field = new QLineEdit;
    QPushButton* other = new QPushButton("Two");
};

TEST_F(FocusRingTest, showsForTheKeyboardAndAlwaysForText)
{
    other->setFocus(Qt::MouseFocusReason);
    EXPECT_EQ(ring(), QRect()) << "a click leaves a button without a ring";
    button->setFocus(Qt::TabFocusReason);
    EXPECT_TRUE(ring().contains(button->geometry().adjusted(-2, -2, 2, 2)));
    button->setFocus(Qt::MouseFocusReason);
    field->setFocus(Qt::MouseFocusReason);
    EXPECT_TRUE(ring().contains(field->geometry().adjusted(-2, -2, 2, 2)));
    other->setFocus(Qt::MouseFocusReason);
    EXPECT_EQ(ring(), QRect());
}

TEST_F(FocusRingTest, followsWhatItSurrounds)
{
    other->setFocus(Qt::TabFocusReason);
    button->setFocus(Qt::TabFocusReason);
    const QRect before = ring();
    column->setContentsMargins(40, 40, 10, 10);
    QApplication::processEvents();
    EXPECT_NE(ring(), before);
    EXPECT_EQ(ring().center(), button->geometry().center());
    button->hide(); // which hands the focus on
    QApplication::processEvents();
    EXPECT_TRUE(ring().contains(field->geometry()));
    delete field;
    other->setFocus(Qt::TabFocusReason);
    QApplication::processEvents();
    EXPECT_TRUE(ring().contains(other->geometry()));
}

TEST(DesktopLook, takesTheAccentThatThePlasmaDesktopWasGiven)
{
    const QTemporaryDir folder;
    const QByteArray before = qgetenv("XDG_CONFIG_HOME");
    qputenv("XDG_CONFIG_HOME", folder.path().toUtf8());
    const struct {
        const char* line;
        QColor accent;
    } rows[] = {{"AccentColor=146,70,204", QColor(146, 70, 204)},
                {"AccentColor=120,122,121", {}},
                {"AccentColor=purple", {}},
                {"", {}}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.line);
        QFile file(folder.filePath("kdeglobals"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QByteArray("[General]\n") + row.line + "\n");
        file.close();
        EXPECT_EQ(readDesktop().accent, row.accent);
    }
    qputenv("XDG_CONFIG_HOME", before);
}

} // namespace
} // namespace velmora
