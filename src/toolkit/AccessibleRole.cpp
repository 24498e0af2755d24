#include "toolkit/AccessibleRole.h"

#include <QAccessibleWidget>
#include <QVariant>

namespace ambrel {

namespace {

constexpr char roleProperty[] = "ambrelAccessibleRole";

QAccessibleInterface *createForRole(const QString &, QObject *object)
{
    const QVariant role = object->property(roleProperty);
    if (!role.isValid())
        return nullptr; // the toolkit's own interface serves
    return new QAccessibleWidget(qobject_cast<QWidget *>(object),
                                 QAccessible::Role(role.toInt())); // owned by QAccessible
}

} // namespace

void setAccessibleRole(QWidget &widget, QAccessible::Role role)
{
    static const bool isInstalled = [] {
        QAccessible::installFactory(createForRole);
        return true;
    }();
    Q_UNUSED(isInstalled)
    widget.setProperty(roleProperty, int(role));
}

} // namespace ambrel
