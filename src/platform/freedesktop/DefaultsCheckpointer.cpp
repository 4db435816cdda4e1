#include "platform/freedesktop/DefaultsCheckpointer.h"

#include <sqlite3.h>

#include <system_error>

namespace brindle {

DefaultsCheckpointer::~DefaultsCheckpointer() {
    if (thread_.joinable())
        thread_.join();
}

void DefaultsCheckpointer::begin() {
    if (isUnderWay_.exchange(true))
        return;
    if (thread_.joinable())
        thread_.join();  // it has ended
    try {
        thread_ = std::thread([this] { checkpoint(); });
    } catch (const std::system_error&) {
        isUnderWay_ = false;  // the log grows until the next one
    }
}

void DefaultsCheckpointer::checkpoint() {
    sqlite3* connection = nullptr;
    // One that fails has done a part or nothing, and the next write begins another.
    if (sqlite3_open_v2(path_.c_str(), &connection, SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_READWRITE, nullptr) == SQLITE_OK)
        sqlite3_wal_checkpoint_v2(connection, "main", SQLITE_CHECKPOINT_PASSIVE, nullptr, nullptr);
    sqlite3_db_config(connection, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    sqlite3_close(connection);
    isUnderWay_ = false;
}

}  // namespace brindle
