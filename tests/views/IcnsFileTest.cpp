#include "views/IcnsFile.h"

#include <gmock/gmock.h>

namespace brindle {
namespace {

std::string number(std::size_t value) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes += static_cast<char>(value >> static_cast<unsigned>(shift));
    return bytes;
}

std::string member(const std::string& type, const std::string& content) {
    return type + number(content.size() + 8) + content;
}

std::string png(std::size_t width) {
    return std::string("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16) + number(width) + number(width) + "rest";
}

TEST(IcnsFile, GivesTheLargestPictureWhateverTheOrder) {
    const auto file = member("icns", member("ic11", png(32)) + member("ic09", png(512)) + member("ic08", png(256)));
    EXPECT_EQ(largestPng(file), png(512));
}

TEST(IcnsFile, HasNoneWithoutAPngMember) {
    EXPECT_EQ(largestPng(""), std::nullopt);
    EXPECT_EQ(largestPng(png(512)), std::nullopt);
    EXPECT_EQ(largestPng(member("icns", member("is32", "runs of bytes, not a picture of ours"))), std::nullopt);
}

TEST(IcnsFile, TakesNoLengthOnTrust) {
    const auto file = member("icns", member("ic07", png(128)) + member("ic08", png(256)));
    for (std::size_t size = 0; size < file.size(); ++size)
        EXPECT_NE(largestPng(std::string(file, 0, size)), png(256)) << size;
    for (const std::size_t length : {0U, 7U, 0xFFFFFFFFU})
        EXPECT_EQ(largestPng(member("icns", "ic07" + number(length) + png(128))), std::nullopt) << length;
}

}  // namespace
}  // namespace brindle
