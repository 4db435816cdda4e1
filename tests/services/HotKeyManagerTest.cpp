#include "services/HotKeyManager.h"

#include "support/SimulatedTest.h"

namespace brindle {
namespace {

using ::testing::ElementsAre;

using HotKeyManagerTest = test::SimulatedTest;

TEST_F(HotKeyManagerTest, OneCombinationAndOneHandlerThroughRefusalAndReplacement) {
    auto& manager = HotKeyManager::shared();
    sim.shortcuts.status = 10;
    manager.registerHotKey(9, 0x300);
    sim.shortcuts.status = -9878;
    manager.registerHotKey(9, 0x300);
    sim.shortcuts.status = noError;
    manager.registerHotKey(9, 0x300);
    manager.registerHotKey(8, 0x100);
    EXPECT_THAT(sim.journal.take(),
                ElementsAre("log Failed to register hotkey: 10", "log Failed to register hotkey: -9878",
                            "hot key 9 0x300 as 0x11223344/1", "hot key handler for 0x6b657962/5", "hot key given back",
                            "hot key 8 0x100 as 0x11223344/1"));

    int presses = 0;
    sim.shortcuts.press(8, 0x100);
    manager.setOnTrigger([&] { ++presses; });
    sim.shortcuts.press(9, 0x300);
    sim.shortcuts.press(8, 0x100);
    EXPECT_EQ(presses, 1);
    manager.setOnTrigger([&, held = std::make_shared<int>(1)] {
        manager.setOnTrigger({});
        presses += *held;
    });
    sim.shortcuts.press(8, 0x100);
    sim.shortcuts.press(8, 0x100);
    EXPECT_EQ(presses, 2);

    sim.shortcuts.status = 10;
    manager.registerHotKey(9, 0x300);
    sim.shortcuts.status = noError;
    manager.registerHotKey(9, 0x300);
    EXPECT_THAT(sim.journal.take(), ElementsAre("hot key given back", "log Failed to register hotkey: 10",
                                                "hot key 9 0x300 as 0x11223344/1"));
}

}  // namespace
}  // namespace brindle
