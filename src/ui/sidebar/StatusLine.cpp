#include "ui/sidebar/StatusLine.h"

#include "toolkit/AnnouncedLabel.h"
#include "toolkit/ClearScrollArea.h"
#include "ui/look/KeyboardScrolling.h"
#include "ui/look/TextStyling.h"

#include <QEvent>
#include <QScrollBar>
#include <algorithm>

namespace ambrel {

StatusLine::StatusLine(QWidget *parent) : QScrollArea(parent), m_text(new AnnouncedLabel(this))
{
    m_text->label().setAlignment(topLeftInEveryScript);
    styleText(m_text->label(), theme::TextStyle::Footnote, theme::secondaryText);
    m_text->label().setAccessibleDescription(QStringLiteral("Status"));
    setAccessibleName(QStringLiteral("Status"));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWidgetResizable(true);
    showThrough(*this, *m_text);
    enableKeyboardScrolling(*this);
    fitText();
}

void StatusLine::setText(const QString &text)
{
    if (text == m_text->label().text())
        return;
    m_text->setText(text);
    verticalScrollBar()->setValue(0);
    fitText();
}

bool StatusLine::event(QEvent *event)
{
    const bool isHandled = QScrollArea::event(event);
    if (event->type() == QEvent::Resize || event->type() == QEvent::FontChange)
        fitText();
    return isHandled;
}

void StatusLine::fitText()
{
    setFixedHeight(std::min(m_text->label().heightForWidth(width()), theme::scaled(theme::maxStatusLineHeight)));
}

} // namespace ambrel
