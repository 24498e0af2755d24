#pragma once

#include "toolkit/TextLines.h"

#include <QWidget>
#include <array>

namespace ambrel {

/// What the labels have in common: plain text in the widget's font and in the palette's colour for its foreground role.
/// Screen readers meet it as static text named for its text. Main thread only.
class TextLabel : public QWidget
{
    Q_OBJECT

public:
    /// The text, as it was set.
    QString text() const { return m_text; }
    /// Shows another text; does nothing if it is the same. Lays the surroundings out again only if the size changes.
    void setText(const QString &text);
    /// Where the text stands in the label; leading and vertically centred at first. Leading follows the direction of
    /// the text unless Qt::AlignAbsolute is set.
    void setAlignment(Qt::Alignment alignment);
    /// How many characters have been laid out since the text was set: the work that the text has cost.
    qsizetype laidOutCharacters() const { return m_laidOutCharacters; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    int heightForWidth(int width) const override;

protected:
    explicit TextLabel(QString text, QWidget *parent);

    /// The text broken for `width` pixels.
    virtual TextLines breakLines(int width) const = 0;
    /// Whether less than the whole text is shown.
    bool isCut() const;
    /// Forgets what was measured, after anything but the text has changed.
    void relayOut();

    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    struct Measured
    {
        int width = -1;
        TextLines lines;
    };

    const TextLines &linesAt(int wanted) const;
    void forgetLines();

    QString m_text;
    Qt::Alignment m_alignment = Qt::AlignLeading | Qt::AlignVCenter;
    mutable std::array<Measured, 2> m_measured; // layouts ask for a wanted and for the actual width in turn
    mutable bool m_waitsForFonts = false;
    mutable qsizetype m_laidOutCharacters = 0;
};

} // namespace ambrel
