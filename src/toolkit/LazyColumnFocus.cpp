// Focus in a LazyColumn: widgets come and go, yet Tab and the arrow keys see one long list.
#include "toolkit/LazyColumn.h"

#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <algorithm>
#include <utility>

namespace ambrel {

namespace {

/// Whether the focus goes only to come back, or has done so: to and from a popup, or another window, which may be the
/// active one while a layer comes to cover this one.
bool isLoan(const QFocusEvent &event)
{
    return event.reason() == Qt::PopupFocusReason || event.reason() == Qt::ActiveWindowFocusReason;
}

} // namespace

/// The entry that holds the focus of this window or has lent it, -1 if none does.
int LazyColumn::focusedIndex() const
{
    const Row *row = rowHolding(window()->focusWidget());
    if (!row)
        row = rowHolding(m_lender);
    return row ? row->index : -1;
}

bool LazyColumn::hasLentFocus() const
{
    return rowHolding(m_lender) && !rowHolding(window()->focusWidget());
}

const LazyColumn::Row *LazyColumn::rowHolding(const QObject *object) const
{
    while (object && object->parent() != viewport())
        object = object->parent();
    const auto row = std::find_if(m_rows.begin(), m_rows.end(), [object](const Row &r) { return r.widget == object; });
    return object && row != m_rows.end() ? &*row : nullptr;
}

const LazyColumn::Row *LazyColumn::rowAt(int index) const
{
    const auto row = std::find_if(m_rows.begin(), m_rows.end(), [index](const Row &r) { return r.index == index; });
    return row != m_rows.end() ? &*row : nullptr;
}

/// For each row its widgets that Tab stops at, in the order of the window's focus chain.
std::vector<std::vector<QWidget *>> LazyColumn::tabStopsByRow() const
{
    std::vector<std::vector<QWidget *>> stops(m_rows.size());
    for (QWidget *widget = nextInFocusChain(); widget != this; widget = widget->nextInFocusChain()) {
        if ((widget->focusPolicy() & Qt::TabFocus) == 0)
            continue;
        if (const Row *row = rowHolding(widget))
            stops[static_cast<std::size_t>(row - m_rows.data())].push_back(widget);
    }
    return stops;
}

/// Brings the focus chain, and the order in which screen readers meet the rows, into visual order.
void LazyColumn::threadTabOrder()
{
    QWidget *previous = this;
    for (const std::vector<QWidget *> &stops : tabStopsByRow()) {
        for (QWidget *stop : stops) {
            setTabOrder(previous, stop);
            stop->installEventFilter(this);
            previous = stop;
        }
    }
    qsizetype position = -1;
    for (const Row &row : m_rows) {
        const qsizetype own = viewport()->children().indexOf(row.widget);
        if (own < position)
            row.widget->raise();
        position = own < position ? viewport()->children().size() : own;
    }
}

/// The first (or last) widget of the row at `index` that Tab would stop at, null if there is none. A row that is
/// disabled together with all around it counts as it will be afterwards.
QWidget *LazyColumn::stopIn(int index, bool atItsEnd) const
{
    const Row *row = rowAt(index);
    if (!row)
        return nullptr;
    std::vector<QWidget *> stops = tabStopsByRow()[static_cast<std::size_t>(row - m_rows.data())];
    std::erase_if(stops, [row](const QWidget *stop) {
        return !stop->isEnabledTo(row->widget->parentWidget()) || !stop->isVisibleTo(row->widget);
    });
    if (stops.empty())
        return nullptr;
    return atItsEnd ? stops.back() : stops.front();
}

bool LazyColumn::focusInto(int index, bool atItsEnd)
{
    QWidget *stop = stopIn(index, atItsEnd);
    if (stop)
        stop->setFocus(Qt::OtherFocusReason);
    return stop;
}

/// The heir gets the focus for the same reason as the row that had it: to who uses the mouse it shows as little. Of a
/// lent focus it inherits the claim.
void LazyColumn::bequeathFocusTo(int heir, bool isLent)
{
    QWidget *stop = stopIn(heir, false);
    if (isLent)
        m_lender = stop;
    else
        (stop ? stop : this)->setFocus(m_focusReason);
}

bool LazyColumn::focusNextPrevChild(bool next)
{
    const QScopedValueRollback<bool> guard(m_isTabbingWithin, focusedIndex() >= 0);
    return QAbstractScrollArea::focusNextPrevChild(next);
}

bool LazyColumn::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusOut) {
        m_lender = isLoan(*static_cast<QFocusEvent *>(event)) ? static_cast<QWidget *>(watched) : nullptr;
    } else if (event->type() == QEvent::FocusIn) {
        const auto &focusIn = *static_cast<QFocusEvent *>(event);
        m_lender = nullptr;
        if (!isLoan(focusIn))
            m_focusReason = focusIn.reason();
        if (!m_isLayingOut)
            focusReached(watched, focusIn.reason());
    }
    return QAbstractScrollArea::eventFilter(watched, event);
}

