#include "platform/x11/X11SelectionText.h"

#include <gmock/gmock.h>

#include <string>

#include "base/Unicode.h"

namespace brindle {
namespace {

std::string decodedInPieces(SelectionEncoding encoding, const std::string& bytes, std::size_t pieceSize) {
    SelectionTextDecoder decoder(encoding);
    for (std::size_t at = 0; at < bytes.size(); at += pieceSize)
        decoder.append(std::string_view(bytes).substr(at, pieceSize));
    return decoder.take();
}

TEST(SelectionText, IsTheSameHoweverThePiecesAreCut) {
    using namespace std::string_literals;
    for (const std::string& bytes :
         {""s, "plain"s, "é€😀 mixed é"s, "nul \0 inside"s, "\xE2\x82"s, "a\xF0\x9F\x98"s,
          "\xF0\x9F\xE2\x82\xAC\x80\x80\x80\x80"s, "\xC0\xAF\xED\xA0\x80\xFF\xFE z"s, "\xF4\x90\x80\x80"s}) {
        const std::string whole = unicode::repaired(bytes);
        for (std::size_t size = 1; size <= 5; ++size)
            EXPECT_EQ(decodedInPieces(SelectionEncoding::utf8, bytes, size), whole) << bytes << " cut after " << size;
    }
}

TEST(SelectionText, TakesTextOfUnsaidEncodingForLatin1OnlyWhenItIsNotUtf8) {
    for (std::size_t size = 1; size <= 4; ++size) {
        EXPECT_EQ(decodedInPieces(SelectionEncoding::latin1, "caf\xE9 \xA3\xFF", size), "café £ÿ");
        EXPECT_EQ(decodedInPieces(SelectionEncoding::utf8OrLatin1, "café €", size), "café €");
        EXPECT_EQ(decodedInPieces(SelectionEncoding::utf8OrLatin1, "caf\xC3\xA9 caf\xE9", size), "cafÃ© café");
        EXPECT_EQ(decodedInPieces(SelectionEncoding::utf8OrLatin1, "caf\xE9", size), "café");
    }
}

}  // namespace
}  // namespace brindle
