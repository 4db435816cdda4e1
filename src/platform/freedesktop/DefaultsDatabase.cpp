#include "platform/freedesktop/DefaultsDatabase.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <utility>

#include "base/HugePages.h"
#include "platform/freedesktop/DefaultsFile.h"
#include "platform/freedesktop/Files.h"

namespace brindle {

namespace {

constexpr int schemaVersion = 1;
constexpr int busyTimeout = 20;  // milliseconds; only somebody's shell on this file ever holds it
constexpr int fullLog = 128;     // pages; from this length on it goes into the file
constexpr int largeLog = 512;  // pages; this much of it does so later, which halves the longest time without an answer
constexpr std::chrono::seconds later{1};
// A history of a thousand entries is a row of a megabyte: in pages of this size SQLite writes it in half the processor
// time that its own choice takes, and a row of a few kilobytes in the same.
constexpr const char* createTable =
    "PRAGMA page_size = 32768;"
    "BEGIN IMMEDIATE;"
    "CREATE TABLE defaults (key TEXT PRIMARY KEY NOT NULL, value ANY NOT NULL) STRICT, WITHOUT ROWID;"
    "PRAGMA user_version = 1;"
    "COMMIT;";

// By the sign in front of the key the row is looked for by walking. A lookup in the table's order compares whole rows
// and so reads the history's megabyte for every setting, and its damage for every sound row.
constexpr const char* selectValue = "SELECT value FROM defaults WHERE +key = ?1";

constexpr const char* tableIsOurs =
    "SELECT (SELECT wr AND strict FROM pragma_table_list WHERE schema = 'main' AND name = 'defaults')"
    " AND (SELECT group_concat(name || ' ' || upper(type) || ' ' || \"notnull\" || ' ' || pk)"
    " FROM pragma_table_xinfo('defaults')) = 'key TEXT 1 1,value ANY 1 0'";

// Not one statement to replace it: that compares whole rows too. Deleted by walking and then inserted, a megabyte costs
// a quarter less.
constexpr const char* deleteValue = "DELETE FROM defaults WHERE +key = ?1";
constexpr const char* insertValue = "INSERT INTO defaults (key, value) VALUES (?1, ?2)";

// Every write waits for the disk. The log goes into the file at 4 MiB (of the pages above); a large write leaves a
// larger one, which shrinks to this at the next. What people copied gets into no temporary file, and what they deleted
// is overwritten.
constexpr const char* durability =
    "PRAGMA journal_mode = WAL; PRAGMA synchronous = FULL; PRAGMA journal_size_limit = 4194304;"
    "PRAGMA temp_store = MEMORY; PRAGMA secure_delete = ON;";

/// As a URI for reading where the log's files cannot be made. Without a log the file alone is the whole truth, and need
/// not be guarded against a writer.
std::string readOnlyUri(const std::string& path) {
    std::string uri = "file:";
    for (const char each : path) {
        if (each == '%' || each == '?' || each == '#') {
            std::array<char, 4> escaped{};
            std::snprintf(escaped.data(), escaped.size(), "%%%02X", static_cast<unsigned>(each));
            uri += escaped.data();
        } else {
            uri += each;
        }
    }
    return defaultsfile::isEmpty(path + "-wal") ? uri + "?immutable=1" : uri;
}

bool isWriteRefused(int code) {
    const int primary = code & 0xFF;
    return primary == SQLITE_CANTOPEN || primary == SQLITE_READONLY || primary == SQLITE_PERM ||
           primary == SQLITE_FULL || code == SQLITE_IOERR_SHMSIZE;  // no room for the log's index
}

std::string reasonOf(sqlite3* connection, int code) {
    std::string text = sqlite3_errstr(code);
    const int error = sqlite3_system_errno(connection);
    if ((code & 0xFF) == SQLITE_IOERR && error != 0)
        text += " (" + files::reason(error) + ")";
    return text;
}

/// SQLite makes a row of its own of what it is given. Huge pages under a large one spare a sixth of its writing. False
/// when SQLite is in use already.
bool adviseOnMemory() {
    static sqlite3_mem_methods plain;
    sqlite3_config(SQLITE_CONFIG_GETMALLOC, &plain);
    auto advised = plain;
    advised.xMalloc = [](int size) {
        void* memory = plain.xMalloc(size);
        if (memory != nullptr)
            adviseHugePages(memory, static_cast<std::size_t>(size));
        return memory;
    };
    return sqlite3_config(SQLITE_CONFIG_MALLOC, &advised) == SQLITE_OK;
}

bool isDamage(int code) {
    return (code & 0xFF) == SQLITE_CORRUPT || (code & 0xFF) == SQLITE_NOTADB;
}

/// Those of the row's first column; none when they cannot be read.
std::optional<std::string> bytesOf(sqlite3_stmt* row) {
    // A blob first: asking a text for its size alone would convert it.
    const auto* start = static_cast<const char*>(sqlite3_column_blob(row, 0));
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(row, 0));
    if (start == nullptr && size > 0)
        return std::nullopt;
    return std::string(start != nullptr ? start : "", size);
}

std::optional<KeptDefaultsValue> valueOf(sqlite3_stmt* row) {
    using Kind = DefaultsValue::Kind;
    const int type = sqlite3_column_type(row, 0);
    if (type == SQLITE_INTEGER)
        return KeptDefaultsValue{Kind::integer, {}, sqlite3_column_int64(row, 0)};
    auto bytes = type == SQLITE_BLOB || type == SQLITE_TEXT ? bytesOf(row) : std::nullopt;
    if (!bytes)
        return std::nullopt;
    return KeptDefaultsValue{type == SQLITE_BLOB ? Kind::data : Kind::string, std::move(*bytes)};
}

}  // namespace

