#pragma once

#include "platform/ports/font_panel.h"

#include <QFont>
#include <QPointer>

class QFontDialog;

namespace velmora
{

/// Qt's font dialog as the font panel: beside the window, without buttons, every choice at once. (On macOS Qt shows the
/// system's own panel for it.)
class DialogFontPanel : public FontPanel
{
public:
    DialogFontPanel() = default;
    ~DialogFontPanel() override;
    void present(const FontChoice& current, std::function<void(const FontChoice&)> chosen) override;

private:
    void choose(const QFont& font);

    QPointer<QFontDialog> m_dialog{};
    std::function<void(const FontChoice&)> m_chosen{};
    QFont m_shown{};      ///< the font that stands for m_name in the dialog
    std::string m_name{}; ///< PostScript name; it need not be installed
};

} // namespace velmora
