#pragma once

#include <cstdint>

namespace brindle {

/// Virtual keys by their place on the keyboard, as the program's own tables number them.
enum class VirtualKey : std::uint16_t { v = 9, command = 55 };

/// Modifier bits in the flags of an event.
namespace eventFlags {
constexpr std::uint64_t control = 0x40000;
constexpr std::uint64_t command = 0x100000;
}  // namespace eventFlags

/// Modifier bits in the registration of a hot key.
namespace hotKeyModifiers {
constexpr std::uint32_t command = 0x100;
constexpr std::uint32_t shift = 0x200;
}  // namespace hotKeyModifiers

}  // namespace brindle
