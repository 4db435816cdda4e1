#include <gmock/gmock.h>
#include <unistd.h>

#include <cstdlib>
#include <random>

#include "platform/freedesktop/Scratch.h"
#include "platform/freedesktop/SqliteDefaultsStore.h"

namespace {

namespace fs = std::filesystem;

/// How many more times the disk is told to write its cache before the power fails; the program does not notice.
int syncsLeft = 0;
fs::path diskAfterwards;
std::mt19937 chance(7);

/// What the disk has of a file when the power fails while it is written: of each sector the old content or the new one.
void copyInPart(const fs::path& file, const fs::path& onDisk) {
    constexpr std::size_t sector = 512;
    auto content = brindle::read(file);
    auto before = brindle::read(onDisk);
    before.resize(content.size());
    for (std::size_t at = 0; at < content.size(); at += sector) {
        if (chance() % 2 == 0)
            content.replace(at, sector, before, at, sector);
    }
    std::ofstream(onDisk, std::ios::binary) << content;
}

}  // namespace

/// Takes the place of the C library's. What the disk holds after the power cut is what was synced before it.
extern "C" int fdatasync(int descriptor) {
    const int left = --syncsLeft;
    const auto file = fs::read_symlink("/proc/self/fd/" + std::to_string(descriptor));
    const auto onDisk = diskAfterwards / file.filename();
    const bool isFile = fs::is_regular_file(file);
    const bool isSyncedAgain = file.extension() == ".sqlite3-wal" && left > 3;
    if (left < 0 || (left == 0 && !isFile))
        return 0;
    if (left == 0)
        copyInPart(file, onDisk);
    else if (isFile && !isSyncedAgain)
        fs::copy_file(file, onDisk, fs::copy_options::overwrite_existing);
    for (const auto& each : fs::directory_iterator(diskAfterwards)) {
        if (!fs::exists((isFile ? file.parent_path() : file) / each.path().filename()))
            fs::remove(each);
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
    for (int cut = wanted != nullptr ? std::atoi(wanted) : 60; cut > 0 && !testing::Test::HasFailure(); --cut) {
        const Scratch before;
        const Scratch after;
        const LogLines log;
        diskAfterwards = after.path();
        syncsLeft = 2 + static_cast<int>(chance() % 200);
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
