#include "app/kit/velmora_style.h"

#include "app/kit/fade.h"
#include "app/kit/icons.h"
#include "app/kit/log_view.h"
#include "app/kit/paint.h"
#include "app/kit/style_parts.h"

#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QPushButton>
#include <QScrollBar>
#include <QStyleOption>

#include <algorithm>
#include <utility>

namespace velmora
{
namespace
{

constexpr const char* largeKey = "velmora.large";
constexpr const char* wrongKey = "velmora.wrong";

/// A line edit inside another control has that control's ground.
bool isPartOfAnother(const QWidget* widget)
{
    const QWidget* parent = widget ? widget->parentWidget() : nullptr;
    return qobject_cast<const QAbstractSpinBox*>(parent) || qobject_cast<const QComboBox*>(parent);
}

/// Rounded menus need windows with an alpha channel, which a plain X server without a compositor shows as black.
bool hasTransparentWindows()
{
    return QGuiApplication::platformName() != QLatin1String("xcb");
}

bool isPopUpList(const QWidget* widget)
{
    return widget && widget->inherits("QComboBoxPrivateContainer");
}

bool wantsHover(const QWidget* widget)
{
    return qobject_cast<const QAbstractButton*>(widget) || qobject_cast<const QComboBox*>(widget) ||
           qobject_cast<const QAbstractSpinBox*>(widget) || qobject_cast<const QLineEdit*>(widget) ||
           qobject_cast<const QScrollBar*>(widget) || widget->inherits("QSlider");
}

template <typename Option>
const Option* as(const QStyleOption* option)
{
    return qstyleoption_cast<const Option*>(option);
}

double sliderFraction(const QStyleOptionSlider& option)
{
    const double range = static_cast<double>(option.maximum) - option.minimum;
    const double part = range > 0 ? (static_cast<double>(option.sliderPosition) - option.minimum) / range : 0;
    return option.upsideDown ? 1 - part : part;
}

} // namespace

VelmoraStyle::VelmoraStyle(Look look) : QProxyStyle(QStringLiteral("Fusion")), m_look(std::move(look)) {}

void VelmoraStyle::polish(QWidget* widget)
{
    QProxyStyle::polish(widget);
    if (wantsHover(widget))
        widget->setAttribute(Qt::WA_Hover);
    const bool fades = qobject_cast<QPushButton*>(widget) || qobject_cast<QComboBox*>(widget);
    if (fades && !widget->findChild<HoverFade*>(QString(), Qt::FindDirectChildrenOnly))
        new HoverFade(widget);
    if (hasTransparentWindows() && (qobject_cast<QMenu*>(widget) || isPopUpList(widget)))
        widget->setAttribute(Qt::WA_TranslucentBackground);
    if (auto* area = qobject_cast<QAbstractScrollArea*>(widget);
        area && (area->frameShape() == QFrame::StyledPanel || isPopUpList(widget->parentWidget())))
        area->viewport()->setAutoFillBackground(false); // its frame fills the rounded shape
}

void VelmoraStyle::unpolish(QWidget* widget)
{
    if (auto* area = qobject_cast<QAbstractScrollArea*>(widget); area && area->frameShape() == QFrame::StyledPanel)
        area->viewport()->setAutoFillBackground(true);
    QProxyStyle::unpolish(widget);
}

void VelmoraStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                 const QWidget* widget) const
{
    switch (element) {
    case PE_FrameFocusRect: // the ring is drawn above everything, by FocusRing
    case PE_FrameLineEdit:
    case PE_PanelItemViewRow:
    case PE_PanelButtonCommand:
    case PE_FrameDefaultButton:
        return;
    case PE_PanelLineEdit:
        if (!isPartOfAnother(widget))
            parts::drawField(*painter, option->rect, option->state, isMarkedWrong(widget),
                             m_look.length(measure::fieldRadius), m_look);
        return;
    case PE_IndicatorCheckBox:
    case PE_IndicatorItemViewItemCheck:
        parts::drawCheckBox(*painter, option->rect, option->state, m_look);
        return;
    case PE_IndicatorRadioButton:
        parts::drawRadioButton(*painter, option->rect, option->state, m_look);
        return;
    case PE_PanelMenu:
        parts::drawMenuPanel(*painter, option->rect, hasTransparentWindows(), m_look);
        return;
    case PE_FrameMenu:
        return;
    case PE_PanelTipLabel:
        drawBox(*painter, option->rect, 0, m_look.roles.sheet,
                m_look.dark() ? m_look.roles.border : faded(Qt::black, 0.18));
        return;
    case PE_Frame:
        if (isPopUpList(widget)) {
            parts::drawMenuPanel(*painter, option->rect, hasTransparentWindows(), m_look);
            return;
        }
        if (widget && widget->inherits("QAbstractScrollArea")) {
            const bool list = qobject_cast<const QAbstractItemView*>(widget);
            if (qobject_cast<const LogView*>(widget)) {
                drawBox(*painter, option->rect, m_look.length(7), m_look.roles.log, m_look.roles.border);
                return;
            }
            parts::drawField(*painter, option->rect, option->state & ~State_MouseOver, isMarkedWrong(widget),
                             m_look.length(list ? 7 : measure::fieldRadius), m_look);
            return;
        }
        drawBox(*painter, option->rect, m_look.length(measure::fieldRadius), {}, m_look.roles.border);
        return;
    case PE_PanelItemViewItem:
        if (const auto* item = as<QStyleOptionViewItem>(option))
            parts::drawItemGround(*painter, *item, m_look);
        return;
    case PE_PanelScrollAreaCorner:
        return;
    default:
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

void VelmoraStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const
{
    switch (element) {
    case CE_PushButtonBevel:
        if (const auto* button = as<QStyleOptionButton>(option)) {
            const double hover = HoverFade::strengthFor(widget, option->state & State_MouseOver);
            parts::drawButtonGround(*painter, *button, hover, m_look, isLarge(widget));
            return;
        }
        break;
    case CE_PushButtonLabel:
        if (const auto* button = as<QStyleOptionButton>(option)) {
            QStyleOptionButton shown = *button;
            shown.state.setFlag(State_KeyboardFocusChange, styleHint(SH_UnderlineShortcut, option, widget, nullptr));
            parts::drawButtonLabel(*painter, shown, m_look, isLarge(widget));
            return;
        }
        break;
    case CE_ComboBoxLabel:
        if (const auto* comboBox = as<QStyleOptionComboBox>(option); comboBox && !comboBox->editable) {
            const QRect text = subControlRect(CC_ComboBox, comboBox, SC_ComboBoxEditField, widget);
            parts::drawPopUpLabel(*painter, *comboBox, text, m_look);
            return;
        }
        break;
    case CE_ProgressBar:
        if (const auto* bar = as<QStyleOptionProgressBar>(option)) {
            const double range = static_cast<double>(bar->maximum) - bar->minimum;
            const double part = range > 0 ? (static_cast<double>(bar->progress) - bar->minimum) / range : 0;
            parts::drawProgress(*painter, bar->rect, part, m_look.roles.accentFill, m_look);
            return;
        }
        break;
    case CE_MenuItem:
        if (const auto* item = as<QStyleOptionMenuItem>(option)) {
            QStyleOptionMenuItem shown = *item;
            shown.state.setFlag(State_NoChange, !styleHint(SH_UnderlineShortcut, option, widget, nullptr));
            parts::drawMenuItem(*painter, shown, m_look);
            return;
        }
        break;
    case CE_MenuBarItem:
        if (const auto* item = as<QStyleOptionMenuItem>(option)) {
            QStyleOptionMenuItem shown = *item;
            shown.state.setFlag(State_NoChange, !styleHint(SH_UnderlineShortcut, option, widget, nullptr));
            parts::drawMenuBarItem(*painter, shown, m_look);
            return;
        }
        break;
    case CE_MenuBarEmptyArea:
        parts::drawMenuBarGround(*painter, option->rect, m_look);
        return;
    case CE_HeaderSection:
        painter->fillRect(option->rect, m_look.roles.panel);
        drawHorizontalHairline(*painter, option->rect.left(), option->rect.right() + 1, option->rect.bottom(),
                               m_look.palette.dividerColor);
        return;
    case CE_HeaderEmptyArea:
        painter->fillRect(option->rect, m_look.roles.panel);
        return;
    case CE_MenuEmptyArea:
    case CE_MenuHMargin:
    case CE_MenuVMargin:
        return;
    case CE_ItemViewItem:
        if (const auto* item = as<QStyleOptionViewItem>(option)) {
            // A selected row keeps its ink.
            QStyleOptionViewItem shown = *item;
            for (const auto group : {QPalette::Active, QPalette::Inactive})
                shown.palette.setColor(group, QPalette::HighlightedText, m_look.roles.primary);
            QProxyStyle::drawControl(element, &shown, painter, widget);
            return;
        }
        break;
    default:
        break;
    }
    QProxyStyle::drawControl(element, option, painter, widget);
}

void VelmoraStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                                      const QWidget* widget) const
{
    switch (control) {
    case CC_ComboBox:
        if (const auto* comboBox = as<QStyleOptionComboBox>(option); comboBox && !comboBox->editable) {
            parts::drawPopUpButton(*painter, *comboBox, HoverFade::strengthFor(widget, option->state & State_MouseOver),
                                   m_look);
            return;
        }
        if (const auto* comboBox = as<QStyleOptionComboBox>(option)) {
            parts::drawField(*painter, option->rect, option->state, isMarkedWrong(widget),
                             m_look.length(measure::fieldRadius), m_look);
            const QRect arrow = subControlRect(CC_ComboBox, comboBox, SC_ComboBoxArrow, widget);
            drawChevron(*painter, QRectF(arrow).center(), m_look.length(8), false,
                        option->state & State_Enabled ? m_look.roles.secondary : m_look.roles.disabled);
            return;
        }
        break;
    case CC_SpinBox:
        if (const auto* spinBox = as<QStyleOptionSpinBox>(option)) {
            parts::drawSpinBox(*painter, *spinBox, isMarkedWrong(widget), m_look);
            return;
        }
        break;
    case CC_Slider:
        if (const auto* slider = as<QStyleOptionSlider>(option); slider && slider->orientation == Qt::Horizontal) {
            parts::drawSlider(*painter, slider->rect, sliderFraction(*slider), option->state & State_Enabled, false,
                              m_look);
            return;
        }
        break;
    case CC_ScrollBar:
        if (const auto* bar = as<QStyleOptionSlider>(option)) {
            const QRect handle = subControlRect(CC_ScrollBar, bar, SC_ScrollBarSlider, widget);
            parts::drawScrollBar(*painter, *bar, handle, m_look);
            return;
        }
        break;
    default:
        break;
    }
    QProxyStyle::drawComplexControl(control, option, painter, widget);
}

QRect VelmoraStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                                   const QWidget* widget) const
{
    if (const auto* spinBox = as<QStyleOptionSpinBox>(option); spinBox && control == CC_SpinBox)
        return parts::spinBoxPart(*spinBox, part, m_look);
    if (control == CC_ComboBox && part == SC_ComboBoxEditField) {
        const auto* comboBox = as<QStyleOptionComboBox>(option);
        const int inset = m_look.length(comboBox && comboBox->editable ? measure::fieldInset - 2 : 10);
        return option->rect.adjusted(inset, 1, -m_look.length(20), -1);
    }
    if (control == CC_ComboBox && part == SC_ComboBoxArrow)
        return option->rect.adjusted(option->rect.width() - m_look.length(20), 0, 0, 0);
    if (control == CC_ScrollBar) {
        // No arrows: the whole length is track.
        if (part == SC_ScrollBarAddLine || part == SC_ScrollBarSubLine)
            return {};
        if (part == SC_ScrollBarGroove)
            return option->rect;
    }
    return QProxyStyle::subControlRect(control, option, part, widget);
}

