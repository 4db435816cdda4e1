#include "services/HistoryManager.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "model/StoredForm.h"
#include "platform/DefaultsStore.h"
#include "platform/MainQueue.h"
#include "platform/Platform.h"
#include "services/SettingsManager.h"

namespace brindle {

namespace {

bool isDuplicate(const ClipboardItem& left, const ClipboardItem& right) {
    return left.type == right.type && left.content.isCanonicallyEqual(right.content);
}

/// One pass, because pinned entries make a history as long as its user likes. Returns whether anything went.
bool trim(std::vector<ClipboardItem>& history, std::int64_t limit) {
    const auto allowed = static_cast<std::size_t>(std::max<std::int64_t>(limit, 0));
    if (history.size() <= allowed)
        return false;
    const std::size_t excess = history.size() - allowed;
    const auto unpinned = static_cast<std::size_t>(std::ranges::count(history, false, &ClipboardItem::isPinned));
    std::size_t staying = unpinned - std::min(unpinned, excess);
    return std::erase_if(history, [&staying](const ClipboardItem& item) {
               if (item.isPinned)
                   return false;
               if (staying == 0)
                   return true;
               --staying;
               return false;
           }) != 0;
}

}  // namespace

HistoryManager::HistoryManager(SettingsManager& settingsManager) : settingsManager_(settingsManager) {
    loadHistory();
    loadLists();
    cancellables_.push_back(
        settingsManager_.maxClipboardItems().subscribe([this](std::int64_t limit) { trimHistory(limit); }));
}

void HistoryManager::addItem(const ClipboardItem& item) {
    const auto& current = history_.latest();
    if (!current.empty() && isDuplicate(current.front(), item))
        return;
    std::vector<ClipboardItem> next;
    next.reserve(current.size() + 1);
    next.push_back(item);
    std::ranges::copy_if(current, std::back_inserter(next),
                         [&item](const ClipboardItem& other) { return other.isPinned || !isDuplicate(other, item); });
    trim(next, settingsManager_.maxClipboardItems().value());
    history_ = std::move(next);
    saveHistory();
}

void HistoryManager::trimHistory(std::int64_t limit) {
    auto next = history_.latest();
    if (trim(next, limit))
        history_ = std::move(next);
}

template <typename Change>
void HistoryManager::changeEntry(const Uuid& id, Change change) {
    auto next = history_.latest();
    const auto found = std::ranges::find(next, id, &ClipboardItem::id);
    if (found == next.end())
        return;
    change(*found);
    history_ = std::move(next);
    saveHistory();
}

void HistoryManager::togglePin(const ClipboardItem& item) {
    changeEntry(item.id, [](ClipboardItem& entry) { entry.isPinned = !entry.isPinned; });
}

void HistoryManager::deleteItem(const ClipboardItem& item) {
    auto next = history_.latest();
    std::erase_if(next, [&item](const ClipboardItem& entry) { return entry.id == item.id; });
    history_ = std::move(next);
    saveHistory();
}

void HistoryManager::moveItem(const ClipboardItem& item, std::optional<Uuid> listId) {
    changeEntry(item.id, [listId](ClipboardItem& entry) { entry.listId = listId; });
}

void HistoryManager::createList(std::string_view name) {
    auto next = customLists_.latest();
    next.push_back({Uuid::generate(), std::string(name), platform().mainQueue().now()});
    customLists_ = std::move(next);
    saveLists();
}

void HistoryManager::renameList(const CustomList& list, std::string_view newName) {
    auto next = customLists_.latest();
    const auto found = std::ranges::find(next, list.id, &CustomList::id);
    if (found == next.end())
        return;
    found->name = newName;
    customLists_ = std::move(next);
    saveLists();
}

void HistoryManager::deleteList(const CustomList& list) {
    const Uuid id = list.id;  // the list may be one of those that go
    auto lists = customLists_.latest();
    std::erase_if(lists, [&id](const CustomList& other) { return other.id == id; });
    customLists_ = std::move(lists);
    auto entries = history_.latest();
    for (ClipboardItem& entry : entries) {
        if (entry.listId == id)
            entry.listId.reset();
    }
    history_ = std::move(entries);
    saveLists();
    saveHistory();
}

void HistoryManager::saveHistory() {
    platform().defaults().setData(storageKey_, encodeHistory(history_.latest()));
}

void HistoryManager::saveLists() {
    platform().defaults().setData(listsStorageKey_, encodeLists(customLists_.latest()));
}

void HistoryManager::loadHistory() {
    if (auto stored = platform().defaults().data(storageKey_)) {
        if (auto decoded = decodeHistory(std::move(*stored)))
            history_ = std::move(*decoded);
    }
}

void HistoryManager::loadLists() {
    if (auto stored = platform().defaults().data(listsStorageKey_)) {
        if (auto decoded = decodeLists(std::move(*stored)))
            customLists_ = std::move(*decoded);
    }
}

}  // namespace brindle
