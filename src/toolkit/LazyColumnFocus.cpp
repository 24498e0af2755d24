// Focus in a LazyColumn: widgets come and go, yet the keys see one long list.
#include "toolkit/LazyColumn.h"

#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <algorithm>
#include <utility>

namespace ambrel {

namespace {

/// Whether the focus goes only for a while, or comes back: to and from a popup, a layer or another window.
bool isForAWhile(const QFocusEvent &event)
{
    return event.reason() == Qt::PopupFocusReason || event.reason() == Qt::ActiveWindowFocusReason;
}

/// Whether a control of `row` can have the focus. A row that is disabled together with all around it counts as it will
/// be afterwards.
bool isUsable(const QWidget &control, const QWidget &row)
{
    return control.isEnabledTo(row.parentWidget()) && control.isVisibleTo(&row);
}

} // namespace

LazyColumn::FocusedEntry LazyColumn::focusedEntry() const
{
    const Row *row = rowHolding(window()->focusWidget());
    if (!row)
        row = rowHolding(m_focusReturn);
    return row ? FocusedEntry{row->index, row->widget} : FocusedEntry{};
}

bool LazyColumn::isFocusElsewhere() const
{
    return rowHolding(m_focusReturn) && !rowHolding(window()->focusWidget());
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

/// The control at `position` in the row of entry `index`, or else its first one; null if there is none.
QWidget *LazyColumn::controlIn(int index, int position) const
{
    const Row *const row = rowAt(index);
    const std::vector<QWidget *> none;
    const std::vector<QWidget *> &controls = row ? row->controls : none;
    const auto canHaveFocus = [row](const QWidget *control) { return isUsable(*control, *row->widget); };
    if (position < int(controls.size()) && canHaveFocus(controls[std::size_t(position)]))
        return controls[std::size_t(position)];
    const auto first = std::find_if(controls.begin(), controls.end(), canHaveFocus);
    return first != controls.end() ? *first : nullptr;
}

void LazyColumn::setTabStop(QWidget *control)
{
    if (m_tabStop)
        m_tabStop->setFocusPolicy(Qt::FocusPolicy(m_tabStop->focusPolicy() & ~Qt::TabFocus));
    m_tabStop = control;
    if (control) {
        control->setFocusPolicy(Qt::FocusPolicy(control->focusPolicy() | Qt::TabFocus));
        setTabOrder(this, control);
    }
}

/// The entry that takes over gets the focus for the same reason as the row that leaves: to who uses the mouse it shows
/// as little.
void LazyColumn::passFocusOn(const Plan &plan)
{
    QWidget *const control = controlIn(plan.focused.index);
    if (plan.isFocusElsewhere)
        m_focusReturn = control;
    else
        (control ? control : this)->setFocus(m_focusReason);
}

/// A control that is hidden or disabled while it has the focus passes it on within its row, not out of the column.
bool LazyColumn::focusNextPrevChild(bool next)
{
    const QWidget *const focused = window()->focusWidget();
    const Row *const row = rowHolding(focused);
    QWidget *const instead = row && !isUsable(*focused, *row->widget) ? controlIn(row->index) : nullptr;
    if (!instead)
        return QAbstractScrollArea::focusNextPrevChild(next);
    instead->setFocus(m_focusReason);
    return true;
}

bool LazyColumn::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress) // before a button takes the arrow keys for its own
        return handleKey(*static_cast<QKeyEvent *>(event));
    if (event->type() == QEvent::FocusOut) {
        m_focusReturn = isForAWhile(*static_cast<QFocusEvent *>(event)) ? static_cast<QWidget *>(watched) : nullptr;
    } else if (event->type() == QEvent::FocusIn) {
        const auto &focusIn = *static_cast<QFocusEvent *>(event);
        m_focusReturn = nullptr;
        if (!isForAWhile(focusIn))
            m_focusReason = focusIn.reason();
        focusReached(static_cast<QWidget *>(watched), focusIn.reason());
    }
    return QAbstractScrollArea::eventFilter(watched, event);
}

