#include "platform/freedesktop/SqliteDefaultsStore.h"

#include <signal.h>
#include <sqlite3.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>

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
constexpr uid_t nobody = 65534;

void run(const std::string& path, const std::string& sql) {
    sqlite3* connection = nullptr;
    ASSERT_EQ(sqlite3_open(path.c_str(), &connection), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(connection, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK) << sql;
    sqlite3_close(connection);
}

std::vector<std::string> namesIn(const std::string& folder) {
    std::vector<std::string> names;
    for (const auto& each : std::filesystem::directory_iterator(folder))
        names.push_back(each.path().filename());
    return names;
}

mode_t modeOf(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 07777U : 0;
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
        EXPECT_EQ(store.data("absent"), std::nullopt);
        EXPECT_EQ(store.integer("absent"), 0);
        EXPECT_FALSE(store.boolean("absent"));
        store.setData("data", bytes);
        store.setData("empty", {});
        store.setString("text'", "Dark");
        store.setInteger("number", INT64_MIN);
        store.setInteger("data2", 7);
        store.setData("data2", bytes);
        store.setBoolean("flag", true);
    }
    const SqliteDefaultsStore store(scratch_.path());
    EXPECT_THAT(store.data("data"), Optional(bytes));
    EXPECT_THAT(store.data("empty"), Optional(StrEq("")));
    EXPECT_THAT(store.string("text'"), Optional(StrEq("Dark")));
    EXPECT_EQ(store.integer("number"), INT64_MIN);
    EXPECT_THAT(store.data("data2"), Optional(bytes));
    EXPECT_TRUE(store.boolean("flag"));

    EXPECT_EQ(store.string("data"), std::nullopt);
    EXPECT_EQ(store.data("text'"), std::nullopt);
    EXPECT_EQ(store.string("flag"), std::nullopt);
    EXPECT_EQ(store.integer("text'"), 0);
    EXPECT_THAT(log_.lines, IsEmpty());
}

TEST_F(SqliteDefaultsStoreTest, TellsOfEachWrite) {
    SqliteDefaultsStore store(scratch_.path());
    std::vector<std::string> keys;
    const auto subscription = store.onChange([&](std::string_view key) {
        keys.emplace_back(key);
        EXPECT_EQ(store.integer(key), 3);
    });
    store.setInteger("a", 3);
    store.setInteger("a", 3);
    EXPECT_THAT(keys, ElementsAre("a", "a"));
}

TEST_F(SqliteDefaultsStoreTest, IsForItsUserAloneWhateverTheMask) {
    const auto before = ::umask(0);
    const auto folder = scratch_ / "a/b";
    {
        SqliteDefaultsStore store(folder);
        store.setInteger("key", 1);
        EXPECT_THAT(namesIn(folder), SizeIs(3));
        for (const auto& name : namesIn(folder))
            EXPECT_EQ(modeOf(folder + '/' + name), 0600U) << name;
        EXPECT_EQ(modeOf(folder), 0700U);
        EXPECT_EQ(modeOf(scratch_ / "a"), 0700U);
    }
    ::chmod(folder.c_str(), 0755);
    ::chmod((folder + '/' + databaseName).c_str(), 0644);
    const SqliteDefaultsStore again(folder);
    EXPECT_EQ(modeOf(folder), 0700U);
    EXPECT_EQ(modeOf(folder + '/' + databaseName), 0600U);
    ::umask(before);
}

struct Fault {
    const char* name;
    void (*make)(const std::string& path);
    enum class End { movedAside, inMemory } end;
};

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

const Fault faults[] = {
    {"text", [](const std::string& path) { std::ofstream(path) << "something else altogether, and long enough"; },
     Fault::End::movedAside},
    {"headerDamaged", [](const std::string& path) { makeStore(path), overwrite(path, 0, 200); },
     Fault::End::movedAside},
    {"pagesDamaged", [](const std::string& path) { makeStore(path), overwrite(path, 4096, 40000); },
     Fault::End::movedAside},
    {"truncated", [](const std::string& path) { makeStore(path), std::filesystem::resize_file(path, 5000); },
     Fault::End::movedAside},
    {"newer", [](const std::string& path) { makeStore(path), run(path, "PRAGMA user_version = 2"); },
     Fault::End::movedAside},
    {"otherTable", [](const std::string& path) { run(path, "CREATE TABLE defaults (key, value)"); },
     Fault::End::movedAside},
    {"looserTable",
     [](const std::string& path) {
         run(path, "CREATE TABLE defaults (key TEXT PRIMARY KEY, value); PRAGMA user_version = 1");
     },
     Fault::End::movedAside},
    {"folder", [](const std::string& path) { std::filesystem::create_directory(path); }, Fault::End::inMemory},
    {"fifo", [](const std::string& path) { ::mkfifo(path.c_str(), 0600); }, Fault::End::inMemory},
    {"danglingLink", [](const std::string& path) { std::filesystem::create_symlink("/nowhere/x", path); },
     Fault::End::inMemory},
    {"logIsFolder", [](const std::string& path) { makeStore(path), std::filesystem::create_directory(path + "-wal"); },
     Fault::End::inMemory},
};

