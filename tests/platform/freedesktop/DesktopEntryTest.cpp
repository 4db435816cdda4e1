#include "platform/freedesktop/DesktopEntry.h"

#include <sys/stat.h>

#include "platform/freedesktop/DesktopEntryIndex.h"
#include "platform/freedesktop/Scratch.h"

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
        {"de_DE.UTF-8", "plain"},
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

using testing::Optional;
using testing::StrEq;

class DesktopEntryIndexTest : public testing::Test {
protected:
    DesktopEntryIndexTest() {
        ::setenv("XDG_DATA_HOME", (scratch_ / "user").c_str(), 1);
        ::setenv("XDG_DATA_DIRS", (scratch_ / "local" + ":" + scratch_ / "system").c_str(), 1);
        ::setenv("LC_ALL", "C", 1);
    }

    std::string add(const std::string& file, const std::string& more = "") const {
        return scratch_.write(file, "[Desktop Entry]\nType=Application\nName=" + file + "\n" + more);
    }

    Scratch scratch_;
    DesktopEntryIndex index_;
};

TEST_F(DesktopEntryIndexTest, KnowsTheUsualApplicationsByTheirWindows) {
    const std::pair<const char*, const char*> installed[] = {
        {"debian-xterm", "XTerm"},
        {"org.xfce.mousepad-settings", "mousepad\nNoDisplay=true"},
        {"org.xfce.mousepad", "mousepad"},
        {"org.gnome.TextEditor", ""},
        {"libreoffice-writer", "libreoffice-writer"},
        {"chromium", "chromium"},
    };
    for (const auto& [name, wmClass] : installed)
        add(std::string("system/applications/") + name + ".desktop", std::string("StartupWMClass=") + wmClass + "\n");
    const std::vector<std::pair<WindowNames, std::string>> table = {
        {{"xterm", "XTerm", ""}, "debian-xterm"},
        {{"mousepad", "Mousepad", "org.xfce.mousepad"}, "org.xfce.mousepad"},
        {{"gnome-text-editor", "gnome-text-editor", "org.gnome.TextEditor"}, "org.gnome.TextEditor"},
        {{"libreoffice", "libreoffice-writer", "org.libreoffice"}, "libreoffice-writer"},
        {{"chromium (/tmp/x)", "Chromium", ""}, "chromium"},
        {{"unheard", "Of", "org.unheard.Of"}, ""},
    };
    for (const auto& [window, identifier] : table)
        EXPECT_EQ(index_.identifierFor(window).value_or(""), identifier);
}

TEST_F(DesktopEntryIndexTest, LetsTheMoreImportantFolderDecideAndFindsWhatWasInstalledSince) {
    EXPECT_EQ(index_.pathOf("kept"), std::nullopt);
    add("system/applications/kept.desktop", "Icon=kept\n");
    const auto mine = add("user/applications/kept.desktop", "Icon=mine\n");
    add("system/applications/gone.desktop");
    add("user/applications/gone.desktop", "Hidden=true\n");
    const auto nested = add("local/applications/kde/deep.desktop", "Icon=/an/icon.png\n");
    add("system/applications/bare.desktop");

    EXPECT_THAT(index_.pathOf("kept"), Optional(mine));
    EXPECT_THAT(index_.nameOf("kept"), Optional(StrEq("user/applications/kept.desktop")));
    EXPECT_THAT(index_.iconOf(mine), Optional(StrEq("mine")));
    EXPECT_EQ(index_.pathOf("gone"), std::nullopt);
    EXPECT_THAT(index_.pathOf("kde-deep"), Optional(nested));
    EXPECT_EQ(index_.iconOf(scratch_ / "system/applications/bare.desktop"), std::nullopt);
    EXPECT_EQ(index_.iconOf("/nowhere.desktop"), std::nullopt);
}

TEST_F(DesktopEntryIndexTest, IsNotHeldUpByOddFiles) {
    add("system/applications/good.desktop");
    ::mkfifo((scratch_ / "system/applications/fifo.desktop").c_str(), 0600);
    std::filesystem::create_directory(scratch_ / "system/applications/folder.desktop");
    std::filesystem::create_directory_symlink(scratch_ / "system/applications", scratch_ / "system/applications/loop");
    std::filesystem::create_symlink("/nowhere", scratch_ / "system/applications/dangling.desktop");
    EXPECT_TRUE(index_.pathOf("good"));
    for (const char* odd : {"fifo", "folder", "dangling"})
        EXPECT_EQ(index_.pathOf(odd), std::nullopt) << odd;
}

}  // namespace
}  // namespace brindle
