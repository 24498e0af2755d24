#pragma once

#include <QList>
#include <QWidget>

namespace ambrel {

class WrappedLabel;

/// A biography, shown whole however long it is. Its beginning stands there at once; the rest of a very long one
/// follows piece by piece, so that the window never waits for it. Main thread only.
class BioText : public QWidget
{
    Q_OBJECT

public:
    explicit BioText(QWidget *parent = nullptr);

    /// The text, as it was set.
    QString text() const { return m_text; }
    /// Shows another text; does nothing if it is the same.
    void setText(const QString &text);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }
    int heightForWidth(int wantedWidth) const override;

protected:
    bool event(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void showNextPiece();
    void place(WrappedLabel *piece);
    void placeAll();

    QString m_text;
    qsizetype m_shown = 0; ///< how many characters stand there already
    QList<WrappedLabel *> m_pieces;
    int m_height = 0; ///< of all pieces at the present width
};

} // namespace ambrel
