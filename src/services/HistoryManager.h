#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/Published.h"
#include "model/ClipboardItem.h"
#include "model/CustomList.h"

namespace brindle {

class SettingsManager;

/// Owns the history and the user's lists, and stores the whole array at each change before the operation returns.
/// Main thread. Entries and lists are found by id; an operation on one that is gone changes nothing.
class HistoryManager {
public:
    /// Loads both arrays (an unreadable one starts empty), then follows the history-length setting.
    explicit HistoryManager(SettingsManager& settingsManager);
    HistoryManager(const HistoryManager&) = delete;
    HistoryManager& operator=(const HistoryManager&) = delete;

    /// Newest first.
    [[nodiscard]] const Published<std::vector<ClipboardItem>>& history() const { return history_; }
    /// In order of creation.
    [[nodiscard]] const Published<std::vector<CustomList>>& customLists() const { return customLists_; }

    /// Puts a new entry at the front. The same content and type at the front already: nothing happens. Unpinned
    /// duplicates go, then unpinned entries from the old end until the limit holds.
    void addItem(const ClipboardItem& item);
    /// Drops unpinned entries from the old end until there are no more than `limit`. Does not save.
    void trimHistory(std::int64_t limit);
    void togglePin(const ClipboardItem& item);
    void deleteItem(const ClipboardItem& item);                            ///< saves in any case
    void moveItem(const ClipboardItem& item, std::optional<Uuid> listId);  ///< none unfiles it

    void createList(std::string_view name);
    void renameList(const CustomList& list, std::string_view newName);
    /// Its entries stay in the history, filed nowhere. Saves in any case.
    void deleteList(const CustomList& list);

    void saveHistory();
    void saveLists();

private:
    /// Changes and saves the first entry with that id; without one nothing happens.
    template <typename Change>
    void changeEntry(const Uuid& id, Change change);
    void loadHistory();
    void loadLists();

    std::string storageKey_ = "BrindleHistory";
    std::string listsStorageKey_ = "BrindleLists";
    SettingsManager& settingsManager_;
    Published<std::vector<ClipboardItem>> history_;
    Published<std::vector<CustomList>> customLists_;
    std::vector<Subscription> cancellables_;
};

}  // namespace brindle
