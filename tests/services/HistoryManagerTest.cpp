#include "services/HistoryManager.h"

#include "model/StoredForm.h"
#include "services/SettingsManager.h"
#include "support/SimulatedTest.h"

namespace brindle {
namespace {

using test::SimulatedDefaults;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// "B*" is a pinned entry with the text B.
ClipboardItem entry(std::string text) {
    const bool isPinned = text.ends_with('*');
    if (isPinned)
        text.pop_back();
    return {Uuid::generate(), text, ItemType::text, Date{1}, std::nullopt, isPinned, std::nullopt};
}

using Texts = std::vector<std::string>;

std::vector<ClipboardItem> entries(const Texts& texts) {
    std::vector<ClipboardItem> result;
    std::ranges::transform(texts, std::back_inserter(result), entry);
    return result;
}

class HistoryManagerTest : public test::SimulatedTest {
protected:
    /// A manager that finds these entries in the store.
    HistoryManager& load(const std::vector<ClipboardItem>& history, std::int64_t limit = 50) {
        sim.store.values["BrindleHistory"] = SimulatedDefaults::Data{encodeHistory(history)};
        sim.store.values["maxClipboardItems"] = limit;
        return load();
    }
    HistoryManager& load() {
        manager_.reset();
        settings = std::make_unique<SettingsManager>();
        manager_ = std::make_unique<HistoryManager>(*settings);
        sim.journal.take();
        return *manager_;
    }

    std::vector<ClipboardItem> storedHistory() const { return *decodeHistory(*sim.store.data("BrindleHistory")); }