class FaultyFileTest : public testing::TestWithParam<Fault> {};

TEST_P(FaultyFileTest, CostsOneLineAndNeverTheProgram) {
    const Scratch scratch;
    const auto path = scratch / databaseName;
    GetParam().make(path);
    const bool isMoved = GetParam().end == Fault::End::movedAside;
    const auto before = isMoved ? read(path) : "";
    const LogLines log;
    {
        SqliteDefaultsStore store(scratch.path());
        EXPECT_EQ(store.data("key25"), std::nullopt);
        store.setData("key25", "new");
        EXPECT_THAT(store.data("key25"), Optional(StrEq("new")));
        store.setInteger("number", 5);
        EXPECT_EQ(store.integer("number"), 5);
    }
    EXPECT_THAT(log.lines, ElementsAre(HasSubstr(databaseName)));
    if (!isMoved)
        return;
    const SqliteDefaultsStore again(scratch.path());
    EXPECT_EQ(again.integer("number"), 5);
    EXPECT_THAT(log.lines, SizeIs(1));
    const auto aside = log.lines[0].substr(log.lines[0].find("now ") + 4);
    EXPECT_EQ(read(aside), before);
}

INSTANTIATE_TEST_SUITE_P(Faults, FaultyFileTest, testing::ValuesIn(faults),
                         [](const auto& each) { return each.param.name; });

TEST_F(SqliteDefaultsStoreTest, TakesAnEmptyFileForANewOne) {
    std::ofstream(file()).close();
    SqliteDefaultsStore(scratch_.path()).setInteger("key", 4);
    EXPECT_EQ(SqliteDefaultsStore(scratch_.path()).integer("key"), 4);
    EXPECT_THAT(log_.lines, IsEmpty());
}

