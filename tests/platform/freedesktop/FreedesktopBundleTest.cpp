#include "platform/freedesktop/FreedesktopBundle.h"

#include <sys/stat.h>

#include "platform/freedesktop/FreedesktopSystemInformation.h"
#include "platform/freedesktop/Scratch.h"

namespace brindle {
namespace {

using testing::EndsWith;
using testing::Optional;
using testing::StartsWith;
using testing::StrEq;

const std::string png = "\x89PNG\r\n\x1A\n...IEND\xAE\x42\x60\x82";
const std::string drawing = "<!-- ours --><svg xmlns='http://www.w3.org/2000/svg'><path d='M0 0'/></svg>";

TEST(FreedesktopBundle, PrefersInstalledResourcesAndDoesWithoutAny) {
    const Scratch scratch;
    scratch.write("share/brindle/AppIcon.png", png);
    const FreedesktopBundle installed(scratch / "bin/brindle", BRINDLE_RESOURCES);
    EXPECT_THAT(installed.resourcePath(), Optional(EndsWith("/share/brindle")));
    EXPECT_EQ(installed.bundlePath(), scratch.path());
    EXPECT_THAT(installed.imageNamed("AppIcon"), Optional(EndsWith("/AppIcon.png")));
    const FreedesktopBundle moved(scratch / "tree/build/brindle", "../../share/brindle");
    EXPECT_EQ(moved.resourcePath(), installed.resourcePath());

    const FreedesktopBundle bare("", "nowhere");
    EXPECT_FALSE(bare.resourcePath() || bare.executablePath() || bare.imageNamed("AppIcon"));
    EXPECT_EQ(bare.bundlePath(), "/");
}

TEST(FreedesktopBundle, TakesNothingForAnImageThatIsNone) {
    const Scratch scratch;
    scratch.write("whole.svg", drawing);
    scratch.write("empty.svg", "");
    scratch.write("text.svg", "not a drawing");
    scratch.write("page.svg", "<html><svg/></html>");
    scratch.write("half.svg", drawing.substr(0, 60));
    scratch.write("cut.png", png.substr(0, 15));
    std::filesystem::create_directory(scratch / "folder.svg");
    ::mkfifo((scratch / "fifo.svg").c_str(), 0600);
    scratch.write("second.svg", "");
    scratch.write("second.png", png);
    const FreedesktopBundle bundle("/nowhere/bin/brindle", scratch.path());
    EXPECT_TRUE(bundle.imageNamed("whole"));
    for (const char* name : {"empty", "text", "page", "half", "cut", "folder", "fifo", "missing"})
        EXPECT_EQ(bundle.imageNamed(name), std::nullopt) << name;
    EXPECT_THAT(bundle.imageNamed("second"), Optional(EndsWith(".png")));
}

TEST(FreedesktopSystemInformation, ReadsTheDistributionsVersion) {
    struct Case {
        const char* release;
        const char* debian;
        std::array<int, 3> version;
    };
    const Case cases[] = {
        {"ID=debian\nVERSION_ID=\"12\"\n", "12.4\n", {12, 4, 0}},
        {"ID=debian\nVERSION_ID=\"12\"\n", "trixie/sid\n", {12, 0, 0}},
        {"ID=ubuntu\nVERSION_ID='22.04'\n", "bookworm/sid\n", {22, 4, 0}},
    };
    for (const auto& each : cases) {
        const Scratch root;
        root.write("etc/os-release", each.release);
        root.write("etc/debian_version", each.debian);
        const auto version = FreedesktopSystemInformation(root.path()).operatingSystemVersion();
        EXPECT_THAT(each.version, testing::ElementsAre(version.major, version.minor, version.patch)) << each.release;
    }
}

TEST(FreedesktopSystemInformation, HasWordsForTheSystemAndTheMachineAsGoodAsThereAre) {
    const Scratch root;
    const FreedesktopSystemInformation information(root.path());
    EXPECT_THAT(information.operatingSystemVersionString(), StartsWith("Linux "));
    root.write("etc/os-release", "NAME=x\nPRETTY_NAME=\"Some \\\"Linux\\\" 12\"\n");
    EXPECT_THAT(information.operatingSystemVersionString(), StartsWith("Some \"Linux\" 12, Linux "));
    const struct {
        const char* file;
        std::string content;
        const char* model;
    } sources[] = {
        {"sys/firmware/devicetree/base/model", std::string("Board 4\xFF\0", 9), "Board 4\xEF\xBF\xBD"},
        {"sys/class/dmi/id/product_name", " 20XW \n", "20XW"},
        {"sys/class/dmi/id/sys_vendor", "Maker\n", "Maker 20XW"},
    };
    for (const auto& each : sources) {
        root.write(each.file, each.content);
        EXPECT_EQ(information.hardwareModel(), each.model);
    }
}

}  // namespace
}  // namespace brindle
