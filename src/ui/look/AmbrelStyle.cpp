#include "ui/look/AmbrelStyle.h"

#include "toolkit/FocusRing.h"
#include "ui/look/Painting.h"
#include "ui/look/Theme.h"

#include <QApplication>
#include <QFontMetrics>
#include <QStyleOption>

namespace ambrel {

namespace {

/// A white field whose border answers to the pointer and whose ring shows the focus.
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

QRect scrollBarHandle(const QStyleOptionSlider &bar)
{
    const bool isHorizontal = bar.orientation == Qt::Horizontal;
    const int track = isHorizontal ? bar.rect.width() : bar.rect.height();
    const qint64 range = qint64(bar.maximum) - bar.minimum;
    if (range <= 0)
        return bar.rect;
    const qint64 share = track * qint64(bar.pageStep) / (range + bar.pageStep);
    const int length = int(std::clamp(share, qint64(theme::scrollBarHandleMinimum), qint64(track)));
    const int start =
        QStyle::sliderPositionFromValue(bar.minimum, bar.maximum, bar.sliderPosition, track - length, bar.upsideDown);
    return isHorizontal ? QRect(bar.rect.x() + start, bar.rect.y(), length, bar.rect.height())
                        : QRect(bar.rect.x(), bar.rect.y() + start, bar.rect.width(), length);
}

QRect scrollBarPart(const QStyleOptionSlider &bar, QStyle::SubControl part)
{
    const QRect handle = scrollBarHandle(bar);
    const QRect &rect = bar.rect;
    const bool isFlat = bar.orientation == Qt::Horizontal;
    switch (part) {
    case QStyle::SC_ScrollBarSlider:
        return handle;
    case QStyle::SC_ScrollBarGroove:
        return rect;
    case QStyle::SC_ScrollBarSubPage:
        return isFlat ? rect.adjusted(0, 0, handle.left() - 1 - rect.right(), 0)
                      : rect.adjusted(0, 0, 0, handle.top() - 1 - rect.bottom());
    case QStyle::SC_ScrollBarAddPage:
        return isFlat ? rect.adjusted(handle.right() + 1 - rect.left(), 0, 0, 0)
                      : rect.adjusted(0, handle.bottom() + 1 - rect.top(), 0, 0);
    default:
        return {}; // no arrow buttons
    }
}

void paintScrollBar(QPainter &painter, const QStyleOptionSlider &bar)
{
    if (bar.maximum <= bar.minimum)
        return;
    constexpr int inset = 2;
    const QRect handle = scrollBarHandle(bar).adjusted(inset, inset, -inset, -inset);
    const bool isActive = bar.state & (QStyle::State_MouseOver | QStyle::State_Sunken);
    fillRounded(painter, handle, isActive ? theme::scrollBarHandleHovered : theme::scrollBarHandle,
                std::min(handle.width(), handle.height()) / 2.0);
}

} // namespace

AmbrelStyle::AmbrelStyle() : QProxyStyle(QStringLiteral("fusion")) {}

void AmbrelStyle::install()
{
    QApplication::setFont(theme::font(theme::TextStyle::Body));
    QApplication::setStyle(new AmbrelStyle); // owned by the application
    QApplication::setPalette(theme::palette());
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
    case PE_FrameFocusRect:
        strokeRounded(*painter, option->rect, theme::focusRing, theme::focusRingWidth, theme::fieldRadius);
        return;
    default:
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

void AmbrelStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
                                     const QWidget *widget) const
{
    if (const auto *const box = qstyleoption_cast<const QStyleOptionGroupBox *>(option); control == CC_GroupBox && box)
        paintGroupBox(*painter, *box);
    else if (const auto *const bar = qstyleoption_cast<const QStyleOptionSlider *>(option);
             control == CC_ScrollBar && bar)
        paintScrollBar(*painter, *bar);
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
        return scrollBarPart(*bar, part);
    return QProxyStyle::subControlRect(control, option, part, widget);
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
        return {contents.width() + 2 * theme::fieldTextMargin, theme::fieldHeight};
    if (type == CT_GroupBox)
        return contents; // the contents margins already hold title and padding
    return QProxyStyle::sizeFromContents(type, option, contents, widget);
}

int AmbrelStyle::pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const
{
    switch (metric) {
    case PM_ScrollBarExtent:
        return theme::scrollBarThickness;
    case PM_ScrollView_ScrollBarSpacing:
        return 0;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int AmbrelStyle::styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                           QStyleHintReturn *result) const
{
    if (hint == SH_ScrollBar_Transient)
        return 0; // indicators stay visible
    return QProxyStyle::styleHint(hint, option, widget, result);
}

QPalette AmbrelStyle::standardPalette() const
{
    return theme::palette();
}

} // namespace ambrel
