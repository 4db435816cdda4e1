#include "platform/freedesktop/SqliteDefaultsStore.h"

#include <sys/stat.h>

#include <utility>

#include "base/Log.h"
#include "platform/freedesktop/DefaultsFile.h"
#include "platform/freedesktop/Files.h"
#include "platform/freedesktop/XdgPaths.h"

namespace brindle {

SqliteDefaultsStore::SqliteDefaultsStore(std::string folder)
    : folder_(std::move(folder)), path_(folder_ + "/defaults.sqlite3") {
    open();
    if (!trouble_.empty())
        log("Cannot open " + path_ + ": " + trouble_);
}

SqliteDefaultsStore::~SqliteDefaultsStore() {
    if (!unsaved_.empty() && database_)
        (void)database_->write(unsavedRows());  // the last chance; the trouble was reported when it began
}

std::string SqliteDefaultsStore::defaultFolder() {
    return xdg::dataHome() + "/brindle";
}

void SqliteDefaultsStore::open() const {
    using Outcome = DefaultsDatabase::Outcome;
    DefaultsDatabase::Opening opening{Outcome::noRoom, {}, nullptr};
    if (auto failure = files::makeFolders(folder_)) {
        opening.reason = std::move(*failure);
    } else {
        ::chmod(folder_.c_str(), S_IRWXU);  // a folder that is not ours shows below
        opening = DefaultsDatabase::open(path_);
    }
    if (opening.outcome == Outcome::unusable && moveAside(opening.reason))
        opening = DefaultsDatabase::open(path_);
    isMissing_ = opening.outcome == Outcome::noRoom;
    trouble_ = std::move(opening.reason);
    database_ = std::move(opening.database);
}

/// Looks whether a disk that was full or read-only is so no more. A file that appeared meanwhile was never read, and
/// what this process holds must not overwrite it.
void SqliteDefaultsStore::reopenAfterTrouble() {
    if (database_ ? !database_->isReadOnly() : !isMissing_ || defaultsfile::exists(path_))
        return;
    database_.reset();  // first: one process has one view of the log, and what was opened for reading stays read-only
    open();
}

bool SqliteDefaultsStore::moveAside(const std::string& reason) const {
    const auto name = defaultsfile::moveAside(path_);
    if (name)
        log("Cannot use " + path_ + ": " + reason + ". It is now " + *name);
    return name.has_value();
}

/// Not every damage shows when the file is opened.
void SqliteDefaultsStore::leaveDamaged() const {
    if (database_ && database_->isDamaged())
        replaceFile("it is damaged");
}

/// What could not be read must not be taken for absent, and then be written over.
void SqliteDefaultsStore::leaveUnread() const {
    if (!database_ || database_->readFailure().empty())
        return;
    trouble_ = database_->readFailure();
    log("Cannot read " + path_ + ": " + trouble_);
    database_.reset();
}

/// Somebody may remove the file while it is in use, or put another in its place, which was never read.
void SqliteDefaultsStore::leaveMoved() const {
    if (database_ && database_->hasMoved())
        replaceFile("it was put in the place of the file in use");
}

/// What can be read of the file in use goes into a new one. `reason`: why what stands at its path has to give way.
void SqliteDefaultsStore::replaceFile(const std::string& reason) const {
    unsaved_.merge(database_->salvage());
    if (database_->hasMoved())
        database_->removeLog();
    database_.reset();
    const bool isGone = !defaultsfile::exists(path_);
    if (isGone || moveAside(reason))
        open();
    else
        trouble_ = "its file can neither be used nor moved aside";
    if (isGone && database_)
        log(path_ + " was gone. It is made anew.");
    if (database_ && !unsaved_.empty() && !database_->write(unsavedRows()))
        unsaved_.clear();
}

std::optional<std::string> SqliteDefaultsStore::data(std::string_view key) const {
    return bytes(key, Kind::data);
}

std::optional<std::string> SqliteDefaultsStore::string(std::string_view key) const {
    return bytes(key, Kind::string);
}

std::optional<std::string> SqliteDefaultsStore::bytes(std::string_view key, Kind kind) const {
    if (const auto kept = unsaved_.find(key); kept != unsaved_.end())
        return kept->second.kind == kind ? std::optional(kept->second.bytes) : std::nullopt;
    auto found = database_ ? database_->bytes(key, kind) : std::nullopt;
    leaveUnread();
    if (!database_ || !database_->isDamaged())
        return found;
    leaveDamaged();
    return bytes(key, kind);
}

std::int64_t SqliteDefaultsStore::integer(std::string_view key) const {
    if (const auto kept = unsaved_.find(key); kept != unsaved_.end())
        return kept->second.number;
    const auto found = database_ ? database_->integer(key) : std::nullopt;
    leaveUnread();
    if (!database_ || !database_->isDamaged())
        return found.value_or(0);
    leaveDamaged();
    return integer(key);
}

bool SqliteDefaultsStore::boolean(std::string_view key) const {
    return integer(key) != 0;
}

void SqliteDefaultsStore::setData(std::string_view key, std::string_view bytes) {
    set({key, {Kind::data, bytes}});
}

void SqliteDefaultsStore::setString(std::string_view key, std::string_view text) {
    set({key, {Kind::string, text}});
}

void SqliteDefaultsStore::setInteger(std::string_view key, std::int64_t number) {
    set({key, {Kind::integer, {}, number}});
}

void SqliteDefaultsStore::setBoolean(std::string_view key, bool flag) {
    setInteger(key, flag ? 1 : 0);
}

Subscription SqliteDefaultsStore::onChange(std::function<void(std::string_view)> observer) {
    return changes_.subscribe(std::move(observer));
}

void SqliteDefaultsStore::set(const DefaultsRow& row) {
    if (database_ && database_->isTooLarge(row)) {
        if (tooLarge_.emplace(row.key).second)
            log("Cannot store " + std::string(row.key) + ": it is too large");
        return;
    }
    tooLarge_.erase(std::string(row.key));
    const bool wasFine = trouble_.empty();
    unsaved_.erase(std::string(row.key));
    if (auto failure = save(row)) {
        unsaved_[std::string(row.key)] = {row.value.kind, std::string(row.value.bytes), row.value.number};
        if (wasFine)
            log("Cannot store " + std::string(row.key) + ": " + *failure);
        trouble_ = std::move(*failure);
    } else {
        unsaved_.clear();
        trouble_.clear();
    }
    changes_.emit(row.key);
}

/// Writes the value, and with it what could not be written before.
std::optional<std::string> SqliteDefaultsStore::save(const DefaultsRow& row) {
    leaveMoved();
    if (!trouble_.empty())
        reopenAfterTrouble();
    if (!database_)
        return trouble_;
    const auto rows = [&] {
        auto all = unsavedRows();
        all.push_back(row);
        return all;
    };
    auto failure = database_->write(rows());
    if (!failure || !database_->isDamaged())
        return failure;
    leaveDamaged();
    return database_ ? database_->write(rows()) : failure;
}

std::vector<DefaultsRow> SqliteDefaultsStore::unsavedRows() const {
    std::vector<DefaultsRow> rows;
    for (const auto& [key, kept] : unsaved_)
        rows.push_back({key, kept.value()});
    return rows;
}

}  // namespace brindle
