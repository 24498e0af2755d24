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

} // namespace ambrel
