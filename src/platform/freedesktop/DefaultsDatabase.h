#pragma once

#include <QTimer>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/freedesktop/DefaultsFile.h"

struct sqlite3;
struct sqlite3_stmt;

namespace brindle {

/// A value on its way into the database. The bytes belong to the caller.
struct DefaultsValue {
    enum class Kind { data, string, integer };
    Kind kind;
    std::string_view bytes;
    std::int64_t number = 0;
};

/// A value that owns its bytes.
struct KeptDefaultsValue {
    DefaultsValue::Kind kind;
    std::string bytes;
    std::int64_t number = 0;

    [[nodiscard]] DefaultsValue value() const { return {kind, bytes, number}; }
};

using KeptDefaults = std::map<std::string, KeptDefaultsValue, std::less<>>;

struct DefaultsRow {
    std::string_view key;
    DefaultsValue value;
};

/// The file of the defaults store and its one table. Main thread.
class DefaultsDatabase {
public:
    enum class Outcome {
        ready,     ///< readable, and perhaps writable
        unusable,  ///< it cannot be ours: damaged, from a newer version, or something else altogether
        blocked,   ///< what is there can be neither read nor replaced
        noRoom     ///< nothing is there, and it could not be made
    };
    struct Opening;

    /// Opens the file, or makes it; the folder is there. Never waits for what stands at the path.
    [[nodiscard]] static Opening open(const std::string& path);
    DefaultsDatabase(const DefaultsDatabase&) = delete;
    DefaultsDatabase& operator=(const DefaultsDatabase&) = delete;
    ~DefaultsDatabase();

    [[nodiscard]] bool isReadOnly() const { return isReadOnly_; }
    /// An operation met damage; from then on the file is to be closed and moved aside.
    [[nodiscard]] bool isDamaged() const { return isDamaged_; }

    /// The file is no longer at its path: removed, moved, or another one is there. No when that cannot be seen.
    [[nodiscard]] bool hasMoved() const;
    /// Takes the log of a file that has moved from its path, where the next file's reader would take it for that one's.
    void removeLog();

    /// What can still be read of a file that is damaged or has moved.
    [[nodiscard]] KeptDefaults salvage();

    /// Why a value could not be read, unless by damage; empty when none was missed. What is there must not be written
    /// over then.
    [[nodiscard]] const std::string& readFailure() const { return readFailure_; }

    /// None when the key is absent or has a value of another kind.
    [[nodiscard]] std::optional<std::string> bytes(std::string_view key, DefaultsValue::Kind kind);
    [[nodiscard]] std::optional<std::int64_t> integer(std::string_view key);

    /// Stores all rows or none; they are on the disk when it returns nothing. Else what went wrong, in words.
    [[nodiscard]] std::optional<std::string> write(const std::vector<DefaultsRow>& rows);
    [[nodiscard]] bool isTooLarge(const DefaultsRow& row) const;

private:
    struct StatementDeleter {
        void operator()(sqlite3_stmt* statement) const;
    };
    using Statement = std::unique_ptr<sqlite3_stmt, StatementDeleter>;
    enum class Mode { readWrite, readOnly };

    DefaultsDatabase() = default;
    static Opening connect(const std::string& path, Mode mode, bool isNew);
    int prepareFile(std::string& objection);
    int checkSchema(std::string& objection);
    int execute(const char* sql);
    int evaluate(const char* sql, std::int64_t& number);
    int prepare(const char* sql, Statement& statement);
    int put(const DefaultsRow& row);
    int run(sqlite3_stmt* statement);
    void checkpoint();
    static int handleCommit(void* database, sqlite3* connection, const char* name, int pages);
    bool seek(std::string_view key);
    int noted(int code);

    sqlite3* connection_ = nullptr;
    Statement select_;
    Statement delete_;
    Statement insert_;
    std::string path_;
    defaultsfile::Identity file_;
    defaultsfile::Identity log_;
    QTimer checkpoint_;
    bool isReadOnly_ = false;
    bool isDamaged_ = false;
    std::string readFailure_;
};

struct DefaultsDatabase::Opening {
    Outcome outcome;
    std::string reason;                          ///< unless ready
    std::unique_ptr<DefaultsDatabase> database;  ///< when ready
};

}  // namespace brindle
