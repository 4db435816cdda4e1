#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace brindle {

/// An immutable UTF-8 text whose copies share one body: an entry of 64 MB is copied by raising a count. Main thread.
class SharedText {
public:
    SharedText();
    SharedText(std::string text);  // NOLINT(google-explicit-constructor): it is a string, shared
    SharedText(std::string_view text) : SharedText(std::string(text)) {}
    SharedText(const char* text) : SharedText(std::string(text)) {}

    [[nodiscard]] const std::string& string() const { return body_->text; }
    [[nodiscard]] std::string_view view() const { return body_->text; }
    [[nodiscard]] bool isEmpty() const { return body_->text.empty(); }

    /// Equal as Unicode text under canonical equivalence (UAX #15): a composed and a decomposed accent are the same.
    /// The key behind it is computed once per body, so comparing one text with many is cheap.
    [[nodiscard]] bool isCanonicallyEqual(const SharedText& other) const;

    /// Equal byte for byte.
    friend bool operator==(const SharedText& left, const SharedText& right) {
        return left.body_ == right.body_ || left.body_->text == right.body_->text;
    }

private:
    struct Body {
        std::string text;
        // Of the composed form (NFC); filled at the first comparison.
        mutable std::uint64_t canonicalHash = 0;
        mutable bool hasCanonicalHash = false;
        mutable bool isComposed = false;
    };
    static std::uint64_t canonicalHash(const Body& body);

    std::shared_ptr<const Body> body_;
};

}  // namespace brindle
