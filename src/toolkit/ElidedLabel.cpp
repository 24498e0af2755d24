#include "toolkit/ElidedLabel.h"

#include <QHelpEvent>
#include <QToolTip>
#include <algorithm>

namespace ambrel {

namespace {

/// As much of a plain text as a tooltip has room for. It is marked up, because a tooltip takes some texts for markup.
QString toolTipFor(const QString &text)
{
    constexpr int maxWidth = 360;
    constexpr int maxLines = 12;
    const QString lines = TextLines::elided(text, QToolTip::font(), maxWidth, maxLines).shownLines().join(u'\n');
    return QStringLiteral("<p style=\"white-space: pre\">") + lines.toHtmlEscaped() + QStringLiteral("</p>");
}

} // namespace

ElidedLabel::ElidedLabel(const QString &text, QWidget *parent) : TextLabel(text, parent)
{
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void ElidedLabel::setMaximumLines(int lines)
{
    if (m_maximumLines == lines)
        return;
    m_maximumLines = std::max(1, lines);
    QSizePolicy policy(QSizePolicy::Preferred, m_maximumLines > 1 ? QSizePolicy::Preferred : QSizePolicy::Fixed);
    policy.setHeightForWidth(m_maximumLines > 1);
    setSizePolicy(policy);
    relayOut();
}

bool ElidedLabel::event(QEvent *event)
{
    if (event->type() != QEvent::ToolTip || !isCut())
        return TextLabel::event(event);
    QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(), toolTipFor(text()), this);
    return true;
}

TextLines ElidedLabel::breakLines(int width) const
{
    return TextLines::elided(text(), font(), width, m_maximumLines);
}

} // namespace ambrel
