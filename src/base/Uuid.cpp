#include "base/Uuid.h"

#include <uuid/uuid.h>

namespace brindle {

namespace {
constexpr std::size_t textLength = UUID_STR_LEN - 1;
}

Uuid Uuid::generate() {
    Uuid fresh;
    uuid_generate_random(fresh.bytes_.data());
    return fresh;
}

std::optional<Uuid> Uuid::parse(std::string_view text) {
    Uuid parsed;
    if (text.size() != textLength ||
        uuid_parse_range(text.data(), text.data() + text.size(), parsed.bytes_.data()) != 0)
        return std::nullopt;
    return parsed;
}

std::string Uuid::text() const {
    char buffer[UUID_STR_LEN];
    uuid_unparse_upper(bytes_.data(), buffer);
    return {buffer, textLength};
}

}  // namespace brindle
