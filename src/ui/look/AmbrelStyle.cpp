#include "ui/look/AmbrelStyle.h"

#include "toolkit/FocusRing.h"
#include "ui/look/Painting.h"
#include "ui/look/Theme.h"

#include <QApplication>
#include <QFontMetrics>
#include <QPainterPath>
#include <QToolTip>
#include <algorithm>

namespace ambrel {

namespace {

/// A white field with a border that darkens under the pointer, and a ring instead of it for the focus.
void paintField(QPainter &painter, const QStyleOption &option, const QColor &restingBorder)
{
    const bool isEnabled = option.state & QStyle::State_Enabled;
    const bool isHovered = isEnabled && (option.state & QStyle::State_MouseOver);
    fillRounded(painter, option.rect, theme::fieldBackground, theme::fieldRadius);
    if (option.state & QStyle::State_HasFocus)
        strokeRounded(painter, option.rect, theme::focusRing, theme::focusRingWidth, theme::fieldRadius);
    else
        strokeRounded(painter, option.rect, isHovered ? theme::fieldBorderHovered : restingBorder, theme::hairline,
                      theme::fieldRadius);
}

int groupTitleHeight()
{
    return QFontMetrics(theme::font(theme::TextStyle::Headline)).height() + theme::groupTitleSpacing;
}

void paintGroupBox(QPainter &painter, const QStyleOptionGroupBox &box)
{
    const QRect frame = box.rect.adjusted(0, groupTitleHeight(), 0, 0);
    fillRounded(painter, frame, theme::groupBoxFill);
    strokeRounded(painter, frame, theme::groupBoxBorder);
    painter.save();
    painter.setFont(theme::font(theme::TextStyle::Headline));
    painter.setPen(theme::primaryText);
    painter.drawText(box.rect.adjusted(theme::groupBoxPadding, 0, -theme::groupBoxPadding, 0),
                     Qt::AlignLeft | Qt::AlignTop | Qt::TextHideMnemonic, box.text);
    painter.restore();
}

void paintPopup(QPainter &painter, const QRectF &rect)
{
    fillRounded(painter, rect, theme::popupFill);
    strokeRounded(painter, rect, theme::popupBorder);
}

void paintScrollBar(QPainter &painter, const QStyleOptionSlider &bar, const QRect &slider)
{
    if (bar.maximum <= bar.minimum)
        return;
    constexpr int inset = 2;
    const QRect handle = slider.adjusted(inset, inset, -inset, -inset);
    const bool isActive = bar.state & (QStyle::State_MouseOver | QStyle::State_Sunken);
    fillRounded(painter, handle, isActive ? theme::scrollBarHandleHovered : theme::scrollBarHandle,
                std::min(handle.width(), handle.height()) / 2.0);
}

QRegion popupShape(const QRect &rect)
{
    QPainterPath path;
    path.addRoundedRect(rect, theme::cornerRadius, theme::cornerRadius);
    return QRegion(path.toFillPolygon().toPolygon());
}

} // namespace

AmbrelStyle::AmbrelStyle() : QProxyStyle(QStringLiteral("fusion")) {}

void AmbrelStyle::install()
{
    QApplication::setFont(theme::font(theme::TextStyle::Body));
    QApplication::setStyle(new AmbrelStyle); // owned by the application
    QApplication::setPalette(theme::palette());
    QApplication::setPalette(theme::menuPalette(), "QMenu");
    QApplication::setFont(theme::font(theme::TextStyle::Body), "QMenu");
    QToolTip::setFont(theme::font(theme::TextStyle::Caption));
}

void AmbrelStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                                const QWidget *widget) const
{
    switch (element) {
    case PE_PanelLineEdit:
        paintField(*painter, *option, theme::fieldBorder);
        return;
    case PE_Frame:
        paintField(*painter, *option, theme::editorOutline);
        return;
    case PE_PanelMenu:
    case PE_PanelTipLabel:
        paintPopup(*painter, option->rect);
        return;
    case PE_FrameMenu: // drawn with the panel
        return;
    case PE_FrameFocusRect:
        strokeRounded(*painter, option->rect, theme::focusRing, theme::focusRingWidth, theme::fieldRadius);
        return;
    default:
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

void AmbrelStyle::drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                              const QWidget *widget) const
{
    const auto *const item = qstyleoption_cast<const QStyleOptionMenuItem *>(option);
    if (element != CE_MenuItem || !item) {
        QProxyStyle::drawControl(element, option, painter, widget);
        return;
    }
    const bool isSelected = (item->state & State_Selected) && (item->state & State_Enabled);
    if (isSelected)
        fillRounded(*painter, item->rect, theme::controlAccent, theme::fieldRadius);
    QStyleOptionMenuItem plain = *item; // the rest without a highlight of its own
    plain.state.setFlag(State_Selected, isSelected);
    plain.palette.setColor(QPalette::Highlight, Qt::transparent);
    QProxyStyle::drawControl(element, &plain, painter, widget);
}

void AmbrelStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
                                     const QWidget *widget) const
{
    if (const auto *const box = qstyleoption_cast<const QStyleOptionGroupBox *>(option); control == CC_GroupBox && box)
        paintGroupBox(*painter, *box);
    else if (const auto *const bar = qstyleoption_cast<const QStyleOptionSlider *>(option);
             control == CC_ScrollBar && bar)
        paintScrollBar(*painter, *bar, subControlRect(control, option, SC_ScrollBarSlider, widget));
    else
        QProxyStyle::drawComplexControl(control, option, painter, widget);
}

