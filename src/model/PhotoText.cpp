#include "model/PhotoText.h"

namespace ambrel {

PhotoText::PhotoText(const QString &text) : PhotoText(std::string_view(text.toStdString())) {}

PhotoText::PhotoText(std::string_view text)
{
    if (text.empty())
        return;
    const auto bytes = makeSharedBytes();
    bytes->append(text);
    m_bytes = bytes;
    m_text = bytes->view();
}

PhotoText::PhotoText(std::shared_ptr<const Bytes> reply, std::string_view text)
    : m_bytes(std::move(reply)), m_text(text)
{
}

PhotoText PhotoText::owned() const
{
    return isOwned() ? *this : PhotoText(m_text);
}

} // namespace ambrel
