#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <random>

#include "model/StoredForm.h"
#include "platform/KeyCodes.h"
#include "services/ClipboardMonitor.h"
#include "services/HistoryManager.h"
#include "services/PasteService.h"
#include "services/SettingsManager.h"
#include "support/DelegateTest.h"

namespace brindle {
namespace {

/// Weeks of use in a minute. Beside the program goes the shortest account of what its history must be.
class SoakTest : public test::DelegateTest {
protected:
    struct Entry {
        std::string content;
        bool isPinned = false;
        friend bool operator==(const Entry&, const Entry&) = default;
    };

    SoakTest() {
        launch();
        editor_ = workIn("TextEdit");
    }

    std::size_t below(std::size_t count) { return std::uniform_int_distribution<std::size_t>(0, count - 1)(random_); }
    HistoryManager& manager() { return *delegate->historyManager(); }
    const std::vector<ClipboardItem>& history() { return manager().history().latest(); }

    void copy() {
        const auto text = "text " + std::to_string(below(400));
        sim.clipboard.copy(SharedText(text));
        sim.queue.advance(0.5);
        if (!expected_.empty() && expected_.front().content == text)
            return;
        std::erase_if(expected_, [&](const Entry& each) { return each.content == text && !each.isPinned; });
        expected_.insert(expected_.begin(), Entry{text});
        trim();
    }

    void trim() {
        for (auto at = expected_.size(); at-- > 0 && expected_.size() > limit_;) {
            if (!expected_[at].isPinned)
                expected_.erase(expected_.begin() + static_cast<std::ptrdiff_t>(at));
        }
    }

    void open() {
        sim.tray.click(EventType::leftMouseUp);
        EXPECT_TRUE(delegate->isPopoverShown());
        sim.tray.click(EventType::leftMouseUp);
        EXPECT_FALSE(delegate->isPopoverShown());
    }

    void paste() {
        if (expected_.empty())
            return;
        const auto content = history()[below(history().size())].content;
        sim.tray.click(EventType::leftMouseUp);
        delegate->closePopover();
        delegate->clipboardMonitor()->setIsInternalCopy(true);
        sim.clipboard.clearContents();
        sim.clipboard.setString(content);
        sim.journal.take();
        PasteService::paste();
        sim.queue.advance(2);
        EXPECT_THAT(sim.journal.take(), testing::Contains("TextEdit pastes: " + content.string()));
    }

    void change() {
        const auto& lists = manager().customLists().latest();
        const auto index = expected_.empty() ? 0 : below(expected_.size());
        switch (below(5)) {
            case 0:
                limit_ = std::array{25U, 50U, 100U}[below(3)];
                delegate->settingsManager()->setMaxClipboardItems(static_cast<std::int64_t>(limit_));
                trim();
                break;
            case 1:
                if (lists.size() < 20)
                    manager().createList("list");
                else
                    manager().deleteList(lists[below(lists.size())]);
                break;
            case 2:
                if (!expected_.empty() && !lists.empty())
                    manager().moveItem(history()[index], lists[below(lists.size())].id);
                break;
            case 3:
                if (!expected_.empty()) {
                    manager().deleteItem(history()[index]);
                    expected_.erase(expected_.begin() + static_cast<std::ptrdiff_t>(index));
                }
                break;
            default:
                // Few enough that the limit still means something.
                if (!expected_.empty() &&
                    (expected_[index].isPinned || std::ranges::count(expected_, true, &Entry::isPinned) < 10)) {
                    manager().togglePin(history()[index]);
                    expected_[index].isPinned = !expected_[index].isPinned;
                }
        }
    }

    std::vector<Entry> actual() {
        std::vector<Entry> entries;
        for (const auto& item : history())
            entries.push_back({item.content.string(), item.isPinned});
        return entries;
    }

private:
    std::mt19937 random_{20240229};
    std::vector<Entry> expected_;
    std::size_t limit_ = 50;
    test::SimulatedApplicationHandle editor_;

protected:
    const std::vector<Entry>& expected() const { return expected_; }
};

TEST_F(SoakTest, WeeksOfUseLoseAndDoubleNothing) {
    // BRINDLE_SOAK=50 is the long form: 100,000 copies, 10,000 openings, 5,000 pastes and 2,000 changes.
    const char* wanted = std::getenv("BRINDLE_SOAK");
    const int rounds = 40 * (wanted != nullptr ? std::atoi(wanted) : 1);
    for (int round = 0; round < rounds && !HasFailure(); ++round) {
        for (int step = 0; step < 50; ++step) {
            copy();
            if (step % 10 == 0)
                open();
            if (step % 20 == 0)
                paste();
            if (step == 25)
                change();
            sim.journal.take();
        }
        ASSERT_EQ(actual(), expected()) << "round " << round;
    }
    manager().saveHistory();
    const auto stored = decodeHistory(sim.store.data("BrindleHistory").value_or(""));
    ASSERT_TRUE(stored);
    EXPECT_EQ(*stored, history());
    EXPECT_EQ(sim.mouse.monitors, 0);
}

}  // namespace
}  // namespace brindle
