#include "toolkit/ElidedLabel.h"

#include <algorithm>

namespace ambrel {

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

TextLines ElidedLabel::breakLines(int width) const
{
    return TextLines::elided(text(), font(), width, m_maximumLines);
}

} // namespace ambrel
