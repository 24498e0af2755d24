#pragma once

#include <QAccessible>
#include <QWidget>

namespace ambrel {

/// Tells assistive technology what a plain or painted widget is. Its name is its `accessibleName`. Call it first: a
/// name or a description may already announce the widget. Main thread.
void setAccessibleRole(QWidget &widget, QAccessible::Role role);

} // namespace ambrel
