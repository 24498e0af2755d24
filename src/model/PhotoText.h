#pragma once

#include "model/Bytes.h"

#include <QString>
#include <memory>
#include <string_view>

namespace ambrel {

/// The text of one photo, held as the UTF-8 bytes of the reply it came in. Copies share those bytes, and a photo
/// cut out of a reply keeps that whole reply alive until it is `owned()`. Immutable; safe on any thread.
class PhotoText
{
public:
    PhotoText() = default;
    /// Owns a copy of `text`.
    explicit PhotoText(const QString &text);
    explicit PhotoText(std::string_view text);
    /// A slice of `reply`; `text` must point into it.
    PhotoText(std::shared_ptr<const Bytes> reply, std::string_view text) : m_bytes(std::move(reply)), m_text(text) {}

    std::string_view view() const { return m_text; }
    bool isEmpty() const { return m_text.empty(); }
    /// True when nothing but this text is kept alive by it.
    bool isOwned() const { return !m_bytes || m_bytes->size() == m_text.size(); }
    /// The same text with bytes of its own. Copies megabytes: not for the main thread.
    PhotoText owned() const { return isOwned() ? *this : PhotoText(m_text); }
    /// True when both are known to be equal without looking at the bytes.
    bool isSameAs(const PhotoText &other) const
    {
        return m_text.data() == other.m_text.data() && m_text.size() == other.m_text.size();
    }

    friend bool operator==(const PhotoText &a, const PhotoText &b) { return a.isSameAs(b) || a.m_text == b.m_text; }

private:
    std::shared_ptr<const Bytes> m_bytes;
    std::string_view m_text;
};

} // namespace ambrel
