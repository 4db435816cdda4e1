#include <cstdint>
#include <cstdlib>
#include <string>

#include "model/StoredForm.h"

using namespace brindle;

/// Whatever decodes, encodes to something that decodes to an equal value.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    const std::string json(reinterpret_cast<const char*>(bytes), count);
    if (const auto history = decodeHistory(json); history && decodeHistory(encodeHistory(*history)) != history)
        std::abort();
    if (const auto lists = decodeLists(json); lists && decodeLists(encodeLists(*lists)) != lists)
        std::abort();
    return 0;
}
