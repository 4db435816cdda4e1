#pragma once

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "platform/DefaultsStore.h"
#include "platform/freedesktop/DefaultsDatabase.h"

namespace brindle {

/// The defaults store in an SQLite file. What cannot be a file of ours is moved aside once; where there can be no file,
/// the values live as long as the process. A value that could not be written is kept, and saved with the next one that
/// can.
class SqliteDefaultsStore : public DefaultsStore {
public:
    /// `folder` is absolute; it is made, with mode 0700, when it is missing.
    explicit SqliteDefaultsStore(std::string folder = defaultFolder());
    ~SqliteDefaultsStore() override;
    SqliteDefaultsStore(const SqliteDefaultsStore&) = delete;
    SqliteDefaultsStore& operator=(const SqliteDefaultsStore&) = delete;

    /// $XDG_DATA_HOME/brindle
    [[nodiscard]] static std::string defaultFolder();

    [[nodiscard]] std::optional<std::string> data(std::string_view key) const override;
    [[nodiscard]] std::optional<std::string> string(std::string_view key) const override;
    [[nodiscard]] std::int64_t integer(std::string_view key) const override;
    [[nodiscard]] bool boolean(std::string_view key) const override;

    void setData(std::string_view key, std::string_view bytes) override;
    void setString(std::string_view key, std::string_view text) override;
    void setInteger(std::string_view key, std::int64_t number) override;
    void setBoolean(std::string_view key, bool flag) override;

    [[nodiscard]] Subscription onChange(std::function<void(std::string_view key)> observer) override;

private:
    using Kind = DefaultsValue::Kind;
    void open() const;
    void reopenAfterTrouble();
    bool moveAside(const std::string& reason) const;
    void leaveDamaged() const;
    void leaveUnread() const;
    void leaveMoved() const;
    void replaceFile(const std::string& reason) const;
    void set(const DefaultsRow& row);
    [[nodiscard]] std::optional<std::string> save(const DefaultsRow& row);
    [[nodiscard]] std::vector<DefaultsRow> unsavedRows() const;
    [[nodiscard]] std::optional<std::string> bytes(std::string_view key, Kind kind) const;

    std::string folder_;
    std::string path_;
    // A read may be what finds the damage.
    mutable std::unique_ptr<DefaultsDatabase> database_;
    mutable std::string trouble_;  // what keeps values from being saved; empty: nothing
    mutable bool isMissing_ = false;
    mutable KeptDefaults unsaved_;
    std::set<std::string, std::less<>> tooLarge_;  // keys of values that were refused, until one is not
    Signal<std::string_view> changes_;
};

}  // namespace brindle
