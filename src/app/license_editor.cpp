#include "app/license_editor.h"

#include "app/kit/paint.h"
#include "app/kit/spaced_layout.h"
#include "app/kit/switch.h"
#include "app/plain_widgets.h"
#include "app/text.h"
#include "editor/app_state.h"
#include "l10n/labels.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace velmora
{
namespace
{

constexpr double textPadding = 18;
constexpr double textSidePadding = 22;
/// How much of the ink is left while the text is not put into the image.
constexpr double leftOutInk = 0.6;

/// Line ends as the text field keeps them.
QString withPlainLineEnds(QString text)
{
    text.replace(QLatin1String("\r\n"), QLatin1String("\n")).replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return text;
}

/// The field of the agreement: fixed type with room round it and between its lines.
class AgreementEdit : public QPlainTextEdit
{
public:
    AgreementEdit()
    {
        const Look& look = lookOf(this);
        setDocument(
            makeSpacedDocument(this, look, Type::document, textPadding)); // the project's history has every step
        setFont(look.font(Type::document));
        const int beside = look.length(textSidePadding - textPadding);
        setViewportMargins(beside, 0, beside, 0);
    }
};

} // namespace

LicenseEditor::LicenseEditor(const AppContext& context, QWidget* parent)
    : QWidget(parent),
      m_context(context),
      m_include(new Switch),
      m_text(new AgreementEdit),
      m_hint(makeHint(qtText(Labels::licenseLeftOut))),
      m_count(makeHint(QString(), Type::control))
{
    const Look& look = lookOf(this);
    setObjectName(QStringLiteral("license"));
    setAccessibleName(qtText(Labels::licenseAgreement));
    m_include->setObjectName(QStringLiteral("license.include"));
    m_include->setAccessibleName(qtText(Labels::includeInImage));
    m_text->setObjectName(QStringLiteral("license.text"));
    m_text->setAccessibleName(qtText(Labels::licenseAgreement));
    m_text->setPlaceholderText(qtText(Labels::licensePlaceholder));
    m_text->setTabChangesFocus(true);
    m_text->installEventFilter(this);
    auto* import = makeLargeButton(qtText(Labels::importText), "license.import");
    m_clear = makeLargeButton(qtText(Labels::clear), "license.clear");

    auto* titles = new QVBoxLayout;
    titles->setSpacing(look.length(2));
    titles->addWidget(makeLabel(qtText(Labels::licenseAgreement), Type::pageTitle));
    titles->addWidget(makeHint(qtText(Labels::licenseExplanation), Type::control));
    auto* head = new QHBoxLayout;
    head->addLayout(titles, 1);
    auto* include = new QHBoxLayout;
    include->setSpacing(look.length(10));
    include->setContentsMargins(0, look.length(4), 0, 0);
    include->addWidget(makeLabel(qtText(Labels::includeInImage), Type::control));
    include->addWidget(m_include);
    head->addLayout(include);
    head->setAlignment(include, Qt::AlignTop);
    auto* tools = new QHBoxLayout;
    tools->setSpacing(look.length(8));
    tools->addWidget(import);
    tools->addWidget(m_clear);
    tools->addSpacing(look.length(8));
    tools->addWidget(m_hint);
    tools->addStretch(1);
    m_hint->setWordWrap(false);
    m_count->setWordWrap(false);
    tools->addWidget(m_count);
    auto* layout = new QVBoxLayout(this);
    const int side = look.length(32);
    layout->setContentsMargins(side, look.length(24), side, look.length(20));
    layout->setSpacing(look.length(16));
    layout->addLayout(head);
    layout->addWidget(m_text, 1);
    layout->addLayout(tools);

    AppState& state = m_context.state;
    connect(m_include, &QCheckBox::clicked, this,
            [&state](bool on) { state.edit({}, [on](DMGProject& project) { project.licenseEnabled = on; }); });
    connect(m_text, &QPlainTextEdit::textChanged, this, &LicenseEditor::storeText);
    connect(import, &QPushButton::clicked, this, [&state] { state.importLicenseText(); });
    connect(m_clear, &QPushButton::clicked, this,
            [&state] { state.edit({}, [](DMGProject& project) { project.licenseText.clear(); }); });
    connect(&state, &AppState::projectChanged, this, [this] {
        if (isVisible())
            refresh();
    });
    connect(&state, &AppState::editorModeChanged, this, &LicenseEditor::refresh);
    refresh();
}

void LicenseEditor::refresh()
{
    const DMGProject& project = m_context.state.project();
    m_refreshing = true;
    m_include->setChecked(project.licenseEnabled);
    const QString text = withPlainLineEnds(qtText(project.licenseText));
    if (text != exactText(*m_text))
        m_text->setPlainText(text);
    m_refreshing = false;
    m_clear->setEnabled(!project.licenseText.empty());
    m_hint->setVisible(!project.licenseEnabled && !project.licenseText.empty());
    showCount(text);
    showInk();
}

void LicenseEditor::showCount(const QString& text)
{
    const auto characters = text.toUcs4().size(); // a sign beyond the basic plane is one
    const auto lines = text.isEmpty() ? 0 : text.count(QLatin1Char('\n')) + 1;
    m_count->setText(qtText(characters == 1 ? Labels::licenseCharacter : Labels::licenseCharacters).arg(characters) +
                     QStringLiteral(" · ") +
                     qtText(lines == 1 ? Labels::licenseLine : Labels::licenseLines).arg(lines));
}

void LicenseEditor::showInk()
{
    const Look& look = lookOf(this);
    QPalette colors;
    if (!m_context.state.project().licenseEnabled)
        colors.setColor(QPalette::Text, laidOver(look.roles.field, faded(look.roles.primary, leftOutInk)));
    m_text->setPalette(colors);
}

void LicenseEditor::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::PaletteChange)
        showInk();
    QWidget::changeEvent(event);
}

void LicenseEditor::storeText()
{
    if (m_refreshing)
        return;
    const std::string text = exactText(*m_text).toStdString();
    if (text == withPlainLineEnds(qtText(m_context.state.project().licenseText)).toStdString())
        return;
    m_context.state.edit({.field = "licenseText"}, [&](DMGProject& project) { project.licenseText = text; });
}

bool LicenseEditor::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::FocusOut)
        m_context.state.endTypingRun();
    return QWidget::eventFilter(watched, event);
}

} // namespace velmora
