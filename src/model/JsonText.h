#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace brindle {

/// A JSON text under way. What is put to it is gathered in a buffer small enough to stay in the nearest cache.
class JsonText {
public:
    using Ch = char;  // the name is the JSON writer's, like those of the next two

    void Put(char character) {
        makeRoom(1);
        buffer_[used_++] = character;
    }
    void Flush() {}

    void reserve(std::size_t size);

    /// The text as it stands between quotes: quotes, backslashes and controls escaped (RFC 8259, 7).
    void putEscaped(std::string_view text);

    [[nodiscard]] std::string take();

private:
    void makeRoom(std::size_t size) {
        if (buffer_.size() - used_ < size)
            empty();
    }
    void empty();

    std::string text_;
    std::size_t used_ = 0;
    std::array<char, 16384> buffer_;
};

}  // namespace brindle