/// The column itself is given the focus when the widget that is to get it back is no longer known outside.
void LazyColumn::focusInEvent(QFocusEvent *event)
{
    QAbstractScrollArea::focusInEvent(event);
    QWidget *const control = std::exchange(m_focusReturn, nullptr);
    if (control && isForAWhile(*event)) {
        const QScopedValueRollback<bool> guard(m_isLayingOut, true);
        control->setFocus(m_focusReason);
    }
}

void LazyColumn::focusReached(QWidget *control, Qt::FocusReason reason)
{
    const Row *const row = rowHolding(control);
    if (!row)
        return;
    const int index = row->index;
    const bool isByTab = reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason;
    if (isByTab && !m_isLayingOut && !isWhollyOnScreen(index)) {
        // The stop was scrolled away: the focus lands where the reader looks.
        const int first = firstVisible();
        QWidget *const seen = controlIn(isWhollyOnScreen(first) ? first : std::min(first + 1, m_count - 1));
        if (seen && seen != control)
            return seen->setFocus(Qt::OtherFocusReason);
    }
    setTabStop(control);
    if (m_isLayingOut)
        return;
    // What the mouse presses must not move away under it, nor what was focused when the window comes back.
    if (reason != Qt::MouseFocusReason && reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason)
        revealRow(index);
    showRows(focusedEntry(), false);
}

void LazyColumn::reveal(const QWidget &widget)
{
    if (const Row *const row = rowHolding(&widget))
        revealRow(row->index);
}

void LazyColumn::revealRow(int index)
{
    const int highest = topOf(index) - m_padding;
    const int lowest = topOf(index) + m_rowHeight + m_padding - viewport()->height();
    verticalScrollBar()->setValue(std::min(std::max(scrollPosition(), lowest), highest));
}

void LazyColumn::moveFocusTo(int index, int position)
{
    const int target = std::clamp(index, 0, m_count - 1);
    revealRow(target);
    if (QWidget *const control = controlIn(target, position))
        control->setFocus(Qt::OtherFocusReason);
}

/// To the next control of the row that can have the focus, in the direction of `step`, if there is one.
void LazyColumn::moveFocusWithin(const Row &row, int position, int step)
{
    for (int next = position + step; next >= 0 && next < int(row.controls.size()); next += step) {
        QWidget *const control = row.controls[std::size_t(next)];
        if (isUsable(*control, *row.widget))
            return control->setFocus(Qt::OtherFocusReason);
    }
}

/// Moves the focus if a row has it, and scrolls otherwise. Whether `key` does so.
bool LazyColumn::handleKey(const QKeyEvent &key)
{
    if ((key.modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier || m_count == 0)
        return false;
    const QWidget *const focusWidget = window()->focusWidget();
    const Row *const row = rowHolding(focusWidget);
    const int index = row ? row->index : -1;
    const int position =
        row ? int(std::find(row->controls.begin(), row->controls.end(), focusWidget) - row->controls.begin()) : 0;
    if (row && (key.key() == Qt::Key_Left || key.key() == Qt::Key_Right)) {
        moveFocusWithin(*row, position, (key.key() == Qt::Key_Right) == isLeftToRight() ? 1 : -1);
        return true;
    }
    const int page = std::max(1, viewport()->height() / std::max(1, rowStep()));
    struct Move
    {
        int key;
        int target;
        QAbstractSlider::SliderAction action;
    };
    const Move moves[] = {
        {Qt::Key_Up, index - 1, QAbstractSlider::SliderSingleStepSub},
        {Qt::Key_Down, index + 1, QAbstractSlider::SliderSingleStepAdd},
        {Qt::Key_PageUp, index - page, QAbstractSlider::SliderPageStepSub},
        {Qt::Key_PageDown, index + page, QAbstractSlider::SliderPageStepAdd},
        {Qt::Key_Home, 0, QAbstractSlider::SliderToMinimum},
        {Qt::Key_End, m_count - 1, QAbstractSlider::SliderToMaximum},
    };
    const auto move =
        std::find_if(std::begin(moves), std::end(moves), [&key](const Move &m) { return m.key == key.key(); });
    if (move == std::end(moves))
        return false;
    if (row)
        moveFocusTo(move->target, position);
    else
        verticalScrollBar()->triggerAction(move->action);
    return true;
}

void LazyColumn::keyPressEvent(QKeyEvent *event)
{
    event->setAccepted(handleKey(*event));
}

} // namespace ambrel
