// Serves a live client with check replies until its standard input ends. A process of its own, so that its work is not
// counted. Usage: reply-server MATCHES PHOTO_WIDTH VARIANTS; prints its address.

#include "support/CheckReplies.h"
#include "support/ScriptedServer.h"

#include <cstdio>
#include <cstdlib>

using namespace ambrel;

int main(int, char **arguments)
{
    const int matches = std::atoi(arguments[1]);
    const int photoWidth = std::atoi(arguments[2]);
    const int variants = std::atoi(arguments[3]);

    ScriptedServer server;
    server.on("POST", "/api/location", ScriptedReply::json("{\"ok\":true}"));
    server.on("GET", "/api/see-me/me", ScriptedReply::json("{\"ok\":true,\"seeMeMessages\":[]}"));
    QList<ScriptedReply> replies;
    for (int variant = 0; variant < variants; ++variant) {
        QList<QByteArray> photos;
        if (photoWidth > 0)
            photos += dataUrlOf(noisyPhotoFile({photoWidth, photoWidth * 4 / 3}, variant * 10));
        replies += ScriptedReply::json(checkReply(matches, photos, variant));
    }
    server.on("GET", "/api/check/me", replies.last());
    constexpr int longestRun = 1000; // cycles in which the variants take turns
    for (int cycle = 0; variants > 1 && cycle < longestRun; ++cycle)
        server.next("GET", "/api/check/me", replies[cycle % variants]);

    std::printf("%s\n", qPrintable(server.url()));
    std::fflush(stdout);
    while (std::getchar() != EOF) {
    }
}
