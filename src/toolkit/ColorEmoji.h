#pragma once

#include <QTextLayout>

class QTextDocument;

namespace ambrel {

/// The family that draws emoji in colour, where it is installed.
QString emojiFamily();

/// Makes that family, and no other for any part of it, draw each emoji of `text` that asks for its emoji form: with a
/// selector or a skin tone, as a keycap, or joined with others. Left to itself the toolkit takes character by character
/// from the first font that has it, which is a text font for many. Main thread.
QList<QTextLayout::FormatRange> emojiFormats(const QString &text);

/// Keeps the emoji of a document that way while it is edited. Main thread.
void showEmojiInColor(QTextDocument &document);

} // namespace ambrel
