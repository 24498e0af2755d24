#pragma once

#include <QColor>
#include <QFont>
#include <QImage>
#include <QList>
#include <QRect>
#include <QString>
#include <QWidget>

namespace ambrel {

/// A piece of text as a view has drawn it.
struct DrawnText
{
    QString text;
    QFont font;
    QColor color; ///< its opacity included
    QRect box;    ///< what can be seen of it, in pixels of the window
};

/// A window taken apart: everything but the text as a picture, and the text itself.
struct TakenApart
{
    QImage background;
    QList<DrawnText> texts; ///< those that nothing was drawn over later
};

/// Draws `window` once, at scale 1, without its text.
TakenApart takeTextOff(QWidget &window);

} // namespace ambrel
