#include "views/ListDialogs.h"

#include <utility>

#include "services/FocusDelegate.h"
#include "services/HistoryManager.h"
#include "views/ContentState.h"

namespace brindle {

ListDialogs::ListDialogs(ContentState& state, HistoryManager& historyManager, QWidget& popover)
    : state_(state), historyManager_(historyManager), popover_(popover) {
    entries_.push_back({{.title = QStringLiteral("New List"),
                         .text = &state.newListName,
                         .message = {},
                         .actionTitle = QStringLiteral("Create")},
                        state.showNewListAlert,
                        [this] { createList(); }});
    entries_.push_back({{.title = QStringLiteral("Rename List"),
                         .text = &state.renameListName,
                         .message = {},
                         .actionTitle = QStringLiteral("Rename")},
                        state.showRenameListAlert,
                        [this] { renameList(); }});
    entries_.push_back(
        {{.title = QStringLiteral("Delete List"),
          .message = QStringLiteral("Are you sure you want to delete this list? All items in it will be deleted."),
          .actionTitle = QStringLiteral("Delete"),
          .actionKind = PushButton::Kind::destructive},
         state.showDeleteListAlert,
         [this] { deleteList(); }});
}

void ListDialogs::refresh(ColorScheme scheme) {
    for (Entry& entry : entries_) {
        if (entry.isPresented.value() && !entry.dialog)
            open(entry);
        else if (!entry.isPresented.value() && entry.dialog)
            close(entry);
        if (entry.dialog)
            entry.dialog->setColorScheme(scheme);
    }
}

void ListDialogs::open(Entry& entry) {
    entry.focusBefore = popover_.window()->focusWidget();
    const auto* control = qobject_cast<const Control*>(entry.focusBefore.data());
    const bool isByKey = control && control->showsFocusRing();
    entry.dialog = std::make_unique<ListDialog>(entry.question, entry.isPresented, entry.action, popover_);
    entry.dialog->open(isByKey ? Qt::TabFocusReason : Qt::OtherFocusReason);
}

// The keyboard goes back to where it was, before the toolkit looks for a place of its own.
void ListDialogs::close(Entry& entry) {
    QWidget* before = entry.focusBefore;
    if (!before || !before->isVisibleTo(&popover_))
        before = &popover_;
    before->setFocus(Qt::PopupFocusReason);
    entry.dialog.reset();
}

void ListDialogs::createList() {
    if (!state_.newListName.value().empty())
        historyManager_.createList(state_.newListName.value());
}

void ListDialogs::renameList() {
    const auto& list = state_.listToRename.value();
    if (list && !state_.renameListName.value().empty())
        historyManager_.renameList(*list, state_.renameListName.value());
}

void ListDialogs::deleteList() {
    const auto list = state_.listToDelete.value();
    if (!list)
        return;
    historyManager_.deleteList(*list);
    if (state_.selectedTab.value() == list->id.text())
        state_.selectedTab = "All";
    if (auto* delegate = focusDelegate())
        delegate->closePopover();
}

}  // namespace brindle