DefaultsDatabase::Opening DefaultsDatabase::open(const std::string& path) {
    if (auto obstacle = defaultsfile::obstacle(path))
        return {Outcome::unusable, std::move(*obstacle), nullptr};
    const bool isNew = !defaultsfile::exists(path);
    const int error = defaultsfile::secure(path);
    if (error != 0 && isNew)
        return {Outcome::noRoom, files::reason(error), nullptr};
    if (error != 0 && ::faccessat(AT_FDCWD, path.c_str(), R_OK, AT_EACCESS) != 0)
        return {Outcome::blocked, files::reason(error), nullptr};

    auto opening = connect(path, error == 0 ? Mode::readWrite : Mode::readOnly, isNew);
    if (opening.outcome == Outcome::noRoom)
        ::unlink(path.c_str());  // an empty file that was made here
    return opening;
}

DefaultsDatabase::Opening DefaultsDatabase::connect(const std::string& path, Mode mode, bool isNew) {
    [[maybe_unused]] static const bool isAdvised = adviseOnMemory();
    std::unique_ptr<DefaultsDatabase> database(new DefaultsDatabase);
    database->path_ = path;
    database->isReadOnly_ = mode == Mode::readOnly;
    const std::string name = database->isReadOnly_ ? readOnlyUri(path) : path;
    const int access = database->isReadOnly_ ? SQLITE_OPEN_READONLY | SQLITE_OPEN_URI : SQLITE_OPEN_READWRITE;
    std::string objection;
    int code = sqlite3_open_v2(name.c_str(), &database->connection_, SQLITE_OPEN_NOMUTEX | access, nullptr);
    if (code == SQLITE_OK)
        code = database->prepareFile(objection);
    if (code == SQLITE_OK && objection.empty())
        return {Outcome::ready, {}, std::move(database)};
    // The file may be writable while the folder, where the log goes, is not.
    if (isWriteRefused(code) && !isNew && mode == Mode::readWrite)
        return connect(path, Mode::readOnly, isNew);

    // What is not ours stays as it is, its log included.
    sqlite3_db_config(database->connection_, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    if (!objection.empty())
        return {Outcome::unusable, std::move(objection), nullptr};
    // The statements are sound, so that an error in one of them comes of what the file says of its own form.
    const bool isUnusable = isDamage(code) || (code & 0xFF) == SQLITE_ERROR;
    const Outcome outcome = isUnusable ? Outcome::unusable : isNew ? Outcome::noRoom : Outcome::blocked;
    return {outcome, reasonOf(database->connection_, code), nullptr};
}

DefaultsDatabase::~DefaultsDatabase() {
    select_.reset();
    delete_.reset();
    insert_.reset();
    if (isDamaged_)
        sqlite3_db_config(connection_, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    sqlite3_close(connection_);
}

int DefaultsDatabase::prepareFile(std::string& objection) {
    sqlite3_extended_result_codes(connection_, 1);
    sqlite3_busy_timeout(connection_, busyTimeout);
    int code = checkSchema(objection);
    if (code != SQLITE_OK || !objection.empty())
        return code;
    // The file's own form can say that it is not to be written by this SQLite.
    if (!isReadOnly_ && sqlite3_db_readonly(connection_, "main") == 1) {
        objection = "it is from a newer version";
        return code;
    }
    if (!isReadOnly_)
        code = execute(durability);
    sqlite3_wal_hook(connection_, &DefaultsDatabase::handleCommit, this);
    if (code == SQLITE_OK)
        code = prepare(selectValue, select_);
    if (code == SQLITE_OK)
        code = prepare(deleteValue, delete_);
    if (code == SQLITE_OK)
        code = prepare(insertValue, insert_);
    std::int64_t version = 0;
    if (code == SQLITE_OK)
        code = evaluate("PRAGMA user_version", version);  // a read makes the log, if there is none
    file_ = defaultsfile::identity(path_);
    log_ = defaultsfile::identity(path_ + "-wal");
    checkpoint_.setSingleShot(true);
    checkpoint_.callOnTimeout([this] { checkpoint(); });
    return code;
}

/// Makes the table in an empty file. `objection` says why a sound file is not ours.
int DefaultsDatabase::checkSchema(std::string& objection) {
    std::int64_t version = 0;
    std::int64_t tables = 0;
    std::int64_t isOurs = 0;
    int code = evaluate("PRAGMA user_version", version);
    if (code == SQLITE_OK)
        code = evaluate("SELECT count(*) FROM sqlite_schema", tables);
    if (code != SQLITE_OK)
        return code;
    if (version == 0 && tables == 0)
        return execute(createTable);
    if (version > schemaVersion) {
        objection = "it is from a newer version";
        return SQLITE_OK;
    }
    code = evaluate(tableIsOurs, isOurs);
    if (code == SQLITE_OK && (isOurs == 0 || version != schemaVersion))
        objection = "its tables are not Brindle's";
    return code;
}

std::optional<std::string> DefaultsDatabase::bytes(std::string_view key, DefaultsValue::Kind kind) {
    std::optional<std::string> found;
    const int type = kind == DefaultsValue::Kind::data ? SQLITE_BLOB : SQLITE_TEXT;
    if (seek(key) && sqlite3_column_type(select_.get(), 0) == type)
        found = bytesOf(select_.get());
    sqlite3_reset(select_.get());
    sqlite3_db_release_memory(connection_);  // what was read is not read again
    return found;
}

std::optional<std::int64_t> DefaultsDatabase::integer(std::string_view key) {
    std::optional<std::int64_t> found;
    if (seek(key) && sqlite3_column_type(select_.get(), 0) == SQLITE_INTEGER)
        found = sqlite3_column_int64(select_.get(), 0);
    sqlite3_reset(select_.get());
    return found;
}

bool DefaultsDatabase::hasMoved() const {
    return defaultsfile::isElsewhere(path_, file_);
}

void DefaultsDatabase::removeLog() {
    if (defaultsfile::isElsewhere(path_ + "-wal", log_))
        return;
    ::unlink((path_ + "-wal").c_str());
    ::unlink((path_ + "-shm").c_str());
}

KeptDefaults DefaultsDatabase::salvage() {
    std::vector<std::string> keys;  // at first: met damage ends every statement that runs
    Statement statement;
    if (prepare("SELECT key FROM defaults", statement) != SQLITE_OK)
        return {};
    while (sqlite3_step(statement.get()) == SQLITE_ROW)
        keys.push_back(bytesOf(statement.get()).value_or(""));

    KeptDefaults found;
    for (const auto& key : keys) {
        if (auto value = seek(key) ? valueOf(select_.get()) : std::nullopt)
            found.emplace(key, std::move(*value));
        sqlite3_reset(select_.get());
    }
    return found;
}

std::optional<std::string> DefaultsDatabase::write(const std::vector<DefaultsRow>& rows) {
    int code = execute("BEGIN IMMEDIATE");
    for (auto row = rows.begin(); code == SQLITE_OK && row != rows.end(); ++row)
        code = put(*row);
    if (code == SQLITE_OK)
        code = execute("COMMIT");
    if (code == SQLITE_OK)
        return std::nullopt;
    auto reason = reasonOf(connection_, code);
    if (sqlite3_get_autocommit(connection_) == 0)
        execute("ROLLBACK");
    return reason;
}

bool DefaultsDatabase::isTooLarge(const DefaultsRow& row) const {
    constexpr std::size_t header = 64;  // more than the few bytes that a record has beside key and value
    const auto limit = static_cast<std::size_t>(sqlite3_limit(connection_, SQLITE_LIMIT_LENGTH, -1));
    return row.key.size() + row.value.bytes.size() + header > limit;
}

int DefaultsDatabase::put(const DefaultsRow& row) {
    int code = sqlite3_bind_text64(delete_.get(), 1, row.key.data(), row.key.size(), SQLITE_STATIC, SQLITE_UTF8);
    if (code == SQLITE_OK)
        code = run(delete_.get());
    if (code != SQLITE_OK)
        return code;
    sqlite3_stmt* statement = insert_.get();
    const auto& value = row.value;
    const char* start = value.bytes.data() != nullptr ? value.bytes.data() : "";  // null would bind NULL
    code = sqlite3_bind_text64(statement, 1, row.key.data(), row.key.size(), SQLITE_STATIC, SQLITE_UTF8);
    if (code == SQLITE_OK && value.kind == DefaultsValue::Kind::data)
        code = sqlite3_bind_blob64(statement, 2, start, value.bytes.size(), SQLITE_STATIC);
    else if (code == SQLITE_OK && value.kind == DefaultsValue::Kind::string)
        code = sqlite3_bind_text64(statement, 2, start, value.bytes.size(), SQLITE_STATIC, SQLITE_UTF8);
    else if (code == SQLITE_OK)
        code = sqlite3_bind_int64(statement, 2, value.number);
    return code == SQLITE_OK ? run(statement) : noted(code);
}

/// Runs a statement that has no rows and lets go of what is bound to it.
int DefaultsDatabase::run(sqlite3_stmt* statement) {
    sqlite3_step(statement);
    const int code = sqlite3_reset(statement);  // the step's own failure shows again here
    sqlite3_clear_bindings(statement);
    return noted(code);
}

/// SQLite calls it when something was written, with the length of the log.
int DefaultsDatabase::handleCommit(void* database, sqlite3* /*connection*/, const char* /*name*/, int pages) {
    auto& self = *static_cast<DefaultsDatabase*>(database);
    if (pages >= largeLog && !self.checkpoint_.isActive())
        self.checkpoint_.start(later);
    else if (pages >= fullLog && pages < largeLog)
        self.checkpoint();
    return SQLITE_OK;
}

/// The log goes into the file. What could not be taken over stays in it until the next time.
void DefaultsDatabase::checkpoint() {
    sqlite3_wal_checkpoint_v2(connection_, "main", SQLITE_CHECKPOINT_PASSIVE, nullptr, nullptr);
}

/// Leaves the statement at the key's row; whoever calls it resets the statement.
bool DefaultsDatabase::seek(std::string_view key) {
    // The statement keeps no view of the key beyond the lookup: every lookup binds its own.
    sqlite3_bind_text64(select_.get(), 1, key.data(), key.size(), SQLITE_STATIC, SQLITE_UTF8);
    const int code = noted(sqlite3_step(select_.get()));
    if (code != SQLITE_ROW && code != SQLITE_DONE && !isDamage(code))
        readFailure_ = reasonOf(connection_, code);
    return code == SQLITE_ROW;
}

int DefaultsDatabase::execute(const char* sql) {
    return noted(sqlite3_exec(connection_, sql, nullptr, nullptr, nullptr));
}

int DefaultsDatabase::evaluate(const char* sql, std::int64_t& number) {
    Statement statement;
    int code = prepare(sql, statement);
    if (code != SQLITE_OK)
        return code;
    code = noted(sqlite3_step(statement.get()));
    number = sqlite3_column_int64(statement.get(), 0);
    return code == SQLITE_ROW ? SQLITE_OK : code;
}

int DefaultsDatabase::prepare(const char* sql, Statement& statement) {
    sqlite3_stmt* made = nullptr;
    const int code = noted(sqlite3_prepare_v3(connection_, sql, -1, SQLITE_PREPARE_PERSISTENT, &made, nullptr));
    statement.reset(made);
    return code;
}

int DefaultsDatabase::noted(int code) {
    isDamaged_ = isDamaged_ || isDamage(code);
    return code;
}

void DefaultsDatabase::StatementDeleter::operator()(sqlite3_stmt* statement) const {
    sqlite3_finalize(statement);
}

}  // namespace brindle
