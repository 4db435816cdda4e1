#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace brindle {

/// An immutable UTF-8 text whose copies share one body: an entry of 64 MB is copied by raising a count. Main
/// thread only.
class SharedText {
public:
    SharedText();
    SharedText(std::string text);  // NOLINT(google-explicit-constructor): it is a string, shared
    SharedText(std::string_view text) : SharedText(std::string(text)) {}
    SharedText(const char* text) : SharedText(std::string(text)) {}
    SharedText(const SharedText& other) : body_(other.body_) {
        if (body_)
            ++body_->owners;
    }
    SharedText(SharedText&& other) noexcept : body_(std::exchange(other.body_, nullptr)) {}  ///< the other has no text
    SharedText& operator=(SharedText other) noexcept {
        std::swap(body_, other.body_);
        return *this;
    }
    ~SharedText() {
        // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDelete): it sees a std::optional destroy its value twice
        if (body_ && --body_->owners == 0)
            delete body_;
    }

    [[nodiscard]] const std::string& string() const { return body_->text; }
    [[nodiscard]] std::string_view view() const { return body_->text; }
    [[nodiscard]] bool isEmpty() const { return body_->text.empty(); }

    /// Whether it is well-formed UTF-8. Looked at once per body.
    [[nodiscard]] bool isWellFormed() const;

    /// Equal as Unicode text under canonical equivalence (UAX #15): a composed and a decomposed accent are the same.
    /// The key behind it is computed once per body, so comparing one text with many is cheap.
    [[nodiscard]] bool isCanonicallyEqual(const SharedText& other) const;

    /// Equal byte for byte.
    friend bool operator==(const SharedText& left, const SharedText& right) {
        return left.body_ == right.body_ || left.body_->text == right.body_->text;
    }

private:
    struct Body {
        const std::string text;
        // A plain count: every change of a history copies all of it, and atomic ones were most of that time.
        std::size_t owners = 1;
        // Each is looked for once, when it is first asked for.
        std::optional<bool> isWellFormed = std::nullopt;
        std::optional<bool> isComposed = std::nullopt;              // is its own composed form (NFC)
        std::optional<std::uint64_t> canonicalHash = std::nullopt;  // of that form
    };
    static bool isComposed(Body& body);
    static std::uint64_t canonicalHash(Body& body);

    Body* body_;
};

}  // namespace brindle
