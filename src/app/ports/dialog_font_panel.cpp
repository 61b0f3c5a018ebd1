#include "app/ports/dialog_font_panel.h"

#include "render/font_names.h"
#include "render/fonts.h"

#include <QApplication>
#include <QCheckBox>
#include <QFontDialog>

#include <algorithm>

namespace velmora
{
namespace
{

bool sameFace(const QFont& one, const QFont& other)
{
    return one.family() == other.family() && one.styleName() == other.styleName() && one.weight() == other.weight() &&
           one.italic() == other.italic();
}

/// The font that the dialog shows for a name, at a size that Qt accepts.
QFont shownFont(const FontChoice& choice)
{
    QFont font = Fonts::resolve(choice.postScriptName).font;
    font.setPointSizeF(std::clamp(choice.pointSize, 1.0, 999.0));
    return font;
}

} // namespace

DialogFontPanel::~DialogFontPanel()
{
    delete m_dialog;
}

void DialogFontPanel::present(const FontChoice& current, std::function<void(const FontChoice&)> chosen)
{
    m_chosen = {}; // showing the font is no choice
    if (!m_dialog) {
        m_dialog = new QFontDialog(QApplication::activeWindow());
        m_dialog->setObjectName(QStringLiteral("fontPanel"));
        m_dialog->setOption(QFontDialog::NoButtons);
        // Captions are neither underlined nor struck out; the sample beside those switches keeps its height.
        for (const QCheckBox* effect : m_dialog->findChildren<QCheckBox*>()) {
            QSizePolicy policy = effect->parentWidget()->sizePolicy();
            policy.setRetainSizeWhenHidden(true);
            effect->parentWidget()->setSizePolicy(policy);
            effect->parentWidget()->hide();
        }
        QObject::connect(m_dialog, &QFontDialog::currentFontChanged, m_dialog, [this](const QFont& f) { choose(f); });
        QObject::connect(m_dialog, &QDialog::finished, m_dialog, [this] { m_chosen = {}; });
    }
    m_name = current.postScriptName;
    m_shown = shownFont(current);
    m_dialog->setCurrentFont(m_shown);
    m_chosen = std::move(chosen);
    m_dialog->show();
    m_dialog->raise();
    m_dialog->activateWindow();
}

void DialogFontPanel::choose(const QFont& font)
{
    if (!m_chosen)
        return;
    if (!sameFace(font, m_shown)) {
        const auto name = postScriptName(font);
        if (!name)
            return; // a bitmap font cannot be named in a project
        m_name = *name;
        m_shown = font;
    }
    m_chosen({.postScriptName = m_name, .pointSize = font.pointSizeF()});
}

} // namespace velmora
