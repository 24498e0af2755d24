// What becomes of a LazyColumn when its list changes: first a plan is made from the rows as they are and the list as it
// is now, then it is carried out.
#include "toolkit/LazyColumn.h"

#include <QHash>
#include <QScopedValueRollback>
#include <algorithm>

namespace ambrel {

/// Finds entries of the changed list by the ids that the rows show.
class LazyColumn::EntryFinder
{
public:
    EntryFinder(const LazyColumnSource &source, const std::vector<Row> &rows) : m_source(source), m_rows(rows) {}

    /// The entry with this id that is nearest to `around`, -1 if there is none.
    int nearest(const QString &id, int around)
    {
        // Most changes move a row by a few places; only if it has gone further is the whole list looked through, once.
        constexpr int fewPlaces = 64;
        const int count = m_source.count();
        for (int distance = 0; distance <= fewPlaces; ++distance) {
            for (const int index : {around - distance, around + distance}) {
                if (index >= 0 && index < count && m_source.idAt(index) == id)
                    return index;
            }
        }
        if (m_entries.isEmpty())
            readAll(count);
        const std::vector<int> &entries = m_entries[id];
        const auto after = std::lower_bound(entries.begin(), entries.end(), around);
        if (after == entries.begin())
            return entries.empty() ? -1 : entries.front();
        const int before = *std::prev(after);
        return after != entries.end() && *after - around < around - before ? *after : before;
    }

private:
    void readAll(int count)
    {
        for (const Row &row : m_rows)
            m_entries.insert(row.id, {});
        for (int index = 0; index < count; ++index) {
            if (const auto entry = m_entries.find(m_source.idAt(index)); entry != m_entries.end())
                entry->push_back(index);
        }
    }

    const LazyColumnSource &m_source;
    const std::vector<Row> &m_rows;
    QHash<QString, std::vector<int>> m_entries; // of each id that a row shows, in order
};

void LazyColumn::refresh()
{
    const QScopedValueRollback<bool> guard(m_isLayingOut, true);
    const Plan plan = planRefresh();

    m_count = m_source.count();
    std::erase_if(m_rows, [&plan](const Row &row) { return row.widget == plan.leaving; });
    place(plan.anchor);
    showRows(plan.focused, true);
    if (!plan.leaving)
        return;
    passFocusOn(plan);
    plan.leaving->hide();
    plan.leaving->deleteLater(); // it may be in the middle of an event of its own
    if (plan.focused.index >= 0 && plan.wasLeavingRowOnScreen) {
        revealRow(plan.focused.index);
        showRows(focusedEntry(), false);
    }
}

/// Reads the old rows and the new list, and changes nothing.
LazyColumn::Plan LazyColumn::planRefresh() const
{
    EntryFinder entries(m_source, m_rows);
    const FocusedEntry focused = focusedEntry();
    Plan plan;
    plan.isFocusElsewhere = isFocusElsewhere();
    plan.anchor = scrollPosition() == 0 && !focused.row ? Anchor{0, m_padding} : anchorAmong(entries);
    if (!focused.row)
        return plan;
    plan.focused = {entries.nearest(rowAt(focused.index)->id, focused.index), focused.row};
    if (plan.focused.index < 0) {
        plan.leaving = focused.row;
        plan.wasLeavingRowOnScreen = isOnScreen(focused.index);
        plan.focused = {successorOf(focused.index, entries), nullptr};
    }
    return plan;
}

/// The first row on screen that is still listed keeps its place; without one the column stays at the same pixel.
LazyColumn::Anchor LazyColumn::anchorAmong(EntryFinder &entries) const
{
    for (const Row &row : m_rows) {
        const int index = isOnScreen(row.index) ? entries.nearest(row.id, row.index) : -1;
        if (index >= 0)
            return {index, topOf(row.index) - scrollPosition()};
    }
    return currentAnchor();
}

/// Who takes the focus when the row at `lostIndex` is gone: the row after it, else the one before, else whoever is
/// nearest to that place; -1 in an empty list.
int LazyColumn::successorOf(int lostIndex, EntryFinder &entries) const
{
    for (const int neighbour : {lostIndex + 1, lostIndex - 1}) {
        const Row *row = rowAt(neighbour);
        const int index = row ? entries.nearest(row->id, neighbour) : -1;
        if (index >= 0)
            return index;
    }
    return std::min(lostIndex, m_source.count() - 1);
}

} // namespace ambrel
