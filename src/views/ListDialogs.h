#pragma once

#include <QPointer>
#include <functional>
#include <memory>
#include <vector>

#include "views/ListDialog.h"

namespace brindle {

class HistoryManager;
struct ContentState;

/// "New List", "Rename List" and "Delete List", each shown while its flag is set.
class ListDialogs {
public:
    /// The dialogs cover `popover`. Everything outlives this object.
    ListDialogs(ContentState& state, HistoryManager& historyManager, QWidget& popover);

    /// Opens and closes them as the flags are by now.
    void refresh(ColorScheme scheme);

private:
    struct Entry {
        ListDialog::Question question;
        Published<bool>& isPresented;
        std::function<void()> action;
        std::unique_ptr<ListDialog> dialog = nullptr;
        QPointer<QWidget> focusBefore = nullptr;
    };

    void open(Entry& entry);
    void close(Entry& entry);
    void createList();
    void renameList();
    void deleteList();

    ContentState& state_;
    HistoryManager& historyManager_;
    QWidget& popover_;
    std::vector<Entry> entries_;
};

}  // namespace brindle
