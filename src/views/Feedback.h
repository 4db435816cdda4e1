#pragma once

#include <string>
#include <string_view>

namespace brindle {

std::string appVersion();
std::string osVersionDescription();
std::string deviceModel();
/// What a feedback mail starts with, below two empty lines for the user's words.
std::string feedbackBody();

/// Percent-encodes what may not stand in the query of an address (RFC 3986).
std::string percentEncodedForQuery(std::string_view text);

/// Does nothing when the text is not an address.
void openURL(std::string_view text);
/// Prepares a mail in the user's mail program.
void openFeedbackMail();

}  // namespace brindle
