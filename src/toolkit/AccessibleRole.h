#pragma once

#include <QAccessible>
#include <QWidget>
#include <functional>

namespace ambrel {

/// Makes what assistive technology meets instead of a widget; QAccessible then owns it.
using AccessibleFactory = std::function<QAccessibleInterface *(QWidget &)>;

/// Lets assistive technology meet `widget` as what `make` makes of it. Call it first: a name or a description may
/// already announce the widget. Main thread.
void setAccessibleFactory(QWidget &widget, const AccessibleFactory &make);

/// Tells assistive technology what a plain or painted widget is. Its name is its `accessibleName`. Call it first, too.
void setAccessibleRole(QWidget &widget, QAccessible::Role role);

} // namespace ambrel
