#pragma once

#include "app/kit/focus_ring.h"
#include "app/kit/look.h"
#include "app/kit/mnemonic_hints.h"

#include <QProxyStyle>

class QPushButton;

namespace velmora
{

/// Draws every standard control from the look, on all systems: no style sheets, no colours of its own. What it does not
/// know it leaves to Fusion, which takes its colours from paletteOf().
class VelmoraStyle : public QProxyStyle
{
public:
    explicit VelmoraStyle(Look look);

    [[nodiscard]] const Look& look() const { return m_look; }
    void setLook(const Look& look) { m_look = look; }

    using QProxyStyle::polish;
    using QProxyStyle::unpolish;
    void polish(QWidget* widget) override;
    void unpolish(QWidget* widget) override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                         const QWidget* widget) const override;
    QRect subElementRect(SubElement element, const QStyleOption* option, const QWidget* widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override;
    QIcon standardIcon(StandardPixmap sign, const QStyleOption* option, const QWidget* widget) const override;
    QPixmap standardPixmap(StandardPixmap sign, const QStyleOption* option, const QWidget* widget) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returned) const override;

private:
    Look m_look;
    FocusFollower m_follower;
    MnemonicHints m_mnemonics;
};

/// Makes a button one of those of sheets and settings: 28 points tall.
void setLarge(QPushButton* button);
bool isLarge(const QWidget* button);

/// Marks a field's content as wrong: a ring in the error colour. The sentence that says why stands beside it.
void setMarkedWrong(QWidget* field, bool wrong);
bool isMarkedWrong(const QWidget* field);

} // namespace velmora
