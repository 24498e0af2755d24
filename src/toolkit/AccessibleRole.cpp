#include "toolkit/AccessibleRole.h"

#include <QAccessibleWidget>
#include <QVariant>
#include <utility>

namespace ambrel {

namespace {

constexpr char factoryProperty[] = "ambrelAccessibleFactory";

QAccessibleInterface *create(const QString &, QObject *object)
{
    const auto make = object->property(factoryProperty).value<AccessibleFactory>();
    return make ? make(static_cast<QWidget &>(*object)) : nullptr; // then the toolkit's own interface serves
}

} // namespace

void setAccessibleFactory(QWidget &widget, const AccessibleFactory &make)
{
    QAccessible::installFactory(create); // once, however often it is called
    widget.setProperty(factoryProperty, QVariant::fromValue(make));
}

void setAccessibleRole(QWidget &widget, QAccessible::Role role)
{
    setAccessibleFactory(widget, [role](QWidget &target) { return new QAccessibleWidget(&target, role); });
}

} // namespace ambrel
