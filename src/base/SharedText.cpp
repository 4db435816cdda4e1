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

bool SharedText::isComposed(Body& body) {
    if (!body.isComposed)
        body.isComposed = unicode::isComposed(body.text);
    return *body.isComposed;
}

std::uint64_t SharedText::canonicalHash(Body& body) {
    if (!body.canonicalHash) {
        const std::string rewritten = isComposed(body) ? std::string() : unicode::composed(body.text);
        body.canonicalHash = std::hash<std::string_view>{}(isComposed(body) ? body.text : rewritten);
    }
    return *body.canonicalHash;
}

bool SharedText::isCanonicallyEqual(const SharedText& other) const {
    if (body_ == other.body_)
        return true;
    const bool areComposed = isComposed(*body_) && isComposed(*other.body_);
    if (areComposed && body_->text.size() != other.body_->text.size())
        return false;
    if (canonicalHash(*body_) != canonicalHash(*other.body_))
        return false;
    return areComposed ? body_->text == other.body_->text
                       : unicode::composed(body_->text) == unicode::composed(other.body_->text);
}

}  // namespace brindle