QRect AmbrelStyle::subControlRect(ComplexControl control, const QStyleOptionComplex *option, SubControl part,
                                  const QWidget *widget) const
{
    if (control == CC_GroupBox) {
        const QRect frame = option->rect.adjusted(0, groupTitleHeight(), 0, 0);
        const int padding = theme::groupBoxPadding;
        if (part == SC_GroupBoxContents)
            return frame.adjusted(padding, padding, -padding, -padding);
        return part == SC_GroupBoxFrame ? frame : option->rect.adjusted(0, 0, 0, -frame.height());
    }
    if (const auto *const bar = qstyleoption_cast<const QStyleOptionSlider *>(option); control == CC_ScrollBar && bar)
        return scrollBarPart(*bar, part, widget);
    return QProxyStyle::subControlRect(control, option, part, widget);
}

/// The bar has no arrow buttons: it is laid out as if they stood beyond its ends.
QRect AmbrelStyle::scrollBarPart(const QStyleOptionSlider &bar, SubControl part, const QWidget *widget) const
{
    if (part != SC_ScrollBarSlider && part != SC_ScrollBarGroove && part != SC_ScrollBarSubPage &&
        part != SC_ScrollBarAddPage)
        return {};
    const bool isHorizontal = bar.orientation == Qt::Horizontal;
    const QPoint button(isHorizontal ? theme::scrollBarThickness : 0, isHorizontal ? 0 : theme::scrollBarThickness);
    QStyleOptionSlider longer = bar;
    longer.rect = QRect(QPoint(), bar.rect.size() + 2 * QSize(button.x(), button.y()));
    return QProxyStyle::subControlRect(CC_ScrollBar, &longer, part, widget).translated(bar.rect.topLeft() - button);
}

QRect AmbrelStyle::subElementRect(SubElement element, const QStyleOption *option, const QWidget *widget) const
{
    if (element == SE_LineEditContents)
        return option->rect.adjusted(theme::fieldTextMargin, 0, -theme::fieldTextMargin, 0);
    if (element == SE_CheckBoxLayoutItem) // the track of a switch lines up with the fields; its focus ring stands out
        return visualRect(option->direction, option->rect, option->rect.adjusted(0, 0, -focusRingReach, 0));
    return QProxyStyle::subElementRect(element, option, widget);
}

QSize AmbrelStyle::sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &contents,
                                    const QWidget *widget) const
{
    if (type == CT_LineEdit)
        return {contents.width() + 2 * theme::fieldTextMargin, theme::scaled(theme::fieldHeight)};
    if (type == CT_MenuItem)
        return QProxyStyle::sizeFromContents(type, option, contents, widget) + theme::menuItemPadding;
    if (type == CT_GroupBox)
        return contents; // the contents margins already hold title and padding
    return QProxyStyle::sizeFromContents(type, option, contents, widget);
}

int AmbrelStyle::pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const
{
    switch (metric) {
    case PM_ScrollBarExtent:
        return theme::scrollBarThickness;
    case PM_ScrollBarSliderMin:
        return theme::scrollBarHandleMinimum;
    case PM_MenuPanelWidth:
    case PM_MenuHMargin:
    case PM_MenuVMargin:
        return theme::menuPadding;
    case PM_ToolTipLabelFrameWidth:
        return theme::toolTipPadding;
    case PM_ScrollView_ScrollBarSpacing:
        return 0;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int AmbrelStyle::styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                           QStyleHintReturn *result) const
{
    switch (hint) {
    case SH_ScrollBar_Transient:
        return 0; // indicators stay visible
    case SH_Menu_Mask:
    case SH_ToolTip_Mask:
        if (auto *const mask = qstyleoption_cast<QStyleHintReturnMask *>(result))
            mask->region = popupShape(option->rect);
        return 1;
    default:
        return QProxyStyle::styleHint(hint, option, widget, result);
    }
}

QPalette AmbrelStyle::standardPalette() const
{
    return theme::palette();
}

} // namespace ambrel
