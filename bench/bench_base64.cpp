// Strict base64 decoding of a photo's text, beside the toolkit's decoder on the same text.

#include "model/Base64.h"
#include "support/Interleaved.h"
#include "support/Noise.h"
#include "support/Row.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

using namespace ambrel;

namespace {

/// How many times as fast as the toolkit's decoder.
double compare(const char *name, Base64Code code, const QByteArray &text)
{
    const std::string_view view(text.constData(), static_cast<std::size_t>(text.size()));
    const auto [ours, toolkits] = interleavedMedians(
        15,
        [&] {
            if (!decodeBase64(view, code))
                std::abort();
        },
        [&] {
            if (!QByteArray::fromBase64Encoding(text, QByteArray::AbortOnBase64DecodingErrors))
                std::abort();
        });
    const double gigabytes = static_cast<double>(text.size()) / 1e9;
    std::printf("%-9s %8lld bytes: %6.2f GB/s, toolkit %5.2f GB/s, ratio %6.1f\n", name,
                static_cast<long long>(text.size()), gigabytes / ours, gigabytes / toolkits, toolkits / ours);
    return toolkits / ours;
}

} // namespace

int main()
{
    double slowest = 1e9;
    for (const qsizetype size : {40'000, 400'000, 4'000'000}) {
        const QByteArray text = noisyBytes(size).toBase64();
        double fastest = compare("portable", Base64Code::Portable, text);
        if (fastestBase64Code() == Base64Code::Avx2)
            fastest = compare("AVX2", Base64Code::Avx2, text);
        slowest = std::min(slowest, fastest);
    }
    print({.what = "base64 of a photo, strict, 40 kB to 4 MB",
           .toReach = "at least 25 x the toolkit's decoder",
           .floor = "the toolkit's decoder",
           .measured = "slowest size",
           .ratio = figure(slowest),
           .isReached = slowest >= 25});
}