    std::unique_ptr<SettingsManager> settings;

private:
    std::unique_ptr<HistoryManager> manager_;
};

Texts texts(const std::vector<ClipboardItem>& history) {
    Texts result;
    for (const ClipboardItem& item : history)
        result.push_back(item.content.string() + (item.isPinned ? "*" : ""));
    return result;
}

TEST_F(HistoryManagerTest, ANewEntryReplacesItsUnpinnedDuplicatesAndTheOldestGo) {
    const struct {
        Texts before;
        std::int64_t limit;
        std::string added;
        Texts after;
    } rows[] = {
        {{}, 50, "A", {"A"}},
        {{}, 50, "", {""}},
        {{"A"}, 50, "a", {"a", "A"}},
        {{"A", "B*", "C"}, 50, "B", {"B", "A", "B*", "C"}},
        {{"A", "B", "C", "B", "B*"}, 50, "B", {"B", "A", "C", "B*"}},
        {{"A", "é"}, 50, "e\u0301", {"e\u0301", "A"}},
        {{"A", "B", "C"}, 3, "D", {"D", "A", "B"}},
        {{"A", "B*", "C*", "D"}, 3, "E", {"E", "B*", "C*"}},
        {{"A*", "B*", "C*"}, 3, "D", {"A*", "B*", "C*"}},
        {{"A", "B*"}, -1, "C", {"B*"}},
    };
    for (const auto& row : rows) {
        auto& manager = load(entries(row.before), row.limit);
        manager.addItem(entry(row.added));
        EXPECT_EQ(texts(manager.history().value()), row.after);
        EXPECT_EQ(texts(storedHistory()), row.after);
        EXPECT_THAT(sim.journal.take(), ElementsAre("store BrindleHistory"));
    }
}

TEST_F(HistoryManagerTest, TheNewestTextAgainChangesNothingAtAll) {
    for (const char* again : {"é", "e\u0301"}) {
        auto& manager = load(entries({"é*", "B", "é"}));
        const auto before = manager.history().value();
        manager.addItem(entry(again));
        EXPECT_EQ(manager.history().value(), before);
        EXPECT_THAT(sim.journal.take(), IsEmpty());
    }
}

TEST_F(HistoryManagerTest, TheLimitTrimsWhatIsLoadedAndFollowsTheSettingWithoutSaving) {
    auto& manager = load(entries({"A", "B*", "C", "D*", "E"}), 4);
    EXPECT_THAT(texts(manager.history().value()), ElementsAre("A", "B*", "C", "D*"));
    settings->setMaxClipboardItems(3);
    EXPECT_THAT(texts(manager.history().value()), ElementsAre("A", "B*", "D*"));
    settings->setMaxClipboardItems(1);
    EXPECT_THAT(texts(manager.history().value()), ElementsAre("B*", "D*"));
    EXPECT_THAT(sim.journal.take(), ElementsAre("store maxClipboardItems", "store maxClipboardItems"));
    EXPECT_EQ(storedHistory().size(), 5U);
    manager.togglePin(manager.history().value()[0]);
    EXPECT_THAT(texts(storedHistory()), ElementsAre("B", "D*"));
}

TEST_F(HistoryManagerTest, PinningFilingAndDeletingGoById) {
    auto& manager = load(entries({"A", "B", "C"}));
    const auto b = manager.history().value()[1];
    const Uuid list = Uuid::generate();
    manager.togglePin(b);
    EXPECT_THAT(texts(storedHistory()), ElementsAre("A", "B*", "C"));
    manager.togglePin(b);
    manager.moveItem(b, list);
    EXPECT_EQ(storedHistory()[1].listId, list);
    manager.moveItem(b, std::nullopt);
    EXPECT_EQ(storedHistory()[1], b);
    manager.deleteItem(manager.history().value()[1]);
    EXPECT_THAT(texts(storedHistory()), ElementsAre("A", "C"));
    sim.journal.take();

    manager.togglePin(b);
    manager.moveItem(b, list);
    EXPECT_THAT(sim.journal.take(), IsEmpty());
    manager.deleteItem(b);
    EXPECT_THAT(sim.journal.take(), ElementsAre("store BrindleHistory"));
    EXPECT_THAT(texts(manager.history().value()), ElementsAre("A", "C"));
}

TEST_F(HistoryManagerTest, ListsAreCreatedRenamedAndDeletedAndTheirEntriesStay) {
    auto& manager = load(entries({"A", "B*", "C"}));
    manager.createList("Work");
    manager.createList("Work");
    auto lists = manager.customLists().value();
    ASSERT_EQ(lists.size(), 2U);
    EXPECT_NE(lists[0].id, lists[1].id);
    manager.renameList(lists[1], " Home ");

    auto& again = load();
    EXPECT_EQ(again.customLists().value()[1].name, " Home ");
    const auto filed = again.history().value();
    again.moveItem(filed[0], lists[0].id);
    again.moveItem(filed[1], lists[0].id);
    again.moveItem(filed[2], lists[1].id);
    sim.journal.take();
    again.deleteList(again.customLists().value()[0]);
    EXPECT_THAT(sim.journal.take(), ElementsAre("store BrindleLists", "store BrindleHistory"));
    const auto left = storedHistory();
    EXPECT_THAT(texts(left), ElementsAre("A", "B*", "C"));
    EXPECT_FALSE(left[0].listId || left[1].listId);
    EXPECT_EQ(left[2].listId, lists[1].id);
    EXPECT_EQ(decodeLists(*sim.store.data("BrindleLists"))->size(), 1U);
}

TEST_F(HistoryManagerTest, AnUnreadableStoreStartsEmptyAndIsOverwrittenByTheNextSaveThatSucceeds) {
    sim.store.values["BrindleHistory"] = SimulatedDefaults::Data{"[{"};
    sim.store.values["BrindleLists"] = std::string("[]");
    auto& manager = load();
    EXPECT_TRUE(manager.history().value().empty() && manager.customLists().value().empty());
    sim.store.failsWrites = true;
    manager.addItem(entry("A"));
    EXPECT_EQ(sim.store.data("BrindleHistory"), "[{");
    sim.store.failsWrites = false;
    manager.addItem(entry("B"));
    EXPECT_THAT(texts(storedHistory()), ElementsAre("B", "A"));
    EXPECT_EQ(sim.store.string("BrindleLists"), "[]");
}

}  // namespace
}  // namespace brindle
