#include "services/HotKeyManager.h"

#include "support/SimulatedTest.h"

namespace brindle {
namespace {

using ::testing::ElementsAre;

using HotKeyManagerTest = test::SimulatedTest;

TEST_F(HotKeyManagerTest, OneCombinationAndOneHandlerThroughRefusalAndReplacement) {
    auto& manager = HotKeyManager::shared();
    const auto registers = [&](std::int32_t status, std::uint32_t key, std::uint32_t modifiers) {
        sim.shortcuts.status = status;
        manager.registerHotKey(key, modifiers);
        return sim.journal.take();
    };
    EXPECT_THAT(registers(10, 9, 0x300), ElementsAre("log Failed to register hotkey: 10"));
    EXPECT_THAT(registers(noError, 9, 0x300),
                ElementsAre("hot key 9 0x300 as 0x11223344/1", "hot key handler for 0x6b657962/5"));
    EXPECT_THAT(registers(noError, 8, 0x100), ElementsAre("hot key given back", "hot key 8 0x100 as 0x11223344/1"));

    int presses = 0;
    sim.shortcuts.press(8, 0x100);
    manager.setOnTrigger([&] { ++presses; });
    sim.shortcuts.press(9, 0x300);
    EXPECT_EQ(presses, 0);
    sim.shortcuts.press(8, 0x100);
    EXPECT_EQ(presses, 1);
}

}  // namespace
}  // namespace brindle
