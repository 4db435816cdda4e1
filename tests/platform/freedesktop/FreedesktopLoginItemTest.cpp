#include "platform/freedesktop/FreedesktopLoginItem.h"

#include <cstdlib>

#include "platform/freedesktop/DesktopEntry.h"
#include "platform/freedesktop/FreedesktopBundle.h"
#include "platform/freedesktop/Scratch.h"

namespace brindle {
namespace {

/// The first argument as a launcher takes it from Exec, after the entry's own escapes.
std::string argument(const std::string& exec) {
    std::string path;
    for (std::size_t i = 1; i + 1 < exec.size(); ++i) {
        if (exec[i] == '\\' || (exec[i] == '%' && exec[i + 1] == '%'))
            ++i;
        path += exec[i];
    }
    return path;
}

class FreedesktopLoginItemTest : public testing::Test {
protected:
    FreedesktopLoginItemTest() { ::setenv("XDG_CONFIG_HOME", (scratch_ / "config").c_str(), 1); }

    Scratch scratch_;
    std::string file_ = scratch_ / "config/autostart/org.brindle.Brindle.desktop";
};

TEST_F(FreedesktopLoginItemTest, NamesAnyPathSoThatALauncherFindsIt) {
    for (const std::string path : {"/usr/bin/brindle", "/a b/c", "/q\"u'o`te", "/dollar$HOME", "/back\\slash\\n",
                                   "/per%f%%cent", "/new\nline\t", "/semi;&|<>*?#()~", "/\xC3\xA9\xF0\x9F\x93\x8B"}) {
        const FreedesktopBundle bundle(path, "");
        FreedesktopLoginItem item(bundle);
        ASSERT_EQ(item.registerItem(), std::nullopt) << path;
        const auto entry = parseDesktopEntry(read(file_), "");
        ASSERT_TRUE(entry) << path;
        EXPECT_EQ(argument(entry->exec), path);
        EXPECT_EQ(std::system(("desktop-file-validate '" + file_ + "'").c_str()), 0) << path;
    }
}

TEST_F(FreedesktopLoginItemTest, ComesAndGoesOrSaysWhatWentWrong) {
    const FreedesktopBundle bundle;
    FreedesktopLoginItem item(bundle);
    EXPECT_EQ(item.unregisterItem(), std::nullopt);
    EXPECT_EQ(item.registerItem(), std::nullopt);
    EXPECT_EQ(item.unregisterItem(), std::nullopt);
    EXPECT_FALSE(std::filesystem::exists(file_));
    std::filesystem::create_directories(file_);
    EXPECT_THAT(item.registerItem(), testing::Optional(testing::HasSubstr("directory")));
    EXPECT_THAT(item.unregisterItem(), testing::Optional(testing::HasSubstr("directory")));
}

}  // namespace
}  // namespace brindle
