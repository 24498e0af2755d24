#include "model/Base64.h"

#include <QtEndian>
#include <array>
#include <cstring>

#if defined(__x86_64__) && defined(__GNUC__)
#define AMBREL_HAS_AVX2_CODE
#include <immintrin.h>
#endif

namespace ambrel {

namespace {

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::size_t lettersPerGroup = 4;
constexpr std::size_t bytesPerGroup = 3;

/// Where the reading stands: what is left to decode, and where its bytes go.
struct Progress
{
    const char *letters;
    const char *end;
    char *bytes;

    std::size_t left() const { return static_cast<std::size_t>(end - letters); }
};

// One table per place in a group: a letter's six bits where they belong in the group's three bytes, little-endian.
// The fourth byte stays free for the mark of a letter outside the alphabet.
using Table = std::array<quint32, 256>;
constexpr quint32 foreignLetter = 0x01000000;

constexpr quint32 swapped(quint32 bigEndianGroup)
{
    return (bigEndianGroup >> 16) | (bigEndianGroup & 0xff00) | ((bigEndianGroup & 0xff) << 16);
}

constexpr std::array<Table, lettersPerGroup> makeTables()
{
    std::array<Table, lettersPerGroup> tables{};
    for (Table &table : tables)
        table.fill(foreignLetter);
    for (std::size_t place = 0; place < lettersPerGroup; ++place) {
        for (std::size_t value = 0; value < alphabet.size(); ++value)
            tables[place][static_cast<unsigned char>(alphabet[value])] =
                swapped(static_cast<quint32>(value) << (18 - 6 * place));
    }
    return tables;
}
constexpr std::array<Table, lettersPerGroup> tables = makeTables();

/// The three bytes of one group, or a value with `foreignLetter` in it.
quint32 groupAt(const char *letters)
{
    const auto *const index = reinterpret_cast<const unsigned char *>(letters);
    return tables[0][index[0]] | tables[1][index[1]] | tables[2][index[2]] | tables[3][index[3]];
}

/// Decodes whole groups while four bytes may be written for each; false at a foreign letter.
bool decodePortable(Progress &progress)
{
    constexpr std::size_t groupsAtOnce = 4;
    quint32 seen = 0;
    // One group always stays for the end, so the spare fourth byte never lies outside.
    while (progress.left() > groupsAtOnce * lettersPerGroup) {
        for (std::size_t group = 0; group < groupsAtOnce; ++group) {
            const quint32 bytes = groupAt(progress.letters + group * lettersPerGroup);
            seen |= bytes;
            qToLittleEndian(bytes, progress.bytes + group * bytesPerGroup);
        }
        progress.letters += groupsAtOnce * lettersPerGroup;
        progress.bytes += groupsAtOnce * bytesPerGroup;
    }
    return !(seen & foreignLetter);
}

/// Decodes the rest without writing past it; false at a foreign letter.
bool decodeEnd(Progress &progress)
{
    while (progress.left() > 0) {
        // Padding counts as zero bits; only the last group has any.
        std::array<char, lettersPerGroup> letters{'A', 'A', 'A', 'A'};
        const std::size_t count = std::min(progress.left(), lettersPerGroup);
        std::memcpy(letters.data(), progress.letters, count);
        const quint32 group = groupAt(letters.data());
        if (group & foreignLetter)
            return false;
        const quint32 ordered = qToLittleEndian(group);
        std::memcpy(progress.bytes, &ordered, count - 1);
        progress.letters += count;
        progress.bytes += count - 1;
    }
    return true;
}

#ifdef AMBREL_HAS_AVX2_CODE

/// The same 16 bytes in both halves, as the shuffles look them up.
__attribute__((target("avx2"))) inline __m256i bothHalves(const std::array<char, 16> &bytes)
{
    return _mm256_broadcastsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i *>(bytes.data())));
}