/// A lent focus comes back to the column itself when the widget that lent it is gone.
void LazyColumn::focusInEvent(QFocusEvent *event)
{
    QAbstractScrollArea::focusInEvent(event);
    QWidget *heir = std::exchange(m_lender, nullptr);
    if (heir && isLoan(*event)) {
        const QScopedValueRollback<bool> guard(m_isLayingOut, true);
        heir->setFocus(m_focusReason);
    }
}

void LazyColumn::focusReached(const QObject *widget, Qt::FocusReason reason)
{
    const Row *row = rowHolding(widget);
    if (!row)
        return;
    const bool isForward = reason == Qt::TabFocusReason;
    const bool isBackward = reason == Qt::BacktabFocusReason;
    if ((isForward || isBackward) && !m_isTabbingWithin) {
        // Tab comes in from outside: it lands where the reader looks, not on a row that happens to be built.
        const int seen = isForward ? firstFullyVisible() : lastFullyVisible();
        if (seen != row->index && focusInto(seen, isBackward))
            return;
    }
    // What the mouse presses must not move away under it, nor what was focused when the window comes back.
    if (reason != Qt::MouseFocusReason && reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason)
        reveal(row->index);
    buildRows(focusedIndex(), false);
}

/// Scrolls no further than needed to show the whole row.
void LazyColumn::reveal(int index)
{
    const int highest = topOf(index) - m_padding;
    const int lowest = topOf(index) + m_rowHeight + m_padding - viewport()->height();
    const int value = std::min(std::max(scrollPosition(), lowest), highest);
    verticalScrollBar()->setValue(value);
}

void LazyColumn::moveFocusTo(int index)
{
    const int target = std::clamp(index, 0, m_count - 1);
    reveal(target);
    focusInto(target, false);
}

void LazyColumn::keyPressEvent(QKeyEvent *event)
{
    const int focused = focusedIndex();
    const int page = std::max(1, viewport()->height() / std::max(1, rowStep()));
    struct Move
    {
        int key;
        int target;
        QAbstractSlider::SliderAction action;
    };
    const Move moves[] = {
        {Qt::Key_Up, focused - 1, QAbstractSlider::SliderSingleStepSub},
        {Qt::Key_Down, focused + 1, QAbstractSlider::SliderSingleStepAdd},
        {Qt::Key_PageUp, focused - page, QAbstractSlider::SliderPageStepSub},
        {Qt::Key_PageDown, focused + page, QAbstractSlider::SliderPageStepAdd},
        {Qt::Key_Home, 0, QAbstractSlider::SliderToMinimum},
        {Qt::Key_End, m_count - 1, QAbstractSlider::SliderToMaximum},
    };
    const auto move =
        std::find_if(std::begin(moves), std::end(moves), [event](const Move &m) { return m.key == event->key(); });
    if (move == std::end(moves) || (event->modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier || m_count == 0)
        return event->ignore();
    if (focused >= 0)
        moveFocusTo(move->target);
    else
        verticalScrollBar()->triggerAction(move->action);
}

} // namespace ambrel
