// Fixed work whose instructions are counted under callgrind, one dump for each piece; bench/check-instructions runs it
// and compares. Only the thread that asks is counted: the calling thread, and of a live cycle the main thread.

#include "model/Json.h"
#include "model/ResponseRecords.h"
#include "support/CheckReplies.h"
#include "support/LiveWindow.h"
#include "support/ReplyServer.h"
#include "ui/profile/DataUrlImage.h"

#include <QApplication>
#include <valgrind/callgrind.h>

using namespace ambrel;
using namespace std::chrono_literals;

namespace {

template <typename Work>
void count(const char *name, Work work)
{
    CALLGRIND_ZERO_STATS;
    CALLGRIND_TOGGLE_COLLECT;
    work();
    CALLGRIND_TOGGLE_COLLECT;
    CALLGRIND_DUMP_STATS_AT(name);
}

void countDecoding(const char *name, const QByteArray &json)
{
    const std::string_view text(json.constData(), static_cast<std::size_t>(json.size()));
    for (int round = 0; round < 2; ++round) { // the first one builds the parser
        const auto body = std::make_shared<Bytes>(text);
        CheckResponse record;
        count(name, [&] { record = readRecord<CheckResponse>(body); });
    }
}

/// How an event loop groups its wake-ups is chance; the smallest of a few cycles has no chance in it. The pause is long
/// enough for every photo of a cycle to arrive before the next.
void countCycles(const char *name, int variants)
{
    constexpr int cycles = 6;
    const ReplyServer server(10, 200, variants);
    LiveWindow client(server.url(), {.livePause = 1s, .seeMePause = 1h});
    client.runCycles(3);
    for (int cycle = 0; cycle < cycles; ++cycle)
        count(name, [&] { client.runCycles(1); });
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QApplication::setCursorFlashTime(0); // a caret blinks by the clock
    countDecoding("decode-small", checkReply(50));
    const QByteArray file = noisyPhotoFile({600, 800});
    countDecoding("decode-photos", checkReply(20, {dataUrlOf(file)}));
    const QByteArray text = dataUrlOf(file);
    for (int round = 0; round < 2; ++round)
        count("photo", [&] { (void)dataURLImage({text.constData(), std::size_t(text.size())}, {86, 104}); });
    countCycles("cycle-unchanged", 1);
    countCycles("cycle-changed", 2);
}
