#include "toolkit/LazyColumn.h"

#include "toolkit/AccessibleScrollArea.h"

#include <QEvent>
#include <QGuiApplication>
#include <QLayout>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QWheelEvent>
#include <algorithm>
#include <utility>

namespace ambrel {

namespace {

// One notch of a wheel moves three of these.
constexpr int singleStepPixels = 32;

int naturalHeight(QWidget &row, int width)
{
    row.ensurePolished();
    if (QLayout *layout = row.layout())
        layout->activate(); // the layouts within it may still remember another font
    const int wanted = row.hasHeightForWidth() ? row.heightForWidth(width) : row.sizeHint().height();
    return std::clamp(wanted, std::max(1, row.minimumHeight()), row.maximumHeight());
}

// A row that is being pressed must not become somebody else before the release; dragging the scroll bar presses no row.
bool mayRecycle(const QScrollBar &bar)
{
    return QGuiApplication::mouseButtons() == Qt::NoButton || bar.isSliderDown();
}

} // namespace

LazyColumn::LazyColumn(LazyColumnSource &source, QWidget *parent) : QAbstractScrollArea(parent), m_source(source)
{
    AccessibleScrollArea::installOn(*this);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::ClickFocus);
    viewport()->setAutoFillBackground(false);
    verticalScrollBar()->setSingleStep(singleStepPixels);
}

void LazyColumn::setSpacing(int pixels)
{
    m_spacing = pixels;
    layOutAgain();
}

void LazyColumn::setPadding(int pixels)
{
    m_padding = pixels;
    layOutAgain();
}

void LazyColumn::setRowHeight(int pixels)
{
    m_fixedRowHeight = pixels;
    m_measuredWidth = -1;
    layOutAgain();
}

void LazyColumn::refresh()
{
    const QScopedValueRollback<bool> guard(m_isLayingOut, true);
    const int oldFocused = focusedIndex();
    const bool isLent = hasLentFocus();
    const bool staysAtTop = scrollPosition() == 0 && oldFocused < 0;
    const bool focusWasSeen =
        oldFocused >= firstVisible() && topOf(oldFocused) < scrollPosition() + viewport()->height();
    m_count = m_source.count();

    std::vector<Row> lost;
    int newFocused = -1;
    int heir = -1;
    if (const Row *focused = rowAt(oldFocused)) {
        newFocused = indexOfId(focused->id, oldFocused);
        if (newFocused < 0) {
            heir = heirOf(oldFocused);
            lost.push_back(*focused);
        }
    }
    place(staysAtTop ? Anchor{0, m_padding} : anchorAfterChange());
    if (!lost.empty())
        std::erase_if(m_rows, [&lost](const Row &row) { return row.widget == lost.front().widget; });
    adoptNewIndexes(oldFocused, newFocused);
    buildRows(newFocused >= 0 ? newFocused : heir, true);

    if (!lost.empty()) {
        bequeathFocusTo(heir, isLent);
        retire(lost);
        if (heir >= 0 && focusWasSeen) {
            reveal(heir);
            buildRows(heir, false);
        }
    }
}

bool LazyColumn::event(QEvent *event)
{
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        // The rows have their new sizes only after they have been told, too.
        m_measuredWidth = -1;
        QCoreApplication::postEvent(this, new QEvent(QEvent::LayoutRequest));
    }
    if (event->type() == QEvent::LayoutRequest && m_measuredWidth < 0)
        layOutAgain();
    return QAbstractScrollArea::event(event);
}

void LazyColumn::resizeEvent(QResizeEvent *)
{
    layOutAgain();
}

void LazyColumn::scrollContentsBy(int, int)
{
    if (!m_isLayingOut)
        buildRows(focusedIndex(), false);
}

void LazyColumn::wheelEvent(QWheelEvent *event)
{
    if (event->buttons() == Qt::NoButton)
        QAbstractScrollArea::wheelEvent(event);
}

int LazyColumn::contentHeight() const
{
    return m_count == 0 ? 0 : 2 * m_padding + m_count * rowStep() - m_spacing;
}