QRect VelmoraStyle::subElementRect(SubElement element, const QStyleOption* option, const QWidget* widget) const
{
    if (element == SE_LineEditContents && !isPartOfAnother(widget)) {
        const int inset = m_look.length(measure::fieldInset) - 2; // a line edit keeps two pixels to itself
        return option->rect.adjusted(inset, 1, -inset, -1);
    }
    if (element == SE_LineEditContents)
        return option->rect;
    return QProxyStyle::subElementRect(element, option, widget);
}

QSize VelmoraStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                     const QWidget* widget) const
{
    const int height = m_look.length(measure::controlHeight);
    switch (type) {
    case CT_PushButton:
        if (const auto* button = as<QStyleOptionButton>(option))
            return parts::buttonSize(*button, m_look, isLarge(widget));
        break;
    case CT_LineEdit:
        if (!isPartOfAnother(widget))
            return {size.width() + 2 * m_look.length(measure::fieldInset), height};
        return size;
    case CT_SpinBox:
        return {size.width() + m_look.length(measure::stepperWidth + 2 * measure::fieldInset), height};
    case CT_ComboBox:
        return {size.width() + m_look.length(10 + 22), height};
    case CT_CheckBox:
    case CT_RadioButton: {
        const QSize natural = QProxyStyle::sizeFromContents(type, option, size, widget);
        return {natural.width(), m_look.length(20)};
    }
    case CT_ProgressBar:
        return {size.width(), m_look.length(6)};
    case CT_MenuItem:
        if (const auto* item = as<QStyleOptionMenuItem>(option))
            return parts::menuItemSize(*item, m_look);
        break;
    case CT_MenuBarItem:
        return {size.width() + m_look.length(16), m_look.length(26)};
    case CT_MenuBar:
        return {size.width(), m_look.length(26)};
    case CT_ItemViewItem: {
        const QSize natural = QProxyStyle::sizeFromContents(type, option, size, widget);
        return {natural.width(), std::max(natural.height(), m_look.length(24))};
    }
    default:
        break;
    }
    return QProxyStyle::sizeFromContents(type, option, size, widget);
}

