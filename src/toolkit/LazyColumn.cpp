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
        showRows(focusedEntry(), false);
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

bool LazyColumn::isOnScreen(int index) const
{
    return index >= firstVisible() && topOf(index) < scrollPosition() + viewport()->height();
}

bool LazyColumn::isWhollyOnScreen(int index) const
{
    const int top = topOf(index) - scrollPosition();
    return top >= 0 && top + m_rowHeight <= viewport()->height();
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
    if (m_count == 0)
        return;
    if (m_rows.empty()) {
        if (m_source.count() == 0)
            return;
        std::vector<Row> none;
        m_rows.push_back(recycleOrMakeRow(none));
        m_source.bindRow(m_rows.front().widget, 0);
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
    showRows(focusedEntry(), false);
}

/// What is on screen, half a screen before and after it, and the focused row with its neighbours, one of which takes
/// the focus over when it leaves the list.
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

/// Gives each wanted entry a row: the one that shows its id already, else one that is no longer wanted, else a new one.
void LazyColumn::showRows(FocusedEntry focused, bool bindsAll)
{
    std::vector<Row> spares = std::exchange(m_rows, {});
    const std::vector<int> wanted = wantedIndexes(focused.index);
    for (const int index : wanted)
        m_rows.push_back(takeRowFor(index, focused, spares));
    if (!mayRecycle(*verticalScrollBar()))
        retire(std::exchange(spares, {}));

    bool isNewOrder = bindsAll;
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        Row &row = m_rows[i];
        const bool isFound = row.widget;
        if (!isFound) {
            const QString id = row.id;
            row = recycleOrMakeRow(spares);
            row.id = id;
        }
        const int before = std::exchange(row.index, wanted[i]);
        if (bindsAll || !isFound || before != wanted[i])
            m_source.bindRow(row.widget, wanted[i]);
        row.widget->setGeometry(0, topOf(row.index) - scrollPosition(), viewport()->width(), m_rowHeight);
        row.widget->show();
        isNewOrder = isNewOrder || !isFound;
    }
    retire(spares);
    if (isNewOrder)
        restack();
}

/// Takes the row out of `rows` that keeps showing entry `index`: the focused one if that is the focused entry, else the
/// nearest with its id. Has the id, but no widget, if there is none.
LazyColumn::Row LazyColumn::takeRowFor(int index, FocusedEntry focused, std::vector<Row> &rows) const
{
    const QString id = m_source.idAt(index);
    auto nearest = rows.end();
    for (auto row = rows.begin(); row != rows.end(); ++row) {
        const bool isMine = focused.row && (index == focused.index || row->widget == focused.row)
                                ? index == focused.index && row->widget == focused.row
                                : row->id == id;
        if (isMine && (nearest == rows.end() || std::abs(row->index - index) < std::abs(nearest->index - index)))
            nearest = row;
    }
    Row taken;
    taken.id = id;
    if (nearest != rows.end()) {
        taken = std::move(*nearest);
        rows.erase(nearest);
    }
    return taken;
}

/// In a new row Tab stops at nothing until one of its controls becomes the tab stop.
LazyColumn::Row LazyColumn::recycleOrMakeRow(std::vector<Row> &spares)
{
    Row row;
    if (!spares.empty()) {
        row = std::move(spares.back());
        spares.pop_back();
        if (std::count(row.controls.begin(), row.controls.end(), m_tabStop))
            setTabStop(nullptr);
        return row;
    }
    row.widget = m_source.makeRow(viewport());
    for (QWidget *widget : QList<QWidget *>{row.widget} + row.widget->findChildren<QWidget *>()) {
        if (!(widget->focusPolicy() & Qt::TabFocus))
            continue;
        row.controls.push_back(widget);
        widget->setFocusPolicy(Qt::FocusPolicy(widget->focusPolicy() & ~Qt::TabFocus));
        widget->installEventFilter(this);
    }
    return row;
}

/// Brings the order in which screen readers meet the rows into visual order, and finds Tab a stop where it has none.
void LazyColumn::restack()
{
    qsizetype position = -1;
    for (const Row &row : m_rows) {
        const qsizetype own = viewport()->children().indexOf(row.widget);
        if (own < position)
            row.widget->raise();
        position = own < position ? viewport()->children().size() : own;
    }
    const Row *const row = rowHolding(m_tabStop);
    if (!row || !m_tabStop->isVisibleTo(row->widget))
        setTabStop(controlIn(row ? row->index : std::min(firstVisible(), m_count - 1)));
}

/// Rows may be in the middle of an event of their own, so they go when that is over.
void LazyColumn::retire(const std::vector<Row> &rows)
{
    for (const Row &row : rows) {
        row.widget->hide();
        row.widget->deleteLater();
    }
}

} // namespace ambrel
