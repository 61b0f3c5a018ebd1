// Every field that a person may edit has a control, which writes it, shows it and follows steps back and forth.

#include "app/window_world.h"

#include "app/inspector/hex_field.h"
#include "app/kit/angle_dial.h"
#include "app/kit/color_well.h"
#include "app/kit/number_field.h"
#include "app/kit/segmented_control.h"
#include "app/kit/value_slider.h"
#include "model/document_fields.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextEdit>
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <sstream>
#include <utility>

namespace velmora::testing
{
namespace
{

/// The values of a record's fields by their names.
using Values = std::map<std::string, std::string>;

struct Collector {
    std::string record{};
    Values& values;

    void operator()(const char* name, const CodableColor& color) const
    {
        std::ostringstream text;
        text << color.r << ' ' << color.g << ' ' << color.b << ' ' << color.a;
        values[record + name] = text.str();
    }
    void operator()(const char* name, const std::string& text) const { values[record + name] = text; }
    void operator()(const char* name, const std::optional<std::string>& text) const
    {
        values[record + name] = text.value_or("");
    }
    void operator()(const char* name, const Uuid&) const { values[record + name] = "an id"; }
    template <typename T>
    void operator()(const char* name, const std::vector<T>& list) const
    {
        values[record + name] = std::to_string(list.size());
    }
    template <typename T>
    requires std::is_arithmetic_v<T> || std::is_enum_v<T>
    void operator()(const char* name, const T& value) const
    {
        values[record + name] = std::to_string(static_cast<double>(value));
    }
};

/// Of the project and of the first of each of its lists.
Values valuesOf(const DMGProject& project)
{
    Values values;
    visitFields(project, Collector{"project.", values});
    const auto first = [&](const auto& list, const char* record) {
        if (!list.empty())
            visitFields(list.front(), Collector{record, values});
    };
    first(project.items, "item.");
    first(project.overlayImages, "overlay.");
    first(project.textOverlays, "text.");
    return values;
}

/// Fields without a control, and why.
const Values withoutControl{
    {"project.iconUsesTopLeftCoords", "a mark of old documents, gone once they are read"},
    {"project.items", "the canvas, the Items list and the toolbar add and remove"},
    {"project.overlayImages", "the canvas and the toolbar add and remove"},
    {"project.textOverlays", "the canvas and the toolbar add and remove"},
    {"item.id", "an identity"},
    {"overlay.id", "an identity"},
    {"text.id", "an identity"},
    {"overlay.builtInArrowID", "goes with the picture"},
    {"overlay.originalWidth", "a fact of the picture"},
    {"overlay.originalHeight", "a fact of the picture"},
};

struct Row {
    std::string field;
    const char* control;
    int tab = InspectorTab::layout;
    std::function<void(DMGProject&)> prepare{}; ///< so that the control is there
    const char* shownBy = nullptr;              ///< when another control shows the value
    std::vector<std::string> alongside{};       ///< fields that change with it
};

/// What a control shows, as text.
QString shown(QWidget& control)
{
    if (!control.isVisible())
        return QStringLiteral("(absent)");
    if (auto* box = qobject_cast<QAbstractSpinBox*>(&control))
        return box->text();
    if (auto* slider = qobject_cast<ValueSlider*>(&control))
        return QString::number(slider->value());
    if (auto* dial = qobject_cast<AngleDial*>(&control))
        return QString::number(dial->angle());
    if (auto* segments = qobject_cast<SegmentedControl*>(&control))
        return QString::number(segments->currentIndex());
    if (auto* well = qobject_cast<ColorWell*>(&control))
        return well->color().name(QColor::HexArgb);
    if (auto* pop = qobject_cast<QComboBox*>(&control))
        return pop->currentText();
    if (auto* line = qobject_cast<QLineEdit*>(&control))
        return line->text();
    if (auto* text = qobject_cast<QPlainTextEdit*>(&control))
        return text->toPlainText();
    if (auto* button = qobject_cast<QAbstractButton*>(&control); button && button->isCheckable())
        return button->isChecked() ? QStringLiteral("on") : QStringLiteral("off");
    if (auto* button = qobject_cast<QAbstractButton*>(&control))
        return button->text();
    if (auto* path = qobject_cast<QTextEdit*>(&control))
        return path->toPlainText();
    return control.accessibleName(); // a label that names itself
}

void replaceText(QWidget& field, const QString& text)
{
    QTest::keyClick(&field, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(&field, text);
}

void chooseColor(ColorWell& well)
{
    QTest::mouseClick(&well, Qt::LeftButton);
    auto* panel = well.findChild<QColorDialog*>();
    ASSERT_TRUE(panel);
    for (auto* code : panel->findChildren<QLineEdit*>()) {
        if (!qobject_cast<QAbstractSpinBox*>(code->parentWidget()))
            replaceText(*code, QStringLiteral("#204060"));
    }
    QTest::mouseClick(panel->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok), Qt::LeftButton);
}

/// Gives the control another value, as a hand at the mouse or the keyboard does.
void operate(QWidget& control)
{
    control.setFocus(Qt::TabFocusReason);
    if (qobject_cast<NumberField*>(&control)) {
        replaceText(control, control.objectName().endsWith(QLatin1String("Opacity")) ? "0.75" : "123.5");
        QTest::keyClick(&control, Qt::Key_Return);
    } else if (qobject_cast<ValueSlider*>(&control) || qobject_cast<AngleDial*>(&control)) {
        QTest::keyClick(&control, Qt::Key_Right);
    } else if (auto* segments = qobject_cast<SegmentedControl*>(&control)) {
        const int other = segments->currentIndex() == 0 ? 1 : 0;
        QTest::mouseClick(segments->segment(other), Qt::LeftButton);
    } else if (auto* well = qobject_cast<ColorWell*>(&control)) {
        chooseColor(*well);
    } else if (qobject_cast<QComboBox*>(&control)) {
        QTest::keyClick(&control, Qt::Key_Down);
    } else if (qobject_cast<HexField*>(&control)) {
        replaceText(control, QStringLiteral("#204060"));
        QTest::keyClick(&control, Qt::Key_Return);
    } else if (qobject_cast<QLineEdit*>(&control) || qobject_cast<QPlainTextEdit*>(&control)) {
        replaceText(control, QStringLiteral("Larkspur"));
    } else {
        QTest::mouseClick(&control, Qt::LeftButton, {}, {8, 8});
    }
}

constexpr int layout = InspectorTab::layout;
constexpr int volume = InspectorTab::volume;
constexpr int fileInfo = InspectorTab::fileInfo;
constexpr int arrange = InspectorTab::arrange;

void solid(DMGProject& p)
{
    p.backgroundKind = BackgroundKind::color;
}
void pictured(DMGProject& p)
{
    p.backgroundKind = BackgroundKind::image;
}
void manual(DMGProject& p)
{
    p.imageSizeAutomatic = false;
}
void encrypted(DMGProject& p)
{
    p.encryption = ImageEncryption::aes256;
    p.encryptionPassword = "secret";
}
void notarized(DMGProject& p)
{
    p.signingMode = SigningMode::signAndNotarize;
}
void link(DMGProject& p)
{
    p.items[0] = DMGItem::applicationsLink({100, 100});
}
void shadowed(DMGProject& p)
{
    p.textOverlays[0].shadowEnabled = true;
}
void lostPicture(DMGProject& p)
{
    p.overlayImages[0].sourcePath = "/nowhere/arrow.png";
}

struct InspectorFields : ::testing::Test, WindowWorld {
    fs::path dusk = picture("dusk.png", 40, 30);