QIcon VelmoraStyle::standardIcon(StandardPixmap sign, const QStyleOption* option, const QWidget* widget) const
{
    // Message boxes ask for theirs at 48 points or so; those of the file panel follow the look like all tools.
    switch (sign) {
    case SP_MessageBoxInformation:
    case SP_MessageBoxQuestion:
    case SP_MessageBoxWarning:
    case SP_MessageBoxCritical:
        return QIcon(standardPixmap(sign, option, widget));
    case SP_ArrowBack:
    case SP_FileDialogBack:
        return toolIcon(QStringLiteral("chevron-left"));
    case SP_ArrowForward:
        return toolIcon(QStringLiteral("chevron-right"));
    case SP_FileDialogToParent:
        return toolIcon(QStringLiteral("arrow-up"));
    case SP_FileDialogNewFolder:
        return toolIcon(QStringLiteral("folder-plus"));
    case SP_FileDialogListView:
        return toolIcon(QStringLiteral("grid"));
    case SP_FileDialogDetailedView:
        return toolIcon(QStringLiteral("list"));
    default:
        return QProxyStyle::standardIcon(sign, option, widget);
    }
}

QPixmap VelmoraStyle::standardPixmap(StandardPixmap sign, const QStyleOption* option, const QWidget* widget) const
{
    const ThemeRoles& roles = m_look.roles;
    const double ratio = widget ? widget->devicePixelRatioF() : qApp->devicePixelRatio();
    const auto picture = [&](const char* name, const QColor& ink, const QColor& area) {
        return iconPixmap(QLatin1String(name), m_look.length(40), ratio, {ink, area});
    };
    switch (sign) {
    case SP_MessageBoxInformation:
        return picture("about", roles.accentText, faded(m_look.palette.accent, 0.2));
    case SP_MessageBoxQuestion:
        return picture("help", roles.accentText, faded(m_look.palette.accent, 0.2));
    case SP_MessageBoxWarning:
        return picture("warning", roles.warning, Qt::transparent);
    case SP_MessageBoxCritical:
        return picture("cross-circle", roles.error, Qt::transparent);
    default:
        return QProxyStyle::standardPixmap(sign, option, widget);
    }
}

int VelmoraStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const
{
    switch (metric) {
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
        return m_look.length(measure::checkSize);
    case PM_CheckBoxLabelSpacing:
    case PM_RadioButtonLabelSpacing:
        return m_look.length(8);
    case PM_MessageBoxIconSize:
        return m_look.length(40);
    case PM_ButtonIconSize:
    case PM_SmallIconSize:
        return m_look.length(16);
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
        return 0;
    case PM_DefaultFrameWidth:
        return 1;
    case PM_SliderThickness:
        return m_look.length(measure::controlHeight);
    case PM_SliderLength:
    case PM_SliderControlThickness:
        return m_look.length(measure::sliderKnob);
    case PM_ScrollBarExtent:
    case PM_ScrollView_ScrollBarOverlap:
        return m_look.length(12);
    case PM_ScrollView_ScrollBarSpacing:
        return 0;
    case PM_ScrollBarSliderMin:
        return m_look.length(32);
    case PM_MenuPanelWidth:
        return 0;
    case PM_MenuHMargin:
        return 1;
    case PM_MenuVMargin:
        return m_look.length(5);
    case PM_MenuBarItemSpacing:
    case PM_MenuBarPanelWidth:
    case PM_MenuBarVMargin:
        return 0;
    case PM_MenuBarHMargin:
        return m_look.length(6);
    case PM_ToolTipLabelFrameWidth:
        return m_look.length(5);
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int VelmoraStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                            QStyleHintReturn* returned) const
{
    switch (hint) {
    case SH_ScrollBar_Transient:
    case SH_ComboBox_Popup:
    case SH_Menu_MouseTracking:
    case SH_MenuBar_MouseTracking:
    case SH_Slider_SnapToValue:
        return 1;
    case SH_ScrollView_FrameOnlyAroundContents:
    case SH_EtchDisabledText:
    case SH_DitherDisabledText:
    case SH_ItemView_ShowDecorationSelected:
    case SH_DialogButtonBox_ButtonsHaveIcons:
    case SH_TitleBar_ModifyNotification: // the title says it in words
        return 0;
    case SH_Slider_AbsoluteSetButtons:
        return Qt::LeftButton;
    case SH_SpinBox_ClickAutoRepeatThreshold:
        return 400;
    case SH_SpinBox_ClickAutoRepeatRate:
        return 60;
    case SH_SpinBox_StepModifier:
        return Qt::ShiftModifier;
    case SH_LineEdit_PasswordCharacter:
        return 0x2022;
    case SH_Widget_Animation_Duration:
    case SH_Widget_Animate:
        if (m_look.reducedMotion)
            return 0;
        break;
    case SH_UnderlineShortcut:
        if (qobject_cast<const QLabel*>(widget))
            return m_mnemonics.shown() ? 1 : 0;
        break;
    default:
        break;
    }
    return QProxyStyle::styleHint(hint, option, widget, returned);
}

void setLarge(QPushButton* button)
{
    button->setProperty(largeKey, true);
    button->updateGeometry();
}

bool isLarge(const QWidget* button)
{
    return button && button->property(largeKey).toBool();
}

void setMarkedWrong(QWidget* field, bool wrong)
{
    if (isMarkedWrong(field) == wrong)
        return;
    field->setProperty(wrongKey, wrong);
    field->update();
}

bool isMarkedWrong(const QWidget* field)
{
    return field && field->property(wrongKey).toBool();
}

} // namespace velmora
