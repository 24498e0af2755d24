#include "ui/look/Divider.h"

#include "toolkit/AccessibleRole.h"
#include "ui/look/Theme.h"

#include <QPainter>

namespace ambrel {

Divider::Divider(Qt::Orientation orientation, QWidget *parent) : QWidget(parent)
{
    setAccessibleRole(*this, QAccessible::Separator);
    if (orientation == Qt::Vertical)
        setFixedWidth(theme::dividerThickness);
    else
        setFixedHeight(theme::dividerThickness);
}

void Divider::paintEvent(QPaintEvent *)
{
    QPainter(this).fillRect(rect(), theme::divider);
}

} // namespace ambrel
