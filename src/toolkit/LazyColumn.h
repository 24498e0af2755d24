#pragma once

#include <QAbstractScrollArea>
#include <QPointer>
#include <QString>
#include <vector>

namespace ambrel {

/// The list behind a LazyColumn. Must outlive the column. Main thread only.
class LazyColumnSource
{
public:
    virtual ~LazyColumnSource() = default;

    /// How many rows there are.
    virtual int count() const = 0;
    /// What stays the same of a row when the list around it changes; may occur more than once. Called often: be cheap.
    virtual QString idAt(int index) const = 0;
    /// A new row widget with `parent` as its parent; the column owns it from then on.
    virtual QWidget *makeRow(QWidget *parent) = 0;
    /// Shows entry `index` in `row`. Called at every refresh: touch only what differs.
    virtual void bindRow(QWidget *row, int index) = 0;
};

/// A vertically scrolling column of rows of one height, with widgets only for the rows on screen and about a screenful
/// around them. Row widgets are recycled for other entries as the column scrolls; the row that has the focus never is.
/// A focus that goes for Qt::PopupFocusReason is only lent: the column behaves as if its row still had it, and gives it
/// to whoever has it by right when it comes back to that row or, for the same reason, to the column. The background is
/// transparent. Main thread only.
class LazyColumn : public QAbstractScrollArea
{
    Q_OBJECT

public:
    explicit LazyColumn(LazyColumnSource &source, QWidget *parent = nullptr);

    /// Reads the source again. Rows whose id is still there keep their widget and their focus; the first visible row
    /// keeps its place on screen. A column that rests at its very top without focus inside stays at the top, so that
    /// whoever comes first is seen. When the focused row has left the list, its neighbour takes the focus.
    void refresh();

    /// Pixels between two rows; 0 at first.
    void setSpacing(int pixels);
    /// Pixels above the first and below the last row; 0 at first.
    void setPadding(int pixels);
    /// Height of every row in pixels; 0 (as at first) takes the natural height of the first row.
    void setRowHeight(int pixels);

protected:
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    struct Row
    {
        int index = -1;
        QString id;
        QWidget *widget = nullptr;
    };

    /// A row that is to keep its place: entry `index` stands `offset` pixels below the top of the viewport.
    struct Anchor
    {
        int index = 0;
        int offset = 0;
    };

    // Geometry, in pixels of the whole column.
    int rowStep() const { return m_rowHeight + m_spacing; }
    int topOf(int index) const { return m_padding + index * rowStep(); }
    int contentHeight() const;
    int scrollPosition() const;
    int firstVisible() const;
    int firstFullyVisible() const;
    int lastFullyVisible() const;
    Anchor currentAnchor() const;
    void measureRow();
    void place(Anchor anchor);
    void layOutAgain();

    // Which entries have a row widget.
    std::vector<int> wantedIndexes(int focusedIndex) const;
    void buildRows(int focusedIndex, bool bindAll);
    Row takeOrMakeRow(int index, std::vector<Row> &spares);
    static void retire(const std::vector<Row> &rows);

    // Where the old rows stand in a changed list.
    int indexOfId(const QString &id, int around) const;
    Anchor anchorAfterChange() const;
    int heirOf(int lostIndex) const;
    void adoptNewIndexes(int oldFocusedIndex, int newFocusedIndex);

    // Focus and the order of Tab (LazyColumnFocus.cpp).
    int focusedIndex() const;
    const Row *rowHolding(const QObject *object) const;
    const Row *rowAt(int index) const;
    std::vector<std::vector<QWidget *>> tabStopsByRow() const;
    void threadTabOrder();
    QWidget *stopIn(int index, bool atItsEnd) const;
    bool focusInto(int index, bool atItsEnd);
    bool hasLentFocus() const;
    void bequeathFocusTo(int heir, bool isLent);
    void focusReached(const QObject *widget, Qt::FocusReason reason);
    void moveFocusTo(int index);
    void reveal(int index);

    LazyColumnSource &m_source;
    std::vector<Row> m_rows; // in visual order
    int m_count = 0;
    int m_spacing = 0;
    int m_padding = 0;
    int m_fixedRowHeight = 0;
    int m_rowHeight = 0;
    int m_measuredWidth = -1;
    bool m_isLayingOut = false;
    bool m_isTabbingWithin = false;
    Qt::FocusReason m_focusReason = Qt::OtherFocusReason; ///< for which a row got the focus
    QPointer<QWidget> m_lender;                           ///< the widget in a row to which a lent focus comes back
};

} // namespace ambrel
