#include "platform/freedesktop/SqliteDefaultsStore.h"

#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <random>

#include "platform/Await.h"
#include "platform/freedesktop/Scratch.h"

namespace brindle {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Optional;
using testing::SizeIs;
using testing::StrEq;

constexpr const char* databaseName = "defaults.sqlite3";

void run(const std::string& path, const std::string& sql) {
    sqlite3* connection = nullptr;
    ASSERT_EQ(sqlite3_open(path.c_str(), &connection), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(connection, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK) << sql;
    sqlite3_close(connection);
}

class SqliteDefaultsStoreTest : public testing::Test {
protected:
    [[nodiscard]] std::string file() const { return scratch_ / databaseName; }

    Scratch scratch_;
    LogLines log_;
};

TEST_F(SqliteDefaultsStoreTest, KeepsEachKindApartAndExactly) {
    const std::string bytes("\0\xFF\n'", 4);
    {
        SqliteDefaultsStore store(scratch_.path());
        std::vector<std::string> keys;
        const auto subscription = store.onChange([&](std::string_view key) {
            keys.emplace_back(key);
            EXPECT_EQ(store.integer(key), 3) << "it is stored when it is told";
        });
        store.setInteger("a", 3);
        store.setInteger("a", 3);
        EXPECT_THAT(keys, ElementsAre("a", "a"));
    }
    SqliteDefaultsStore(scratch_.path()).setData("empty", {});
    SqliteDefaultsStore(scratch_.path()).setString("text'", "Dark");
    SqliteDefaultsStore(scratch_.path()).setInteger("number", INT64_MIN);
    SqliteDefaultsStore(scratch_.path()).setInteger("data", 7);
    SqliteDefaultsStore(scratch_.path()).setData("data", bytes);
    const SqliteDefaultsStore store(scratch_.path());
    EXPECT_THAT(store.data("data"), Optional(bytes));
    EXPECT_THAT(store.data("empty"), Optional(StrEq("")));
    EXPECT_THAT(store.string("text'"), Optional(StrEq("Dark")));
    EXPECT_EQ(store.integer("number"), INT64_MIN);
    EXPECT_FALSE(store.string("data") || store.data("text'") || store.string("absent") || store.integer("text'"));
    EXPECT_THAT(log_.lines, IsEmpty());
}

TEST_F(SqliteDefaultsStoreTest, IsForItsUserAloneWhateverTheMask) {
    const auto before = ::umask(0);
    const auto folder = scratch_ / "a/b";
    for (int i = 0; i < 2; ++i) {
        SqliteDefaultsStore store(folder);
        store.setInteger("key", 1);
        int files = 0;
        for (const auto& each : std::filesystem::directory_iterator(folder)) {
            ++files;
            EXPECT_EQ(static_cast<int>(each.status().permissions()), 0600) << each.path();
        }
        EXPECT_EQ(files, 3);
        EXPECT_EQ(static_cast<int>(std::filesystem::status(folder).permissions()), 0700);
        ::chmod(folder.c_str(), 0755);  // and again at the next start
        ::chmod((folder + '/' + databaseName).c_str(), 0644);
    }
    ::umask(before);
}

void makeStore(const std::string& path) {
    SqliteDefaultsStore store(std::filesystem::path(path).parent_path());
    for (int i = 0; i < 50; ++i)
        store.setData("key" + std::to_string(i), std::string(1000, 'x'));
}

void overwrite(const std::string& path, std::streamoff from, std::size_t count) {
    std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(from);
    file << std::string(count, '\xA5');
}

TEST(FaultyFileTest, CostsOneLineAndNeverTheProgram) {
    namespace fs = std::filesystem;
    struct Fault {
        const char* name;
        void (*make)(const std::string& path);
        bool isFile = true;
    };
    const Fault faults[] = {
        {"damaged header", [](auto& path) { makeStore(path), overwrite(path, 0, 200); }},
        {"damaged pages", [](auto& path) { makeStore(path), overwrite(path, 4096, 40000); }},
        {"truncated", [](auto& path) { makeStore(path), fs::resize_file(path, 5000); }},
        {"newer", [](auto& path) { makeStore(path), run(path, "PRAGMA user_version = 2"); }},
        {"looser table",
         [](auto& path) { run(path, "CREATE TABLE defaults (key TEXT PRIMARY KEY, value); PRAGMA user_version = 1"); }},
        {"folder", [](auto& path) { fs::create_directory(path); }, false},
        {"fifo", [](auto& path) { ::mkfifo(path.c_str(), 0600); }, false},
        {"link to nowhere", [](auto& path) { fs::create_symlink("nowhere", path); }, false},
        {"log is a folder", [](auto& path) { makeStore(path), fs::create_directory(path + "-wal"); }, false},
    };
    for (const auto& fault : faults) {
        SCOPED_TRACE(fault.name);
        const Scratch scratch;
        const auto path = scratch / databaseName;
        fault.make(path);
        const auto before = fault.isFile ? read(path) : "";
        const LogLines log;
        {
            SqliteDefaultsStore store(scratch.path());
            EXPECT_EQ(store.data("key25"), std::nullopt);
            store.setData("key25", "new");
            EXPECT_THAT(store.data("key25"), Optional(StrEq("new")));
        }
        ASSERT_THAT(log.lines, ElementsAre(HasSubstr(databaseName)));
        EXPECT_THAT(SqliteDefaultsStore(scratch.path()).data("key25"), Optional(StrEq("new")));
        EXPECT_THAT(log.lines, SizeIs(1));
        const auto aside = log.lines[0].substr(log.lines[0].find("now ") + 4);
        EXPECT_TRUE(fault.isFile ? read(aside) == before : fs::exists(fs::symlink_status(aside)));
    }
}

TEST_F(SqliteDefaultsStoreTest, TakesOverWhatCanBeReadOfADamagedFile) {
    {
        SqliteDefaultsStore store(scratch_.path());
        store.setData("a", std::string(300'000, 'a'));
        store.setData("b", "lists");
        store.setInteger("c", 7);
        store.setString("d", "Light");
    }
    const auto text = read(file());
    overwrite(file(), static_cast<std::streamoff>(text.find("aaaa", text.size() / 2)) / 32768 * 32768, 4);
    for (int start = 0; start < 2; ++start) {
        const SqliteDefaultsStore store(scratch_.path());
        EXPECT_THAT(store.string("d"), Optional(StrEq("Light")));
        EXPECT_THAT(store.data("b"), Optional(StrEq("lists")));
        EXPECT_EQ(store.integer("c"), 7);
        EXPECT_EQ(store.data("a"), std::nullopt);
    }
    EXPECT_THAT(log_.lines, ElementsAre(HasSubstr("it is damaged")));
}

TEST_F(SqliteDefaultsStoreTest, ComesThroughEveryCutAndFlippedBit) {
    makeStore(file());
    const auto sound = read(file());
    std::mt19937 random(12);
    constexpr std::size_t header = 100;  // bytes, each of which is hit once
    const std::size_t pages = sound.size() / 4096;
    for (std::size_t i = 1; i < pages + header + 20; ++i) {
        SCOPED_TRACE(i);
        auto broken = sound;
        if (i < pages)
            broken.resize(i * 4096);
        else
            broken[i - pages < header ? i - pages : random() % broken.size()] ^= static_cast<char>(1U << random() % 8);
        const Scratch folder;
        const LogLines log;
        folder.write(databaseName, broken);
        {
            SqliteDefaultsStore store(folder.path());
            for (int key = 0; key < 50; ++key)
                (void)store.data("key" + std::to_string(key));
            store.setData("key7", "new");
        }
        EXPECT_THAT(SqliteDefaultsStore(folder.path()).data("key7"), Optional(StrEq("new")));
        ASSERT_LE(log.lines.size(), 1U) << log.lines[1];
        if (!log.lines.empty()) {
            EXPECT_TRUE(read(log.lines[0].substr(log.lines[0].find("now ") + 4)) == broken) << log.lines[0];
        }
    }
}

TEST_F(SqliteDefaultsStoreTest, SharesItsFileWithAnotherProgramAndWaitsOutItsLock) {
    SqliteDefaultsStore store(scratch_.path());
    SqliteDefaultsStore other(scratch_.path());
    store.setInteger("number", 1);
    other.setInteger("number", 2);
    EXPECT_EQ(store.integer("number"), 2);
    sqlite3* holder = nullptr;
    ASSERT_EQ(sqlite3_open(file().c_str(), &holder), SQLITE_OK);
    sqlite3_exec(holder, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr);
    store.setInteger("held", 1);
    sqlite3_close(holder);
    EXPECT_THAT(log_.lines, ElementsAre("Cannot store held: database is locked"));
    store.setInteger("next", 2);
    EXPECT_EQ(other.integer("held") + other.integer("next"), 3);
}

TEST_F(SqliteDefaultsStoreTest, GoesOnWhenItsFileIsRemovedOrReplaced) {
    const std::string entries(100'000, 'a');
    SqliteDefaultsStore store(scratch_.path());
    store.setData("entries", entries);
    std::filesystem::remove_all(scratch_.path());
    store.setInteger("removed", 1);
    EXPECT_THAT(SqliteDefaultsStore(scratch_.path()).data("entries"), Optional(entries));

    const Scratch other;
    makeStore(other / databaseName);
    const auto theirs = read(other / databaseName);
    std::filesystem::rename(other / databaseName, file());
    store.setInteger("replaced", 2);
    const SqliteDefaultsStore again(scratch_.path());
    EXPECT_THAT(again.data("entries"), Optional(entries));
    EXPECT_EQ(again.integer("removed") + again.integer("replaced"), 3);
    EXPECT_EQ(again.data("key25"), std::nullopt);
    ASSERT_THAT(log_.lines, ElementsAre(HasSubstr("was gone"), HasSubstr("put in the place")));
    const auto aside = log_.lines[1].substr(log_.lines[1].find("now ") + 4);
    EXPECT_TRUE(read(aside) == theirs);
    EXPECT_FALSE(std::filesystem::exists(aside + "-wal")) << "who opens it would read our log into it";
}

TEST_F(SqliteDefaultsStoreTest, CarriesALargeLogIntoTheFileSoon) {
    constexpr std::size_t large = 20'000'000;
    SqliteDefaultsStore store(scratch_.path());
    store.setData("entries", std::string(large, 'a'));
    EXPECT_TRUE(await([&] { return std::filesystem::file_size(file()) > large; }));
    store.setInteger("next", 1);
    EXPECT_LT(std::filesystem::file_size(file() + "-wal"), large / 2);
}

TEST_F(SqliteDefaultsStoreTest, OverwritesWhatIsDeleted) {
    {
        SqliteDefaultsStore store(scratch_.path());
        store.setData("entries", std::string(100'000, 'a') + "first" + std::string(100'000, 'b'));
        store.setData("entries", "second");
    }
    EXPECT_THAT(read(file()), testing::Not(HasSubstr("first")));
}

TEST_F(SqliteDefaultsStoreTest, MovesAFileOfSomebodyElseAside) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can make such a file";
    makeStore(file());
    ASSERT_EQ(::chown(file().c_str(), 65534, 65534), 0);
    const auto before = read(file());
    SqliteDefaultsStore store(scratch_.path());
    store.setInteger("key", 2);
    EXPECT_EQ(store.integer("key"), 2);
    ASSERT_THAT(log_.lines, ElementsAre(HasSubstr("belongs to somebody else")));
    EXPECT_TRUE(read(log_.lines[0].substr(log_.lines[0].find("now ") + 4)) == before);
}

}  // namespace
}  // namespace brindle
