#include "base/SharedText.h"

#include <functional>
#include <utility>

#include "base/Unicode.h"

namespace brindle {

SharedText::SharedText() : SharedText(std::string()) {}

SharedText::SharedText(std::string text) : body_(new Body{std::move(text)}) {}

bool SharedText::isWellFormed() const {
    if (!body_->isWellFormed)
        body_->isWellFormed = unicode::isWellFormed(body_->text);
    return *body_->isWellFormed;
}

std::uint64_t SharedText::canonicalHash(Body& body) {
    if (!body.hasCanonicalHash) {
        body.isComposed = unicode::isComposed(body.text);
        const std::string rewritten = body.isComposed ? std::string() : unicode::composed(body.text);
        body.canonicalHash = std::hash<std::string_view>{}(body.isComposed ? body.text : rewritten);
        body.hasCanonicalHash = true;
    }
    return body.canonicalHash;
}

bool SharedText::isCanonicallyEqual(const SharedText& other) const {
    if (body_ == other.body_)
        return true;
    if (canonicalHash(*body_) != canonicalHash(*other.body_))
        return false;
    if (body_->isComposed && other.body_->isComposed)
        return body_->text == other.body_->text;
    return unicode::composed(body_->text) == unicode::composed(other.body_->text);
}

}  // namespace brindle
