#include "ui/sidebar/ShownPart.h"

namespace ambrel {

qsizetype cutAt(const QString &text, qsizetype most)
{
    constexpr qsizetype emojiWeight = 100;
    qsizetype cut = 0;
    while (cut < text.size() && most > 0) {
        const bool isPair = text[cut].isHighSurrogate() && cut + 1 < text.size();
        const bool isSelector = text[cut] == QChar(0xfe0f) || text[cut] == QChar(0x20e3); // makes an emoji of a letter
        most -= isPair || isSelector ? emojiWeight : 1;
        cut += isPair ? 2 : 1;
    }
    return cut;
}

} // namespace ambrel
