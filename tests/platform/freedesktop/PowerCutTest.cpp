#include <gmock/gmock.h>
#include <unistd.h>

#include <cstdlib>
#include <random>

#include "platform/freedesktop/Scratch.h"
#include "platform/freedesktop/SqliteDefaultsStore.h"

namespace {

/// How many more times the disk is told to write its cache before the power fails; the program does not notice.
int syncsLeft = 0;
std::filesystem::path diskAfterwards;

}  // namespace

/// Takes the place of the C library's. What the disk holds after the power cut is what was synced before it.
extern "C" int fdatasync(int file) {
    if (--syncsLeft <= 0)
        return 0;
    const auto path = std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(file));
    const bool isFile = std::filesystem::is_regular_file(path);
    const auto folder = isFile ? path.parent_path() : path;
    const bool isSyncedAgain = path.extension() == ".sqlite3-wal" && syncsLeft > 3;
    if (isFile && !isSyncedAgain)
        std::filesystem::copy_file(path, diskAfterwards / path.filename(),
                                   std::filesystem::copy_options::overwrite_existing);
    for (const auto& each : std::filesystem::directory_iterator(diskAfterwards)) {
        if (!std::filesystem::exists(folder / each.path().filename()))
            std::filesystem::remove(each);
    }
    return 0;
}

namespace brindle {
namespace {

std::string valueOf(int write) {
    return std::to_string(write) + std::string(static_cast<std::size_t>(write) * 7919 % 60'000, 'v');
}

/// How many writes had returned when the power failed.
int writeUntilTheCut(const std::string& folder) {
    SqliteDefaultsStore store(folder);
    int write = 0;
    for (; syncsLeft > 0; ++write)
        store.setData("key" + std::to_string(write % 3), valueOf(write));
    return write - 1;
}

TEST(PowerCutTest, TakesNothingThatHadBeenWritten) {
    // BRINDLE_POWER_CUTS=2000 is the long form.
    const char* wanted = std::getenv("BRINDLE_POWER_CUTS");
    std::mt19937 random(7);
    for (int cut = wanted != nullptr ? std::atoi(wanted) : 60; cut > 0 && !testing::Test::HasFailure(); --cut) {
        const Scratch before;
        const Scratch after;
        const LogLines log;
        diskAfterwards = after.path();
        syncsLeft = 2 + static_cast<int>(random() % 200);
        const int returned = writeUntilTheCut(before.path());
        const SqliteDefaultsStore store(after.path());
        for (int write = returned - 1; write >= std::max(0, returned - 3); --write) {
            const auto found = store.data("key" + std::to_string(write % 3)).value_or("none");
            const auto next = write + 3 == returned ? valueOf(returned) : "";
            EXPECT_TRUE(found == valueOf(write) || found == next) << write << ' ' << found.substr(0, 9);
        }
        EXPECT_THAT(log.lines, testing::IsEmpty());
    }
}

}  // namespace
}  // namespace brindle
