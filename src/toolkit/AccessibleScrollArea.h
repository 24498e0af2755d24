#pragma once

#include "toolkit/AccessibleRole.h"

#include <QAbstractScrollArea>
#include <QAccessibleWidget>

namespace ambrel {

/// A scroll area as assistive technology meets it. Qt's own ends the program before 6.5 when it is asked for a child
/// after the last one, as happens on a walk through the window while a scroll bar goes.
class AccessibleScrollArea : public QAccessibleWidget
{
public:
    /// Lets assistive technology meet `area` so. Call it before the area has a name or a description. Main thread.
    static void installOn(QAbstractScrollArea &area)
    {
        setAccessibleFactory(area, [](QWidget &widget) { return new AccessibleScrollArea(widget); });
    }

private:
    explicit AccessibleScrollArea(QWidget &area) : QAccessibleWidget(&area, QAccessible::Client) {}
};

} // namespace ambrel
