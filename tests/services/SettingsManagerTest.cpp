#include "services/SettingsManager.h"

#include "support/SimulatedTest.h"

namespace brindle {
namespace {

using test::SimulatedDefaults;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

using SettingsManagerTest = test::SimulatedTest;

TEST_F(SettingsManagerTest, ReadsWhatIsStoredAndDistrustsOnlyTheUnknown) {
    EXPECT_EQ(SettingsManager().appTheme().value(), AppTheme::dark);
    EXPECT_THAT(sim.journal.take(), ElementsAre("unregister login item"));
    EXPECT_THAT(sim.store.values, IsEmpty());
    for (const auto& [stored, read] : {std::pair(0, 50), {7, 7}, {-3, -3}}) {
        sim.store.values["maxClipboardItems"] = std::int64_t{stored};
        EXPECT_EQ(SettingsManager().maxClipboardItems().value(), read);
    }
    const std::pair<std::string, AppTheme> themes[] = {{"Light", AppTheme::light},
                                                       {"Dark", AppTheme::dark},
                                                       {"System", AppTheme::system},
                                                       {"light", AppTheme::dark},
                                                       {"", AppTheme::dark}};
    for (const auto& [raw, theme] : themes) {
        sim.store.values["appTheme"] = raw;
        EXPECT_EQ(SettingsManager().appTheme().value(), theme) << raw;
        EXPECT_EQ(sim.store.string("appTheme"), raw);
    }
    sim.store.values["launchAtLogin"] = std::int64_t{1};
    sim.journal.take();
    EXPECT_TRUE(SettingsManager().launchAtLogin().value());
    EXPECT_THAT(sim.journal.take(), ElementsAre("register login item"));
}

TEST_F(SettingsManagerTest, EveryAssignmentPublishesAndStoresAlsoOfAnEqualValue) {
    SettingsManager settings;
    sim.journal.take();
    std::vector<std::int64_t> heard;
    const auto subscription =
        settings.maxClipboardItems().subscribe([&](std::int64_t count) { heard.push_back(count); });
    settings.setMaxClipboardItems(25);
    settings.setMaxClipboardItems(25);
    settings.setAppTheme(AppTheme::system);
    sim.login.failure = "no such folder";
    settings.setLaunchAtLogin(true);
    EXPECT_THAT(heard, ElementsAre(50, 25, 25));
    EXPECT_THAT(sim.journal.take(), ElementsAre("store maxClipboardItems", "store maxClipboardItems", "store appTheme",
                                                "store launchAtLogin", "register login item",
                                                "log Failed to update launch at login: no such folder"));
    EXPECT_EQ(sim.store.string("appTheme"), "System");
    EXPECT_TRUE(settings.launchAtLogin().value());
}

}  // namespace
}  // namespace brindle
