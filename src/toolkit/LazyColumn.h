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
    /// A new row widget with `parent` as its parent; the column owns it from then on. What Tab would stop at in it when
    /// it is returned are its controls, and lives as long as it does.
    virtual QWidget *makeRow(QWidget *parent) = 0;
    /// Shows entry `index` in `row`. Called at every refresh: touch only what differs.
    virtual void bindRow(QWidget *row, int index) = 0;
};

/// A vertically scrolling column of rows, all as high as the first one wants to be, with widgets only for the rows on
/// screen and about a screenful around them. Row widgets are recycled for other entries as the column scrolls; the row
/// that has the focus never is.
///
/// To Tab the column is one stop, at the control that had the focus last. Up, Down, Page Up, Page Down, Home and End go
/// to the same control of another row, Left and Right to the other controls of the row.
///
/// When a popup, a layer (Qt::PopupFocusReason) or another window takes the focus for a while, the column treats the
/// row that had it as if it still had it, and hands it back to that row, or to the one that took its place, when the
/// column itself is given the focus for the same reason. The background is transparent. Main thread only.
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

    /// Scrolls no further than needed to show the whole row that holds `widget`.
    void reveal(const QWidget &widget);

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
        std::vector<QWidget *> controls;
    };

    /// A row that is to keep its place: entry `index` stands `offset` pixels below the top of the viewport.
    struct Anchor
    {
        int index = 0;
        int offset = 0;
    };

    /// The entry that has the focus, or gets it back, and its row; -1 and null if none does.
    struct FocusedEntry
    {
        int index = -1;
        QWidget *row = nullptr;
    };

    /// What a refresh makes of the rows. All indexes are those of the changed list.
    struct Plan
    {
        Anchor anchor;
        FocusedEntry focused;       // without a row if it takes over from the one that leaves
        QWidget *leaving = nullptr; // the row that had the focus
        bool wasLeavingRowOnScreen = false;
        bool isFocusElsewhere = false; // for a while
    };

    class EntryFinder;

    // Geometry, in pixels of the whole column.
    int rowStep() const { return m_rowHeight + m_spacing; }
    int topOf(int index) const { return m_padding + index * rowStep(); }
    int contentHeight() const;
    int scrollPosition() const;
    int firstVisible() const;
    bool isOnScreen(int index) const;
    bool isWhollyOnScreen(int index) const;
    Anchor currentAnchor() const;
    void measureRow();
    void place(Anchor anchor);
    void layOutAgain();

    // Which entries have a row widget.
    std::vector<int> wantedIndexes(int focusedIndex) const;
    void showRows(FocusedEntry focused, bool bindsAll);
    Row takeRowFor(int index, FocusedEntry focused, std::vector<Row> &rows) const;
    Row recycleOrMakeRow(std::vector<Row> &spares);
    void restack();
    static void retire(const std::vector<Row> &rows);

    // Changes of the list (LazyColumnRefresh.cpp).
    Plan planRefresh() const;
    Anchor anchorAmong(EntryFinder &entries) const;
    int successorOf(int lostIndex, EntryFinder &entries) const;

    // Focus (LazyColumnFocus.cpp).
    FocusedEntry focusedEntry() const;
    bool isFocusElsewhere() const;
    const Row *rowHolding(const QObject *object) const;
    const Row *rowAt(int index) const;
    QWidget *controlIn(int index, int position = 0) const;
    void setTabStop(QWidget *control);
    void passFocusOn(const Plan &plan);
    void focusReached(QWidget *control, Qt::FocusReason reason);
    bool handleKey(const QKeyEvent &key);
    void moveFocusTo(int index, int position);
    static void moveFocusWithin(const Row &row, int position, int step);
    void revealRow(int index);

    LazyColumnSource &m_source;
    std::vector<Row> m_rows; // in visual order
    int m_count = 0;
    int m_spacing = 0;
    int m_padding = 0;
    int m_rowHeight = 0;
    int m_measuredWidth = -1;
    bool m_isLayingOut = false;
    QPointer<QWidget> m_tabStop;                          ///< the one control in a row that Tab stops at
    Qt::FocusReason m_focusReason = Qt::OtherFocusReason; ///< for which a row got the focus
    QPointer<QWidget> m_focusReturn;                      ///< the control in a row that is to get the focus back
};

} // namespace ambrel