TEST_F(SqliteDefaultsStoreTest, WaitsOutAFullDisk) {
    SqliteDefaultsStore store(scratch_.path());
    store.setString("key", "old");
    ::signal(SIGXFSZ, SIG_IGN);
    rlimit limit{};
    ::getrlimit(RLIMIT_FSIZE, &limit);
    const rlimit tight{64 * 1024, limit.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &tight);
    const std::string secret(200'000, 's');
    store.setData("large", secret);
    store.setData("large2", secret);
    store.setString("key", "new");  // small, but it must not pass by what waits
    EXPECT_THAT(store.data("large"), Optional(secret));
    EXPECT_THAT(store.string("key"), Optional(StrEq("new")));
    EXPECT_THAT(log_.lines, ElementsAre(HasSubstr("Cannot store large: ")));
    EXPECT_THAT(log_.lines[0], testing::Not(HasSubstr("ss")));
    EXPECT_THAT(SqliteDefaultsStore(scratch_.path()).string("key"), Optional(StrEq("old")));

    ::setrlimit(RLIMIT_FSIZE, &limit);
    store.setInteger("number", 1);
    const SqliteDefaultsStore again(scratch_.path());
    EXPECT_THAT(again.data("large"), Optional(secret));
    EXPECT_THAT(again.data("large2"), Optional(secret));
    EXPECT_THAT(again.string("key"), Optional(StrEq("new")));
    EXPECT_EQ(again.integer("number"), 1);
    EXPECT_THAT(log_.lines, SizeIs(1));
}

TEST_F(SqliteDefaultsStoreTest, CreatesTheFileOnceThereIsRoom) {
    ::signal(SIGXFSZ, SIG_IGN);
    rlimit limit{};
    ::getrlimit(RLIMIT_FSIZE, &limit);
    const rlimit none{0, limit.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &none);
    SqliteDefaultsStore store(scratch_.path());
    store.setInteger("first", 1);
    EXPECT_EQ(store.integer("first"), 1);
    ::setrlimit(RLIMIT_FSIZE, &limit);
    store.setInteger("second", 2);
    const SqliteDefaultsStore again(scratch_.path());
    EXPECT_EQ(again.integer("first"), 1);
    EXPECT_EQ(again.integer("second"), 2);
    EXPECT_THAT(log_.lines, ElementsAre(HasSubstr("Cannot open ")));
}

TEST_F(SqliteDefaultsStoreTest, RefusesWhatTheDatabaseCannotHold) {
    constexpr std::size_t size = 1'000'000'000;
    void* memory = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    ASSERT_NE(memory, MAP_FAILED);
    SqliteDefaultsStore store(scratch_.path());
    store.setData("key", "old");
    store.setData("key", {static_cast<const char*>(memory), size});
    EXPECT_THAT(store.data("key"), Optional(StrEq("old")));
    EXPECT_THAT(log_.lines, ElementsAre("Cannot store key: it is too large"));
    ::munmap(memory, size);
}

TEST_F(SqliteDefaultsStoreTest, HasWrittenWhatAKilledProcessReturnedFrom) {
    int reports[2];
    ASSERT_EQ(::pipe(reports), 0);
    const pid_t writer = ::fork();
    if (writer == 0) {
        SqliteDefaultsStore store(scratch_.path());
        for (std::int64_t i = 1;; ++i) {
            store.setInteger("count", i);
            store.setData("data", std::string(static_cast<std::size_t>(i) * 100, 'x'));
            if (::write(reports[1], &i, sizeof i) != sizeof i)
                ::_exit(1);
        }
    }
    std::int64_t reported = 0;
    while (reported < 40 && ::read(reports[0], &reported, sizeof reported) == sizeof reported) {
    }
    ::kill(writer, SIGKILL);
    ::waitpid(writer, nullptr, 0);
    ::close(reports[1]);
    for (std::int64_t next = 0; ::read(reports[0], &next, sizeof next) == sizeof next;)
        reported = next;
    ::close(reports[0]);

    const SqliteDefaultsStore store(scratch_.path());
    EXPECT_GE(reported, 40);
    EXPECT_GE(store.integer("count"), reported);
    EXPECT_GE(store.data("data").value_or("").size(), static_cast<std::size_t>(reported) * 100);
    EXPECT_THAT(log_.lines, IsEmpty());
}

/// As another user for a while, in a folder that belongs to root.
class ForeignFolderTest : public SqliteDefaultsStoreTest {
protected:
    void SetUp() override {
        if (::geteuid() != 0)
            GTEST_SKIP() << "only root can become somebody else";
        {
            SqliteDefaultsStore store(scratch_.path());
            store.setInteger("key", 1);
        }
        ::chmod(scratch_.path().c_str(), 0755);
    }
    void TearDown() override { (void)::seteuid(0); }

    void become(uid_t owner, mode_t mode) {
        ASSERT_EQ(::chown(file().c_str(), owner, owner), 0);
        ASSERT_EQ(::chmod(file().c_str(), mode), 0);
        ASSERT_EQ(::seteuid(nobody), 0);
    }
};

TEST_F(ForeignFolderTest, ReadsWhereItCannotWriteAndSavesOnceItCan) {
    become(nobody, 0600);
    SqliteDefaultsStore store(scratch_.path());
    EXPECT_EQ(store.integer("key"), 1);
    store.setInteger("key", 2);
    store.setInteger("other", 3);
    EXPECT_EQ(store.integer("key"), 2);
    EXPECT_THAT(log_.lines, ElementsAre(HasSubstr("Cannot store key: ")));

    ASSERT_EQ(::seteuid(0), 0);
    ASSERT_EQ(::chown(scratch_.path().c_str(), nobody, nobody), 0);
    ASSERT_EQ(::seteuid(nobody), 0);
    store.setInteger("last", 4);
    const SqliteDefaultsStore again(scratch_.path());
    EXPECT_EQ(again.integer("key"), 2);
    EXPECT_EQ(again.integer("other"), 3);
    EXPECT_EQ(again.integer("last"), 4);
}

TEST_F(ForeignFolderTest, LeavesAFileAloneThatBelongsToSomebodyElse) {
    become(0, 0666);
    SqliteDefaultsStore store(scratch_.path());
    store.setInteger("key", 2);
    EXPECT_EQ(store.integer("key"), 2);
    EXPECT_THAT(log_.lines, ElementsAre(HasSubstr("belongs to somebody else")));
}

TEST_F(ForeignFolderTest, GoesOnWithoutAFileThatItMayNotRead) {
    ASSERT_EQ(::chown(scratch_.path().c_str(), nobody, nobody), 0);
    become(nobody, 0600);
    ASSERT_EQ(::seteuid(0), 0);
    ASSERT_EQ(::chown(file().c_str(), nobody, nobody), 0);
    ASSERT_EQ(::chmod(file().c_str(), 0), 0);
    ASSERT_EQ(::seteuid(nobody), 0);
    SqliteDefaultsStore store(scratch_.path());
    store.setInteger("key", 2);
    EXPECT_EQ(store.integer("key"), 2);
    EXPECT_THAT(log_.lines, ElementsAre(HasSubstr("Permission denied")));
}

}  // namespace
}  // namespace brindle