/// Decodes 32 letters a step. Each letter is judged by its two half-bytes: every half-byte stands for the set of
/// classes that it excludes, and a letter is foreign when both exclude the same class.
__attribute__((target("avx2"))) bool decodeAvx2(Progress &progress)
{
    constexpr std::size_t lettersAtOnce = 32;
    constexpr std::size_t bytesAtOnce = 24;
    constexpr std::size_t written = 32;

    // Classes by upper half-byte: 0x01 row 2 (+ /), 0x02 row 3 (digits), 0x04 rows 4 and 6 (from A, a),
    // 0x08 rows 5 and 7 (up to Z, z), 0x10 rows that hold no letter at all.
    const __m256i classOfUpper =
        bothHalves({0x10, 0x10, 0x01, 0x02, 0x04, 0x08, 0x04, 0x08, 0x10, 0x10, 0x10, 0x10, 0x10, 0x10, 0x10, 0x10});
    const __m256i excludedByLower =
        bothHalves({0x15, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x13, 0x1a, 0x1b, 0x1b, 0x1b, 0x1a});
    // What to add to a letter to get its value, by upper half-byte; "/" takes the free entry 1.
    const __m256i offsetOfRow = bothHalves({0, 16, 19, 4, -65, -65, -71, -71, 0, 0, 0, 0, 0, 0, 0, 0});
    const __m256i packed = bothHalves({2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1});
    const __m256i closedUp = _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 3, 7);
    const __m256i lowerHalf = _mm256_set1_epi8(0x0f);
    const __m256i slash = _mm256_set1_epi8('/');
    __m256i foreign = _mm256_setzero_si256();

    // Enough letters stay behind for the surplus bytes of the last store to be overwritten, not to lie outside.
    constexpr std::size_t lettersToStay = (written - bytesAtOnce + bytesPerGroup - 1) / bytesPerGroup * lettersPerGroup;
    while (progress.left() >= lettersAtOnce + lettersToStay) {
        const __m256i letters = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(progress.letters));
        const __m256i upper = _mm256_and_si256(_mm256_srli_epi32(letters, 4), lowerHalf);
        const __m256i lower = _mm256_and_si256(letters, lowerHalf);
        foreign = _mm256_or_si256(foreign, _mm256_and_si256(_mm256_shuffle_epi8(classOfUpper, upper),
                                                            _mm256_shuffle_epi8(excludedByLower, lower)));
        const __m256i row = _mm256_add_epi8(upper, _mm256_cmpeq_epi8(letters, slash));
        const __m256i values = _mm256_add_epi8(letters, _mm256_shuffle_epi8(offsetOfRow, row));
        // Four values of six bits become two of twelve, then one of twenty-four.
        const __m256i pairs = _mm256_maddubs_epi16(values, _mm256_set1_epi32(0x01400140));
        const __m256i groups = _mm256_madd_epi16(pairs, _mm256_set1_epi32(0x00011000));
        const __m256i bytes = _mm256_permutevar8x32_epi32(_mm256_shuffle_epi8(groups, packed), closedUp);
        _mm256_storeu_si256(reinterpret_cast<__m256i *>(progress.bytes), bytes);
        progress.letters += lettersAtOnce;
        progress.bytes += bytesAtOnce;
    }
    return _mm256_testz_si256(foreign, foreign) != 0;
}

#endif

std::size_t paddingOf(std::string_view text)
{
    if (!text.ends_with('='))
        return 0;
    return text.ends_with("==") ? 2 : 1;
}

} // namespace

Base64Code fastestBase64Code()
{
#ifdef AMBREL_HAS_AVX2_CODE
    if (__builtin_cpu_supports("avx2"))
        return Base64Code::Avx2;
#endif
    return Base64Code::Portable;
}

std::optional<QByteArray> decodeBase64(std::string_view text, [[maybe_unused]] Base64Code code)
{
    if (text.size() % lettersPerGroup != 0)
        return std::nullopt;
    const std::size_t padding = paddingOf(text);
    QByteArray result(static_cast<qsizetype>(text.size() / lettersPerGroup * bytesPerGroup - padding),
                      Qt::Uninitialized);
    Progress progress{text.data(), text.data() + text.size() - padding, result.data()};
#ifdef AMBREL_HAS_AVX2_CODE
    if (code == Base64Code::Avx2 && !decodeAvx2(progress))
        return std::nullopt;
#endif
    if (!decodePortable(progress) || !decodeEnd(progress))
        return std::nullopt;
    return result;
}

} // namespace ambrel
