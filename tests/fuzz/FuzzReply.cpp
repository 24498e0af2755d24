// A reply of the server: the client's reader against one that parses the unabridged bytes.

#include "model/Json.h"
#include "model/JsonOracle.h"

#include <cstdlib>

using namespace ambrel;

namespace {

void compare(const std::string &json)
{
    std::optional<CheckResponse> read;
    try {
        read = readRecord<CheckResponse>(std::make_shared<Bytes>(json));
    } catch (const DecodingError &) {
    }
    if (read != JsonOracle::read(json))
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, std::size_t size)
{
    constexpr std::size_t large = 40'000; // from some size on long texts are taken out beforehand
    const std::string json(reinterpret_cast<const char *>(bytes), size);
    compare(json);
    compare(json + std::string(large, ' '));
    return 0;
}
