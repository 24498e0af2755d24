#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QHash>
#include <QObject>

namespace ambrel {

/// Counts what is painted while it lives.
class PaintCounter : public QObject
{
public:
    PaintCounter() { QCoreApplication::instance()->installEventFilter(this); }

    int total() const { return m_total; }
    int of(const QObject *widget) const { return m_counts.value(widget); }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint) {
            ++m_total;
            ++m_counts[watched];
        }
        return false;
    }

private:
    int m_total = 0;
    QHash<const QObject *, int> m_counts;
};

} // namespace ambrel
