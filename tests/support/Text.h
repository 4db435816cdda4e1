#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

namespace brindle::test {

inline std::string hexadecimal(std::uint64_t number) {
    char text[24];
    std::snprintf(text, sizeof text, "0x%llx", static_cast<unsigned long long>(number));
    return text;
}

/// As short as it goes: "18", "0.5".
inline std::string decimal(double number) {
    char text[32];
    std::snprintf(text, sizeof text, "%g", number);
    return text;
}

}  // namespace brindle::test
