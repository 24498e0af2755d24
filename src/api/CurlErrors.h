#pragma once

#include <QString>
#include <curl/curl.h>

namespace ambrel {

/// The sentence for an exchange that ended with `code`; CURLE_OK has none. Any thread.
QString sentenceFor(CURLcode code);

/// The sentence for a connection that was not made because of `systemError`, an errno value. Any thread.
QString connectSentenceFor(long systemError);

} // namespace ambrel
