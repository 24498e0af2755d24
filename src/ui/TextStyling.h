#pragma once

#include "ui/Theme.h"

#include <QWidget>

namespace ambrel {

/// Gives a label its font and its colour. Main thread.
inline void styleText(QWidget &label, theme::TextStyle style, const QColor &color = theme::primaryText)
{
    label.setFont(theme::font(style));
    QPalette palette = label.palette();
    palette.setColor(label.foregroundRole(), color);
    label.setPalette(palette);
}

} // namespace ambrel
