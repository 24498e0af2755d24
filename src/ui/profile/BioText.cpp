#include "ui/profile/BioText.h"

#include "toolkit/WrappedLabel.h"
#include "ui/look/TextStyling.h"

#include <QResizeEvent>
#include <QTimer>
#include <algorithm>

namespace ambrel {

namespace {

/// What is laid out in one go, in about three milliseconds. Honest biographies are shorter.
constexpr qsizetype pieceCharacters = 2000;

/// Where the piece that begins at `start` ends: the whole rest, or after a line break, or else after a word.
qsizetype pieceEnd(const QString &text, qsizetype start)
{
    if (text.size() - start <= pieceCharacters)
        return text.size();
    const qsizetype limit = start + pieceCharacters;
    for (const QChar separator : {QChar(u'\n'), QChar(u' ')}) {
        const qsizetype last = text.lastIndexOf(separator, limit - 1);
        if (last >= start + pieceCharacters / 2)
            return last + 1;
    }
    return text[limit].isLowSurrogate() ? limit - 1 : limit;
}

} // namespace

BioText::BioText(QWidget *parent) : QWidget(parent)
{
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

void BioText::setText(const QString &text)
{
    if (text == m_text)
        return;
    m_text = text;
    m_shown = 0;
    m_height = 0;
    qDeleteAll(m_pieces);
    m_pieces.clear();
    showNextPiece();
}

void BioText::showNextPiece()
{
    const qsizetype end = pieceEnd(m_text, m_shown);
    QString characters = m_text.mid(m_shown, end - m_shown);
    if (end < m_text.size() && characters.endsWith(u'\n'))
        characters.chop(1); // the next piece begins a line anyway
    m_shown = end;

    auto *const piece = new WrappedLabel(characters, this);
    piece->setShowsEverything(true);
    piece->setAlignment(topLeftInEveryScript);
    styleText(*piece, theme::TextStyle::Body);
    m_pieces.append(piece);
    place(piece);
    piece->show();
    updateGeometry();
    if (m_shown < m_text.size())
        QTimer::singleShot(0, piece, [this] { showNextPiece(); }); // dies with the piece, when the text changes
}

// A layout would measure all pieces again whenever one is added.
void BioText::place(WrappedLabel *piece)
{
    const int height = piece->heightForWidth(width());
    piece->setGeometry(0, m_height, width(), height);
    m_height += height;
}

/// A piece whose fonts have been found meanwhile may have another height.
bool BioText::event(QEvent *event)
{
    const auto asksForRoom = [this](const WrappedLabel *piece) {
        return piece->height() != piece->heightForWidth(width());
    };
    if (event->type() == QEvent::LayoutRequest && std::any_of(m_pieces.cbegin(), m_pieces.cend(), asksForRoom))
        placeAll();
    return QWidget::event(event);
}

void BioText::resizeEvent(QResizeEvent *event)
{
    if (event->size().width() != event->oldSize().width())
        placeAll();
}

void BioText::placeAll()
{
    m_height = 0;
    for (WrappedLabel *const piece : m_pieces)
        place(piece);
    updateGeometry();
}

QSize BioText::sizeHint() const
{
    return {0, m_height};
}

int BioText::heightForWidth(int wantedWidth) const
{
    // Layouts try several widths: an estimate does until one of them is given, and then resizeEvent measures.
    const qint64 area = qint64(m_height) * width();
    return wantedWidth == width() ? m_height : int(std::min<qint64>(area / std::max(1, wantedWidth), QWIDGETSIZE_MAX));
}

} // namespace ambrel