int LazyColumn::scrollPosition() const
{
    return verticalScrollBar()->value();
}

int LazyColumn::firstVisible() const
{
    return std::max(0, (scrollPosition() - m_padding + m_spacing) / std::max(1, rowStep()));
}

int LazyColumn::firstFullyVisible() const
{
    const int first = firstVisible();
    return std::min(topOf(first) < scrollPosition() ? first + 1 : first, m_count - 1);
}

int LazyColumn::lastFullyVisible() const
{
    const int room = scrollPosition() + viewport()->height() - m_padding + m_spacing;
    return std::clamp(room / std::max(1, rowStep()) - 1, 0, m_count - 1);
}

LazyColumn::Anchor LazyColumn::currentAnchor() const
{
    const int first = firstVisible();
    return {first, topOf(first) - scrollPosition()};
}

void LazyColumn::measureRow()
{
    const int width = viewport()->width();
    if (width == m_measuredWidth)
        return;
    if (m_fixedRowHeight > 0) {
        m_rowHeight = m_fixedRowHeight;
        m_measuredWidth = width;
        return;
    }
    if (m_count == 0)
        return;
    if (m_rows.empty()) {
        if (m_source.count() == 0)
            return;
        std::vector<Row> none;
        m_rows.push_back(takeOrMakeRow(0, none));
    }
    m_rowHeight = naturalHeight(*m_rows.front().widget, width);
    m_measuredWidth = width;
}

/// Adapts the scroll bar to the list and scrolls so that the anchor stands where it stood.
void LazyColumn::place(Anchor anchor)
{
    QScrollBar *bar = verticalScrollBar();
    measureRow();
    bar->setPageStep(std::max(1, viewport()->height() - rowStep() / 4));
    bar->setRange(0, std::max(0, contentHeight() - viewport()->height()));
    bar->setValue(topOf(anchor.index) - anchor.offset);
}

void LazyColumn::layOutAgain()
{
    if (m_isLayingOut)
        return;
    const QScopedValueRollback<bool> guard(m_isLayingOut, true);
    Anchor anchor = currentAnchor();
    if (scrollPosition() == 0)
        anchor = {0, m_padding};
    place(anchor);
    buildRows(focusedIndex(), false);
}

/// What is on screen, half a screen before and after it, and the focused row with its neighbours, so that Tab finds
/// a widget to go to.
std::vector<int> LazyColumn::wantedIndexes(int focusedIndex) const
{
    const int end = std::min(m_count, m_source.count()); // the list may have changed since the last refresh
    const int onScreen = viewport()->height() / std::max(1, rowStep()) + 1;
    const int around = (onScreen + 1) / 2;
    std::vector<int> wanted;
    const auto addRange = [&wanted, end](int from, int to) {
        for (int index = std::max(0, from); index <= std::min(to, end - 1); ++index)
            wanted.push_back(index);
    };
    addRange(firstVisible() - around, firstVisible() + onScreen + around);
    if (focusedIndex >= 0)
        addRange(focusedIndex - 1, focusedIndex + 1);
    std::sort(wanted.begin(), wanted.end());
    wanted.erase(std::unique(wanted.begin(), wanted.end()), wanted.end());
    return wanted;
}

void LazyColumn::buildRows(int focusedIndex, bool bindAll)
{
    const std::vector<int> wanted = wantedIndexes(focusedIndex);
    std::vector<Row> before = std::exchange(m_rows, {});
    const auto firstSpare = std::stable_partition(before.begin(), before.end(), [&wanted](const Row &row) {
        return std::binary_search(wanted.begin(), wanted.end(), row.index);
    });
    std::vector<Row> spares(firstSpare, before.end());
    before.erase(firstSpare, before.end());
    if (!mayRecycle(*verticalScrollBar()))
        retire(std::exchange(spares, {}));

    bool isNewOrder = bindAll;
    for (const int index : wanted) {
        const auto kept =
            std::find_if(before.begin(), before.end(), [index](const Row &row) { return row.index == index; });
        const bool isKept = kept != before.end();
        m_rows.push_back(isKept ? *kept : takeOrMakeRow(index, spares));
        if (isKept && bindAll)
            m_source.bindRow(m_rows.back().widget, index);
        isNewOrder = isNewOrder || !isKept;
    }
    retire(spares);
    for (const Row &row : m_rows) {
        row.widget->setGeometry(0, topOf(row.index) - scrollPosition(), viewport()->width(), m_rowHeight);
        row.widget->show();
    }
    if (isNewOrder)
        threadTabOrder();
}

