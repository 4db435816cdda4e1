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
    scratch.write("half.svg", drawing.substr(0, 60));
    scratch.write("cut.png", png.substr(0, 15));
    ::mkfifo((scratch / "fifo.svg").c_str(), 0600);
    scratch.write("second.svg", "");
    scratch.write("second.png", png);
    const FreedesktopBundle bundle("/nowhere/bin/brindle", scratch.path());
    EXPECT_TRUE(bundle.imageNamed("whole"));
    for (const char* name : {"empty", "text", "half", "cut", "fifo", "missing"})
        EXPECT_EQ(bundle.imageNamed(name), std::nullopt) << name;
    EXPECT_THAT(bundle.imageNamed("second"), Optional(EndsWith(".png")));
}

TEST(FreedesktopSystemInformation, ReadsTheDistributionsVersionAndTheMachinesName) {
    const Scratch root;
    const FreedesktopSystemInformation information(root.path());
    EXPECT_THAT(information.operatingSystemVersionString(), StartsWith("Linux "));
    root.write("etc/os-release", "ID=debian\nVERSION_ID=\"12\"\nPRETTY_NAME=\"Some \\\"Linux\\\" 12\"\n");
    EXPECT_THAT(information.operatingSystemVersionString(), StartsWith("Some \"Linux\" 12, Linux "));
    for (const auto& [debian, minor] : {std::pair("trixie/sid\n", 0), {"12.4\n", 4}}) {
        root.write("etc/debian_version", debian);
        EXPECT_EQ(information.operatingSystemVersion().major, 12);
        EXPECT_EQ(information.operatingSystemVersion().minor, minor);
    }
    root.write("sys/class/dmi/id/product_name", " 20XW \n");
    EXPECT_EQ(information.hardwareModel(), "20XW");
    root.write("sys/class/dmi/id/sys_vendor", "Maker\n");
    EXPECT_EQ(information.hardwareModel(), "Maker 20XW");
}

}  // namespace
}  // namespace brindle
