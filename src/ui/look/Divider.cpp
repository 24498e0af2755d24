#include "ui/look/Divider.h"

#include "toolkit/AccessibleRole.h"
#include "ui/look/Theme.h"

namespace ambrel {

Divider::Divider(Qt::Orientation orientation, QWidget *parent) : QWidget(parent)
{
    setAccessibleRole(*this, QAccessible::Separator);
    setAutoFillBackground(true);
    QPalette colors;
    colors.setColor(QPalette::Window, theme::divider);
    setPalette(colors);
    if (orientation == Qt::Vertical)
        setFixedWidth(theme::dividerThickness);
    else
        setFixedHeight(theme::dividerThickness);
}

} // namespace ambrel
