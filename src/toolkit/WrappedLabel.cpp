#include "toolkit/WrappedLabel.h"

namespace ambrel {

namespace {

constexpr qsizetype maxCharacters = 2000;

} // namespace

WrappedLabel::WrappedLabel(const QString &text, QWidget *parent) : TextLabel(text, parent)
{
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

void WrappedLabel::setShowsEverything(bool everything)
{
    m_showsEverything = everything;
    relayOut();
}

TextLines WrappedLabel::breakLines(int width) const
{
    const bool isCut = !m_showsEverything && text().size() > maxCharacters;
    return TextLines::wrapped(isCut ? text().left(maxCharacters) + u'\u2026' : text(), font(), width);
}

} // namespace ambrel
