#pragma once

#include <QProxyStyle>
#include <QStyleOption>

namespace ambrel {

/// The look of the stock controls: rounded fields, menus and tooltips, titled boxes, slim scroll bars, one focus
/// ring. Light whatever the desktop's colours are.
class AmbrelStyle : public QProxyStyle
{
    Q_OBJECT

public:
    AmbrelStyle();

    /// Makes this the style, palette and font of the application, which then owns it. Call it once, before any widget.
    static void install();

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget = nullptr) const override;
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget = nullptr) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
                            const QWidget *widget = nullptr) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex *option, SubControl part,
                         const QWidget *widget = nullptr) const override;
    QRect subElementRect(SubElement element, const QStyleOption *option,
                         const QWidget *widget = nullptr) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &contents,
                           const QWidget *widget = nullptr) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption *option = nullptr,
                    const QWidget *widget = nullptr) const override;
    int styleHint(StyleHint hint, const QStyleOption *option = nullptr, const QWidget *widget = nullptr,
                  QStyleHintReturn *result = nullptr) const override;
    QPalette standardPalette() const override;

private:
    QRect scrollBarPart(const QStyleOptionSlider &bar, SubControl part, const QWidget *widget) const;
};

} // namespace ambrel
