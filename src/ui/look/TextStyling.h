#pragma once

#include "ui/look/Theme.h"

#include <QWidget>

namespace ambrel {

/// Where texts stand that come in any script: a right-to-left one does not jump to the other side.
inline constexpr Qt::Alignment topLeftInEveryScript = Qt::AlignLeft | Qt::AlignTop | Qt::AlignAbsolute;

/// Gives a label its font and its colour. Main thread.
inline void styleText(QWidget &label, theme::TextStyle style, const QColor &color = theme::primaryText)
{
    label.setFont(theme::font(style));
    QPalette palette = label.palette();
    palette.setColor(label.foregroundRole(), color);
    label.setPalette(palette);
}

} // namespace ambrel
