#include "toolkit/TextLabel.h"

#include "toolkit/AccessibleRole.h"
#include "toolkit/FontSearch.h"

#include <QAccessibleWidget>
#include <QEvent>
#include <QFontMetrics>
#include <QPaintEvent>
#include <QPainter>
#include <algorithm>
#include <utility>

namespace ambrel {

namespace {

// The width that a label asks for ends at this many characters of average width.
constexpr int maxHintCharacters = 80;

class AccessibleLabel : public QAccessibleWidget
{
public:
    explicit AccessibleLabel(QWidget &label) : QAccessibleWidget(&label, QAccessible::StaticText) {}

    QString text(QAccessible::Text kind) const override
    {
        const QString given = QAccessibleWidget::text(kind);
        const bool isName = kind == QAccessible::Name && widget()->accessibleName().isEmpty();
        return isName ? static_cast<const TextLabel *>(widget())->text() : given;
    }
};

} // namespace

TextLabel::TextLabel(QString text, QWidget *parent) : QWidget(parent), m_text(std::move(text))
{
    setAccessibleFactory(*this, [](QWidget &label) { return new AccessibleLabel(label); });
}

void TextLabel::setText(const QString &text)
{
    if (text == m_text)
        return;
    const auto size = [this] { return std::pair(sizeHint(), hasHeightForWidth() ? heightForWidth(width()) : 0); };
    const auto before = size();
    m_text = text;
    m_laidOutCharacters = 0;
    forgetLines();
    if (size() != before)
        updateGeometry();
    update();
    if (QAccessible::isActive()) {
        QAccessibleEvent event(this, QAccessible::NameChanged);
        QAccessible::updateAccessibility(&event);
    }
}

void TextLabel::setAlignment(Qt::Alignment alignment)
{
    m_alignment = alignment;
    update();
}

QSize TextLabel::sizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    const TextLines &lines = linesAt(maxHintCharacters * metrics.averageCharWidth());
    const QMargins margins = contentsMargins();
    return {lines.width() + margins.left() + margins.right(), lines.height() + margins.top() + margins.bottom()};
}

QSize TextLabel::minimumSizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    const QMargins margins = contentsMargins();
    return {metrics.averageCharWidth() + margins.left() + margins.right(),
            metrics.lineSpacing() + margins.top() + margins.bottom()};
}

int TextLabel::heightForWidth(int width) const
{
    const QMargins margins = contentsMargins();
    return linesAt(width - margins.left() - margins.right()).height() + margins.top() + margins.bottom();
}

bool TextLabel::isCut() const
{
    const QString shown = linesAt(contentsRect().width()).shownText();
    return shown.endsWith(u'\u2026') && !m_text.startsWith(shown);
}

void TextLabel::relayOut()
{
    forgetLines();
    updateGeometry();
    update();
}

void TextLabel::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        relayOut();
    QWidget::changeEvent(event);
}

void TextLabel::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    linesAt(contentsRect().width()).draw(painter, contentsRect(), m_alignment, event->rect());
}

const TextLines &TextLabel::linesAt(int wanted) const
{
    const int width = std::max(0, wanted);
    // A text that stands on one line, uncut, does so at any greater width. Layouts try eleven widths for each label of
    // the first frame; this leaves three.
    for (const auto &[knownWidth, lines] : m_measured) {
        if (knownWidth >= 0 && lines.lineCount() == 1 && lines.width() <= width && lines.shownText() == m_text)
            return lines;
    }
    if (m_measured[0].width != width) {
        std::swap(m_measured[0], m_measured[1]);
        if (m_measured[0].width != width) {
            m_measured[0] = {width, breakLines(width)};
            m_laidOutCharacters += m_measured[0].lines.laidOutCharacters();
            if (m_measured[0].lines.waitsForFonts() && !std::exchange(m_waitsForFonts, true))
                connect(&FontSearch::instance(), &FontSearch::goneOn, this, &TextLabel::relayOut);
        }
    }
    return m_measured[0].lines;
}

void TextLabel::forgetLines()
{
    if (std::exchange(m_waitsForFonts, false))
        FontSearch::instance().disconnect(this);
    m_measured = {};
}

} // namespace ambrel
