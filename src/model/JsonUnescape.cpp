#include "model/JsonUnescape.h"

#include <cstring>
#include <string_view>

namespace ambrel {

namespace {

bool holdsOnlyEscapedSolidus(std::string_view text)
{
    for (std::size_t at = text.find('\\'); at != std::string_view::npos; at = text.find('\\', at + 2)) {
        if (at + 1 >= text.size() || text[at + 1] != '/')
            return false;
    }
    return true;
}

} // namespace

std::optional<std::size_t> unescapeSolidusInPlace(char *text, std::size_t length)
{
    if (!holdsOnlyEscapedSolidus({text, length}))
        return std::nullopt;

    const char *read = text;
    const char *const end = text + length;
    char *write = text;
    while (read < end) {
        const void *const found = std::memchr(read, '\\', static_cast<std::size_t>(end - read));
        const char *const stop = found ? static_cast<const char *>(found) : end;
        const auto run = static_cast<std::size_t>(stop - read);
        std::memmove(write, read, run);
        write += run;
        read = found ? stop + 1 : end; // the solidus itself opens the next run
    }
    return static_cast<std::size_t>(write - text);
}

} // namespace ambrel
