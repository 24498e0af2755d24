#include "toolkit/AnnouncedLabel.h"

#include "toolkit/AccessibleRole.h"

#include <QVBoxLayout>

namespace ambrel {

AnnouncedLabel::AnnouncedLabel(QWidget *parent) : QWidget(parent), m_label(*new WrappedLabel({}, this))
{
    setAccessibleRole(*this, QAccessible::Notification);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(&m_label);
}

void AnnouncedLabel::setText(const QString &text)
{
    if (text == m_label.text())
        return;
    m_label.setText(text);
    if (text.isEmpty() || !QAccessible::isActive())
        return;
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
    QAccessibleAnnouncementEvent event(this, text);
#else
    QAccessibleEvent event(this, QAccessible::ObjectShow);
#endif
    QAccessible::updateAccessibility(&event);
}

} // namespace ambrel