    void SetUp() override { show(); }

    /// With the picture there, and adjustments that can be reset.
    [[nodiscard]] std::function<void(DMGProject&)> withPicture() const
    {
        return [path = dusk.string()](DMGProject& p) {
            pictured(p);
            p.backgroundImagePath = path;
        };
    }
    [[nodiscard]] std::vector<Row> rows() const;
    /// A project with one of everything, shown as the row needs it.
    void begin(const Row& row);
    void check(const Row& row);
};

std::vector<Row> InspectorFields::rows() const
{
    return {
        {"project.windowWidth", "layout.windowWidth", layout},
        {"project.windowHeight", "layout.windowHeight", layout},
        {"project.windowLeft", "layout.windowLeft", layout},
        {"project.windowTop", "layout.windowTop", layout},
        {"project.iconSize", "layout.iconSize", layout},
        {"project.showSidebar", "layout.showSidebar", layout},
        {"project.showIconPreview", "layout.showIconPreview", layout},
        {"project.showItemInfo", "layout.showItemInfo", layout},
        {"project.backgroundKind", "layout.backgroundKind", layout},
        {"project.backgroundColor", "layout.color", layout, solid},
        {"project.backgroundColor", "layout.colorHex", layout, solid},
        {"project.gradientStart", "layout.gradientStart", layout},
        {"project.gradientEnd", "layout.gradientEnd", layout},
        {"project.gradientAngle", "layout.gradientAngle", layout},
        {"project.gradientAngle", "layout.gradientDial", layout},
        {"project.backgroundImagePath", "layout.chooseImage", layout, pictured, "layout.imageName"},
        {"project.backgroundImageFit", "layout.fitMode", layout, withPicture()},
        {"project.backgroundImageScale", "layout.imageScale", layout, withPicture()},
        {"project.backgroundImageOffsetX", "layout.imageOffsetX", layout, withPicture()},
        {"project.backgroundImageOffsetY", "layout.imageOffsetY", layout, withPicture()},
        {"project.volumeName", "volume.name", volume},
        {"project.volumeIconPath", "volume.chooseIcon", volume, {}, "volume.iconName"},
        {"project.format", "volume.format", volume},
        {"project.filesystem", "volume.filesystem", volume},
        {"project.imageSizeAutomatic", "volume.imageSize", volume},
        {"project.manualSizeMB", "volume.manualSize", volume, manual},
        {"project.internetEnabled", "volume.internetEnabled", volume},
        {"project.encryption", "volume.encryption", volume},
        {"project.encryptionPassword", "volume.password", volume, encrypted},
        {"project.signingMode", "volume.signing", volume},
        {"project.codeSignIdentity", "volume.identity", volume, notarized},
        {"project.notaryProfile", "volume.profile", volume, notarized},
        {"project.textSize", "text.size", InspectorTab::text},
        {"project.labelOnBottom", "text.labelPosition", InspectorTab::text},
        {"project.licenseEnabled", "license.include"},
        {"project.licenseText", "license.text"},
        {"item.displayName", "fileInfo.name", fileInfo},
        {"item.x", "arrange.itemX", arrange},
        {"item.y", "arrange.itemY", arrange},
        {"overlay.x", "arrange.overlayX", arrange},
        {"overlay.y", "arrange.overlayY", arrange},
        {"overlay.width", "arrange.overlayWidth", arrange},
        {"overlay.height", "arrange.overlayHeight", arrange},
        {"text.identifier", "arrange.textIdentifier", arrange},
        {"text.text", "arrange.textContent", arrange},
        {"text.fontName", "arrange.textFont", arrange, {}, nullptr, {"text.fontSize"}},
        {"text.fontSize", "arrange.textFont", arrange, {}, nullptr, {"text.fontName"}},
        {"text.color", "arrange.textColor", arrange},
        {"text.x", "arrange.textX", arrange},
        {"text.y", "arrange.textY", arrange},
        {"text.width", "arrange.textWidth", arrange},
        {"text.height", "arrange.textHeight", arrange},
        {"item.sourcePath", "fileInfo.replace", fileInfo, {}, "fileInfo.path"},
        {"item.symlinkTarget", "fileInfo.target", fileInfo, link},
        {"item.hidden", "arrange.leaveOut", arrange},
        {"overlay.sourcePath",
         "arrange.replaceImage",
         arrange,
         lostPicture,
         "arrange.overlayName",
         {"overlay.y", "overlay.height", "overlay.originalWidth", "overlay.originalHeight"}},
        {"text.horizontalAlignment", "arrange.textAlignH", arrange},
        {"text.verticalAlignment", "arrange.textAlignV", arrange},
        {"text.shadowEnabled", "arrange.shadow", arrange},
        {"text.shadowColor", "arrange.shadowColor", arrange, shadowed},
        {"text.shadowAngle", "arrange.shadowAngle", arrange, shadowed},
        {"text.shadowAngle", "arrange.shadowDial", arrange, shadowed},
        {"text.shadowOffset", "arrange.shadowOffset", arrange, shadowed},
        {"text.shadowBlur", "arrange.shadowBlur", arrange, shadowed},
        {"text.shadowOpacity", "arrange.shadowOpacity", arrange, shadowed},
    };
}

void InspectorFields::begin(const Row& row)
{
    state.newProject();
    state.edit({}, [&](DMGProject& p) {
        p.items = {{.sourcePath = dusk.string(), .displayName = "Notes", .x = 90, .y = 80}};
        p.overlayImages = {{.sourcePath = dusk.string(), .x = 10, .y = 20, .width = 60, .height = 40}};
        p.textOverlays = {{.x = 40, .y = 50, .width = 200, .height = 36}};
        if (row.prepare)
            row.prepare(p);
    });
    const auto is = [&](const char* record) { return row.field.rfind(record, 0) == 0; };
    if (is("project.license"))
        state.editLicenses();
    else
        state.editContents();
    if (is("item."))
        state.selectItem(state.project().items[0].id);
    if (is("overlay."))
        state.selectOverlay(state.project().overlayImages[0].id);
    if (is("text."))
        state.selectTextOverlay(state.project().textOverlays[0].id);
    state.setInspectorTab(row.tab);
    panels.toOpen = {{picture("dawn.png", 50, 20)}};
    QCoreApplication::processEvents();
}

void InspectorFields::check(const Row& row)
{
    begin(row);
    auto* control = window->findChild<QWidget*>(QLatin1String(row.control));
    ASSERT_TRUE(control);
    ASSERT_TRUE(control->isVisible());
    const char* shownBy = row.shownBy ? row.shownBy : row.control;
    // Looked up anew: a panel may make its controls again.
    const auto present = [&] {
        QCoreApplication::processEvents();
        return shown(the(shownBy));
    };
    const Values values = valuesOf(state.project());
    const QString before = present();
    operate(*control);
    if (fontPanel.choose)
        std::exchange(fontPanel.choose, {})({"Helvetica", 20});
    const Values changed = valuesOf(state.project());
    std::set<std::string> differing;
    for (const auto& [name, value] : changed) {
        if (value != values.at(name))
            differing.insert(name);
    }
    std::set<std::string> expected(row.alongside.begin(), row.alongside.end());
    expected.insert(row.field);
    EXPECT_EQ(differing, expected) << "was to change one field";
    const QString after = present();
    EXPECT_NE(after, before) << "does not show what it did";
    state.undo();
    EXPECT_EQ(valuesOf(state.project()), values) << "one step back";
    EXPECT_EQ(present(), before) << "does not follow a step back";
    state.redo();
    EXPECT_EQ(valuesOf(state.project()), changed);
    EXPECT_EQ(present(), after) << "does not follow the project";
}

TEST_F(InspectorFields, areWrittenShownAndTakenBackOneByOne)
{
    for (const Row& row : rows()) {
        SCOPED_TRACE(row.field + " by " + row.control);
        check(row);
    }
}

TEST_F(InspectorFields, leaveNoFieldOfTheModelOut)
{
    begin({});
    std::set<std::string> covered;
    for (const Row& row : rows())
        covered.insert(row.field);
    for (const auto& [name, reason] : withoutControl)
        EXPECT_TRUE(covered.insert(name).second) << name << " has a control, yet: " << reason;
    std::set<std::string> fields;
    for (const auto& [name, value] : valuesOf(state.project()))
        fields.insert(name);
    EXPECT_EQ(covered, fields);
}

TEST_F(InspectorFields, asksForThePasswordTwiceOfWhomeverTypesIt)
{
    begin({.field = "project.encryption", .control = "", .tab = volume, .prepare = encrypted});
    auto& password = the<QLineEdit>("volume.password");
    auto& repeat = the<QLineEdit>("volume.passwordRepeat");
    const auto fault = [&] { return repeat.accessibleDescription(); };
    EXPECT_EQ(repeat.text(), "secret") << "a document's password needs no repeating";
    password.setFocus();
    replaceText(password, "wren");
    EXPECT_EQ(fault(), "The passwords do not match.");
    repeat.setFocus();
    replaceText(repeat, "wren");
    EXPECT_EQ(fault(), "");
    EXPECT_EQ(state.project().encryptionPassword, "wren");
    state.undo();
    EXPECT_EQ(repeat.text(), "secret");
    EXPECT_EQ(fault(), "");
}

TEST_F(InspectorFields, saysWhenTheBackgroundPictureCannotBeOpened)
{
    begin({.field = "project.backgroundImagePath", .control = "", .prepare = withPicture()});
    EXPECT_TRUE(the("layout.fitToImage").isEnabled());
    EXPECT_FALSE(the("layout.imageUnreadable").isVisible());
    state.edit({}, [](DMGProject& p) { p.backgroundImagePath = "/nowhere/dusk.png"; });
    EXPECT_FALSE(the("layout.fitToImage").isEnabled());
    EXPECT_EQ(the("layout.fitToImage").toolTip(), "Choose a background image first.");
    EXPECT_TRUE(the("layout.imageUnreadable").isVisible());
    EXPECT_FALSE(the("layout.fitMode").isVisible());
    click("layout.removeImage");
    EXPECT_FALSE(the("layout.imageUnreadable").isVisible());
    EXPECT_TRUE(the("layout.chooseImage").isVisible());
}

TEST_F(InspectorFields, takesADragBackAsOneStepHoweverLongTheHandRests)
{
    for (const char* name : {"layout.iconSize", "layout.gradientDial"}) {
        SCOPED_TRACE(name);
        begin({.field = "project.", .control = ""});
        QWidget& control = the(name);
        const DMGProject before = state.project();
        const QPoint middle = control.rect().center();
        QTest::mousePress(&control, Qt::LeftButton, {}, middle / 2);
        now += std::chrono::seconds(5);
        QTest::mouseMove(&control, middle + QPoint(8, 3));
        now += std::chrono::seconds(5);
        QTest::mouseMove(&control, middle + QPoint(8, -5));
        QTest::mouseRelease(&control, Qt::LeftButton, {}, middle + QPoint(8, -5));
        const DMGProject dragged = state.project();
        EXPECT_NE(dragged, before);
        QTest::keyClick(&control, Qt::Key_Right);
        EXPECT_NE(state.project(), dragged);
        state.undo();
        EXPECT_EQ(state.project(), dragged) << "the drag is over";
        state.undo();
        EXPECT_EQ(state.project(), before);
        // A drag whose control goes away ends as well.
        QTest::mousePress(&control, Qt::LeftButton, {}, middle / 2);
        state.setInspectorTab(InspectorTab::text);
        const DMGProject cut = state.project();
        state.edit({}, [](DMGProject& p) { p.volumeName = "Other"; });
        state.undo();
        EXPECT_EQ(state.project(), cut);
    }
}

TEST_F(InspectorFields, keepsTheVeryColorWhenItsPanelIsCancelled)
{
    begin({.field = "project.gradientEnd", .control = ""});
    const DMGProject before = state.project();
    auto& well = the<ColorWell>("layout.gradientEnd");
    QTest::mouseClick(&well, Qt::LeftButton);
    auto* panel = well.findChild<QColorDialog*>();
    ASSERT_TRUE(panel);
    panel->setCurrentColor(Qt::red);
    EXPECT_NE(state.project(), before);
    panel->reject();
    EXPECT_EQ(state.project(), before);
}

} // namespace
} // namespace velmora::testing