LazyColumn::Row LazyColumn::takeOrMakeRow(int index, std::vector<Row> &spares)
{
    Row row;
    if (spares.empty()) {
        row.widget = m_source.makeRow(viewport());
    } else {
        row = spares.back();
        spares.pop_back();
    }
    row.index = index;
    row.id = m_source.idAt(index);
    m_source.bindRow(row.widget, index);
    return row;
}

/// Rows may be in the middle of an event of their own, so they go when that is over.
void LazyColumn::retire(const std::vector<Row> &rows)
{
    for (const Row &row : rows) {
        row.widget->hide();
        row.widget->deleteLater();
    }
}

/// The index of the entry with this id that is nearest to `around`, -1 if there is none.
int LazyColumn::indexOfId(const QString &id, int around) const
{
    const int start = std::clamp(around, 0, std::max(0, m_count - 1));
    for (int distance = 0; distance < m_count; ++distance) {
        if (start - distance >= 0 && m_source.idAt(start - distance) == id)
            return start - distance;
        if (distance > 0 && start + distance < m_count && m_source.idAt(start + distance) == id)
            return start + distance;
    }
    return -1;
}

/// The first row on screen that is still listed keeps its place; without one the column stays at the same pixel.
LazyColumn::Anchor LazyColumn::anchorAfterChange() const
{
    const int bottom = scrollPosition() + viewport()->height();
    for (const Row &row : m_rows) {
        if (row.index < firstVisible() || topOf(row.index) >= bottom)
            continue;
        const int index = indexOfId(row.id, row.index);
        if (index >= 0)
            return {index, topOf(row.index) - scrollPosition()};
    }
    return currentAnchor();
}

/// Who takes the focus when the row at `lostIndex` is gone: the row after it, else the one before, else whoever is
/// nearest to that place; -1 in an empty list.
int LazyColumn::heirOf(int lostIndex) const
{
    for (const int neighbour : {lostIndex + 1, lostIndex - 1}) {
        const Row *row = rowAt(neighbour);
        const int index = row ? indexOfId(row->id, neighbour) : -1;
        if (index >= 0)
            return index;
    }
    return std::min(lostIndex, m_count - 1);
}

/// Gives the row widgets that stay the indexes that their ids have now. Of several with one id the nearest stays.
void LazyColumn::adoptNewIndexes(int oldFocusedIndex, int newFocusedIndex)
{
    std::vector<int> newIndexes(m_rows.size(), -1);
    const auto claim = [&](int index, const auto &isMine) {
        std::size_t best = m_rows.size();
        for (std::size_t i = 0; i < m_rows.size(); ++i) {
            if (newIndexes[i] < 0 && isMine(m_rows[i]) &&
                (best == m_rows.size() || std::abs(m_rows[i].index - index) < std::abs(m_rows[best].index - index)))
                best = i;
        }
        if (best < m_rows.size())
            newIndexes[best] = index;
    };
    if (newFocusedIndex >= 0)
        claim(newFocusedIndex, [oldFocusedIndex](const Row &row) { return row.index == oldFocusedIndex; });
    for (const int index : wantedIndexes(newFocusedIndex)) {
        const QString id = m_source.idAt(index);
        if (index != newFocusedIndex)
            claim(index, [&id](const Row &row) { return row.id == id; });
    }
    for (std::size_t i = 0; i < m_rows.size(); ++i)
        m_rows[i].index = newIndexes[i];
}

} // namespace ambrel
