#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace ambrel {

/// The text in UTF-8, with U+FFFD for every half of a surrogate pair that stands alone: a user ID reads the same in a
/// path and in a body. Pure; any thread.
inline QByteArray repairedUtf8(const QString &text)
{
    if (text.isValidUtf16())
        return text.toUtf8();
    const QList<uint> characters = text.toUcs4(); // which repairs them; UTF-8 would have a question mark
    return QString::fromUcs4(reinterpret_cast<const char32_t *>(characters.data()), characters.size()).toUtf8();
}

} // namespace ambrel
