#pragma once

#include "toolkit/LazyColumn.h"

#include <QApplication>
#include <QBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QWheelEvent>
#include <algorithm>

namespace ambrel {

/// A row as an application might have it: focusable itself, with two buttons in it. Counts how many are alive and how
/// often any of them paints or is laid out.
class CardRow : public QWidget
{
public:
    explicit CardRow(QWidget *parent) : QWidget(parent)
    {
        ++alive;
        setFocusPolicy(Qt::StrongFocus);
        auto *layout = new QVBoxLayout(this);
        layout->addWidget(&m_title);
        auto *buttons = new QHBoxLayout;
        layout->addLayout(buttons);
        buttons->addWidget(&keep);
        buttons->addWidget(&dismiss);
    }
    ~CardRow() override { --alive; }

    void showPerson(const QString &id)
    {
        if (m_title.text() == id)
            return;
        m_title.setText(id);
        keep.setText(QStringLiteral("Keep ") + id);
        dismiss.setText(QStringLiteral("Dismiss ") + id);
    }
    QString id() const { return m_title.text(); }

    static inline int alive = 0;
    static inline int paints = 0;
    static inline int resizes = 0;
    QPushButton keep;
    QPushButton dismiss;

protected:
    void paintEvent(QPaintEvent *) override { ++paints; }
    void resizeEvent(QResizeEvent *) override { ++resizes; }

private:
    QLabel m_title;
};

/// A list of people: "person 0", "person 1" and so on. Counts what it is asked for.
class People : public LazyColumnSource
{
public:
    explicit People(int number)
    {
        for (int i = 0; i < number; ++i)
            ids.append(QStringLiteral("person %1").arg(i));
    }
    int count() const override { return int(ids.size()); }
    QString idAt(int index) const override
    {
        ++lookups;
        return ids.at(index);
    }
    QWidget *makeRow(QWidget *parent) override { return new CardRow(parent); }
    void bindRow(QWidget *row, int index) override
    {
        ++binds;
        static_cast<CardRow *>(row)->showPerson(ids.at(index));
    }

    QStringList ids;
    mutable int lookups = 0;
    int binds = 0;
};

/// A window with a field above and one below the column, 400 x 600, on screen and active.
class PeopleWindow : public QWidget
{
public:
    explicit PeopleWindow(People &source) : people(source), column(source)
    {
        auto *layout = new QVBoxLayout(this);
        layout->addWidget(&before);
        layout->addWidget(&column, 1);
        layout->addWidget(&after);
        column.setSpacing(12);
        column.setPadding(2);
        column.refresh();
        resize(400, 600);
        show();
        activateWindow();
        before.setFocus();
    }

    QList<CardRow *> rows() const
    {
        QList<CardRow *> shown;
        for (auto *const child : column.viewport()->findChildren<QWidget *>(Qt::FindDirectChildrenOnly)) {
            if (auto *const row = dynamic_cast<CardRow *>(child))
                shown.append(row);
        }
        shown.removeIf([](const CardRow *row) { return row->isHidden(); });
        std::sort(shown.begin(), shown.end(), [](auto *a, auto *b) { return a->y() < b->y(); });
        return shown;
    }
    CardRow *row(const QString &id) const
    {
        for (CardRow *row : rows())
            if (row->id() == id)
                return row;
        return nullptr;
    }
    CardRow *row(int number) const { return row(QStringLiteral("person %1").arg(number)); }
    bool showsFully(const QWidget *row) const { return row && column.viewport()->rect().contains(row->geometry()); }
    QList<CardRow *> visibleRows() const
    {
        QList<CardRow *> seen = rows();
        seen.removeIf([this](CardRow *row) { return !row->geometry().intersects(column.viewport()->rect()); });
        return seen;
    }
    void scrollTo(int value) { column.verticalScrollBar()->setValue(value); }
    int rowHeight() const { return rows().front()->height(); }
    static CardRow *focusedRow()
    {
        QWidget *widget = QApplication::focusWidget();
        while (widget && !dynamic_cast<CardRow *>(widget))
            widget = widget->parentWidget();
        return static_cast<CardRow *>(widget);
    }
    static QString focusedId() { return focusedRow() ? focusedRow()->id() : QString(); }

    People &people;
    QLineEdit before;
    LazyColumn column;
    QLineEdit after;
};

/// Turns the wheel over a widget by `angle` eighths of a degree; 120 is a notch.
inline void turnWheel(QWidget &widget, int angle)
{
    const QPoint middle = widget.rect().center();
    QWheelEvent event(middle, widget.mapToGlobal(middle), {}, {0, angle}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&widget, &event);
}

} // namespace ambrel
