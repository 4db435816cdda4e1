#include <gmock/gmock.h>

#include <array>
#include <cstdlib>
#include <random>

#include "model/StoredForm.h"
#include "services/HistoryManager.h"
#include "services/PasteService.h"
#include "services/SettingsManager.h"
#include "support/DelegateTest.h"

namespace brindle {
namespace {

/// Weeks of use in a minute. Beside the program goes the shortest account of what its history must be.
class SoakTest : public test::DelegateTest {
protected:
    using Entry = std::pair<std::string, bool>;  // its content, and whether it is pinned

    SoakTest() { launch(); }

    std::size_t below(std::size_t count) { return std::uniform_int_distribution<std::size_t>(0, count - 1)(random_); }
    HistoryManager& manager() { return *delegate->historyManager(); }
    const std::vector<ClipboardItem>& history() { return manager().history().latest(); }

    void copy() {
        const auto text = "text " + std::to_string(below(400));
        sim.clipboard.copy(SharedText(text));
        sim.queue.advance(0.5);
        if (!expected.empty() && expected.front().first == text)
            return;
        std::erase(expected, Entry(text, false));
        expected.insert(expected.begin(), {text, false});
        trim();
    }

    void trim() {
        for (auto at = expected.end(); at != expected.begin() && expected.size() > limit_;) {
            if (!(--at)->second)
                at = expected.erase(at);
        }
    }

    void change() {
        const auto& lists = manager().customLists().latest();
        const auto index = below(history().size());
        const auto entry = expected.begin() + static_cast<std::ptrdiff_t>(index);
        switch (below(4)) {
            case 0:
                limit_ = std::array{25U, 50U, 100U}[below(3)];
                delegate->settingsManager()->setMaxClipboardItems(static_cast<std::int64_t>(limit_));
                trim();
                break;
            case 1:
                manager().createList("list");
                manager().moveItem(history()[index], lists[below(lists.size())].id);
                if (lists.size() > 20)
                    manager().deleteList(lists[below(lists.size())]);
                break;
            case 2:
                manager().deleteItem(history()[index]);
                expected.erase(entry);
                break;
            default:
                manager().togglePin(history()[index]);
                entry->second = !entry->second;
        }
    }

    std::vector<Entry> actual() {
        std::vector<Entry> entries;
        for (const auto& item : history())
            entries.emplace_back(item.content.string(), item.isPinned);
        return entries;
    }

    std::vector<Entry> expected;

private:
    std::mt19937 random_{20240229};
    std::size_t limit_ = 50;
};

TEST_F(SoakTest, WeeksOfUseLoseAndDoubleNothing) {
    // BRINDLE_SOAK=50 is the long form: 100,000 copies, 10,000 openings and changes, 5,000 pastes.
    const auto editor = workIn("Editor");
    const char* wanted = std::getenv("BRINDLE_SOAK");
    for (int left = 2000 * (wanted != nullptr ? std::atoi(wanted) : 1); left > 0 && !HasFailure(); --left) {
        copy();
        if (left % 10 == 0)
            change();
        if (left % 10 == 5) {
            sim.tray.click();
            sim.tray.click();
        }
        if (left % 20 == 7) {
            PasteService::paste();
            sim.queue.advance(1.2);
        }
        sim.journal.take();
        ASSERT_EQ(actual(), expected) << "copies left: " << left;
    }
    copy();
    EXPECT_EQ(*decodeHistory(*sim.store.data("BrindleHistory")), history());
}

}  // namespace
}  // namespace brindle
