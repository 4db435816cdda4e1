#include "platform/freedesktop/DesktopEntry.h"

#include <gmock/gmock.h>

namespace brindle {
namespace {

TEST(DesktopEntry, PrefersTheNameWhoseLocaleSaysMost) {
    const std::string text =
        "[Desktop Entry]\nType=Application\n"
        "Name[sr_RS@latin]=country and modifier\nName[sr@latin]=modifier\nName[sr_RS]=country\nName[sr]=language\n"
        "Name=plain\nName[de_AT]=austrian\nName[]=nothing\n";
    const std::pair<const char*, const char*> names[] = {
        {"sr_RS.UTF-8@latin", "country and modifier"},
        {"sr_RS.UTF-8", "country"},
        {"sr_ME@latin", "modifier"},
        {"sr_ME", "language"},
        {"de_DE.UTF-8", "plain"},
        {"", "plain"},
    };
    for (const auto& [locale, name] : names)
        EXPECT_EQ(parseDesktopEntry(text, locale)->name, name) << locale;
}

TEST(DesktopEntry, ReadsItsOwnGroupOnlyAndUndoesTheEscapes) {
    const auto entry = parseDesktopEntry(
        "Name=before\n# comment\n[Other]\nName=other\n[Desktop Entry]\r\n Type = Application \r\n"
        "Name=a\\sb\\tc\\nd\\\\s\\x\\\nIcon=/tmp/an\\sicon.png\nStartupWMClass=Thing\nNoDisplay=true\n"
        "no equals sign\n[Desktop Action new]\nName=action\nIcon=action\n",
        "de");
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->name, "a b\tc\nd\\s\\x\\");
    EXPECT_EQ(entry->icon, "/tmp/an icon.png");
    EXPECT_EQ(entry->startupWmClass, "Thing");
    EXPECT_TRUE(entry->isNoDisplay);
}

TEST(DesktopEntry, IsNoneForWhatIsNoApplication) {
    for (const std::string text : {"", "[Desktop Entry]", "[Desktop Entry]\nName=a", "Type=Application\nName=a",
                                   "[Desktop Entry]\nType=Link\nName=a", "[Desktop Entry]\nType=Application\nName="})
        EXPECT_FALSE(parseDesktopEntry(text, "de")) << text;
    std::string longest = "[Desktop Entry]\nType=Application\nName=";
    longest.resize(desktopEntryLimit, 'a');
    EXPECT_TRUE(parseDesktopEntry(longest, ""));
    EXPECT_FALSE(parseDesktopEntry(longest + 'a', ""));
}

TEST(DesktopEntry, StandsAnyBytes) {
    const std::string seed("[Desktop Entry]\nType=Application\nName[\xFF@=x]\nName[]=\\\nName=\\\\\\\n\0=\0\n=\n[", 70);
    for (std::size_t from = 0; from < seed.size(); ++from) {
        for (std::size_t size = 0; size <= seed.size() - from; ++size)
            (void)parseDesktopEntry(std::string(seed, from, size), "@._@");
    }
}

}  // namespace
}  // namespace brindle
