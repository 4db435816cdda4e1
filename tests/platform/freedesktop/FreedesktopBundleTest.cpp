#include "platform/freedesktop/FreedesktopBundle.h"

#include <sys/stat.h>

#include "platform/freedesktop/FreedesktopSystemInformation.h"
#include "platform/freedesktop/Scratch.h"

namespace brindle {
namespace {

using testing::EndsWith;
using testing::Not;
using testing::Optional;
using testing::StartsWith;
using testing::StrEq;

TEST(FreedesktopBundle, FindsItselfAndTheResourcesOfItsTree) {
    const FreedesktopBundle bundle;
    EXPECT_THAT(bundle.executablePath(), Optional(EndsWith("/brindle_freedesktop_tests")));
    EXPECT_THAT(bundle.infoString("CFBundleShortVersionString"), Optional(StrEq("1.0")));
    EXPECT_EQ(bundle.infoString("unheard of"), std::nullopt);
    EXPECT_THAT(bundle.resourcePath(), Optional(StrEq(BRINDLE_RESOURCES)));
    for (const char* image : {"AppIcon", "AppIconOutline"})
        EXPECT_TRUE(bundle.imageNamed(image)) << image;
    EXPECT_THAT(bundle.symbolNamed("doc.on.clipboard"), Optional(EndsWith("/symbols/doc.on.clipboard.svg")));
    EXPECT_THAT(read(*bundle.resourcePath() + "/AppIcon.icns"), StartsWith("icns"));
}

TEST(FreedesktopBundle, PrefersInstalledResourcesAndDoesWithoutAny) {
    const Scratch scratch;
    scratch.write("share/brindle/AppIcon.png", "\x89PNG\r\n\x1A\n...");
    const FreedesktopBundle installed(scratch / "bin/brindle", BRINDLE_RESOURCES);
    EXPECT_THAT(installed.resourcePath(), Optional(scratch / "share/brindle"));
    EXPECT_EQ(installed.bundlePath(), scratch.path());
    EXPECT_THAT(installed.imageNamed("AppIcon"), Optional(EndsWith("/AppIcon.png")));

    const FreedesktopBundle bare("", "/nowhere");
    EXPECT_EQ(bare.resourcePath(), std::nullopt);
    EXPECT_EQ(bare.executablePath(), std::nullopt);
    EXPECT_EQ(bare.imageNamed("AppIcon"), std::nullopt);
    EXPECT_EQ(bare.bundlePath(), "/");
}

TEST(FreedesktopBundle, TakesNothingForAnImageThatIsNone) {
    const Scratch scratch;
    scratch.write("empty.svg", "");
    scratch.write("text.svg", "not a drawing");
    scratch.write("cut.png", "\x89PN");
    std::filesystem::create_directory(scratch / "folder.svg");
    ::mkfifo((scratch / "fifo.svg").c_str(), 0600);
    scratch.write("second.svg", "");
    scratch.write("second.png", "\x89PNG\r\n\x1A\n...");
    const FreedesktopBundle bundle("/nowhere/bin/brindle", scratch.path());
    for (const char* name : {"empty", "text", "cut", "folder", "fifo", "missing"})
        EXPECT_EQ(bundle.imageNamed(name), std::nullopt) << name;
    EXPECT_THAT(bundle.imageNamed("second"), Optional(EndsWith(".png")));
}

std::string numbers(const SystemVersion& version) {
    return std::to_string(version.major) + '.' + std::to_string(version.minor) + '.' + std::to_string(version.patch);
}

TEST(FreedesktopSystemInformation, ReadsTheDistributionsVersion) {
    struct Case {
        const char* release;
        const char* debian;
        const char* version;
    };
    const Case cases[] = {
        {"ID=debian\nVERSION_ID=\"12\"\n", "12.4\n", "12.4.0"},
        {"ID=debian\nVERSION_ID=\"12\"\n", "trixie/sid\n", "12.0.0"},
        {"ID=ubuntu\nVERSION_ID='22.04'\n", "bookworm/sid\n", "22.4.0"},
        {"ID=other\nVERSION_ID=15.5.2.9\n", "", "15.5.2"},
        {"ID=debian\nVERSION_ID=12.\n", "11.9", "12.0.0"},
    };
    for (const auto& each : cases) {
        const Scratch root;
        root.write("etc/os-release", each.release);
        root.write("etc/debian_version", each.debian);
        EXPECT_EQ(numbers(FreedesktopSystemInformation(root.path()).operatingSystemVersion()), each.version)
            << each.release;
    }
}

TEST(FreedesktopSystemInformation, HasWordsForTheSystemWithADescriptionAndWithout) {
    const Scratch root;
    const FreedesktopSystemInformation information(root.path());
    EXPECT_THAT(information.operatingSystemVersionString(), testing::MatchesRegex("Linux ([^ ]+) \\(Build [^ )]+\\)"));
    EXPECT_GT(information.operatingSystemVersion().major, 0);  // the kernel's
    EXPECT_THAT(information.hardwareModel(), Not(testing::IsEmpty()));

    root.write("etc/os-release", "NAME=x\nPRETTY_NAME=\"Some \\\"Linux\\\" 12\"\n");
    EXPECT_THAT(information.operatingSystemVersionString(), StartsWith("Some \"Linux\" 12, Linux "));
    EXPECT_THAT(information.operatingSystemVersionString(), EndsWith(")"));
}

TEST(FreedesktopSystemInformation, NamesTheMachineAsWellAsItCan) {
    const Scratch root;
    const FreedesktopSystemInformation information(root.path());
    root.write("sys/firmware/devicetree/base/model", std::string("Board 4\xFF\0", 9));
    EXPECT_EQ(information.hardwareModel(), "Board 4\xEF\xBF\xBD");
    root.write("sys/class/dmi/id/product_name", " 20XW \n");
    EXPECT_EQ(information.hardwareModel(), "20XW");
    root.write("sys/class/dmi/id/sys_vendor", "Maker\n");
    EXPECT_EQ(information.hardwareModel(), "Maker 20XW");
    root.write("sys/class/dmi/id/product_name", "Maker Box");
    EXPECT_EQ(information.hardwareModel(), "Maker Box");
}

}  // namespace
}  // namespace brindle
