#include "platform/freedesktop/PowerCut.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <memory>

#include "platform/freedesktop/Scratch.h"
#include "platform/freedesktop/SqliteDefaultsStore.h"

namespace brindle {
namespace {

std::string valueOf(int write) {
    return std::to_string(write) + std::string(static_cast<std::size_t>(write) * 7919 % 60'000, 'v');
}

/// How many writes had returned when the power failed.
int writeUntil(const PowerCut& power, const std::string& folder) {
    SqliteDefaultsStore store(folder);
    for (int write = 1; write <= 200; ++write) {
        store.setData("key" + std::to_string(write % 3), valueOf(write));
        if (power.hasHappened())
            return write - 1;
    }
    return 200;
}

TEST(PowerCutTest, TakesNothingThatHadBeenWritten) {
    // BRINDLE_POWER_CUTS=2000 is the long form.
    const char* wanted = std::getenv("BRINDLE_POWER_CUTS");
    const unsigned cuts = wanted != nullptr ? static_cast<unsigned>(std::atoi(wanted)) : 60;
    std::mt19937 random(7);
    for (unsigned cut = 0; cut < cuts && !testing::Test::HasFailure(); ++cut) {
        SCOPED_TRACE(cut);
        const Scratch before;
        const Scratch after;
        const LogLines log;
        int returned = 0;
        {
            const PowerCut power(1 + static_cast<int>(random() % (cut % 2 == 0 ? 60 : 1500)), cut);
            returned = writeUntil(power, before.path());
            power.restore(after.path());
        }
        const SqliteDefaultsStore store(after.path());
        for (int write = returned; write > std::max(0, returned - 3); --write) {
            const auto found = store.data("key" + std::to_string(write % 3)).value_or("none");
            const auto next = write + 3 == returned + 1 ? valueOf(returned + 1) : "";
            EXPECT_TRUE(found == valueOf(write) || found == next) << write << ' ' << found.substr(0, 9);
        }
        EXPECT_THAT(log.lines, testing::IsEmpty());
    }
}

}  // namespace
}  // namespace brindle
