#include "views/HistoryAccessible.h"

#include <QAccessibleWidget>
#include <QPointer>
#include <algorithm>
#include <map>
#include <optional>
#include <vector>

#include "views/HistoryView.h"
#include "views/RowText.h"

namespace brindle {

namespace {

/// The row of one entry, wherever the entry stands in the list.
class AccessibleRow final : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    AccessibleRow(HistoryView& view, std::size_t index)
        : view_(&view), entry_(view.filteredItems()[index].id), lastIndex_(index) {}

    [[nodiscard]] std::optional<std::size_t> index() const {
        if (!view_)
            return std::nullopt;
        const auto& items = view_->filteredItems();
        if (lastIndex_ >= items.size() || items[lastIndex_].id != entry_)
            lastIndex_ = static_cast<std::size_t>(std::ranges::find(items, entry_, &ClipboardItem::id) - items.begin());
        return lastIndex_ < items.size() ? std::optional(lastIndex_) : std::nullopt;
    }

    bool isValid() const override { return index().has_value(); }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return view_ ? view_->window()->windowHandle() : nullptr; }
    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(view_.data()); }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    QAccessibleInterface* child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QAccessible::Role role() const override { return QAccessible::ListItem; }
    void setText(QAccessible::Text, const QString&) override {}

    QString text(QAccessible::Text kind) const override {
        const auto row = index();
        if (!row || kind != QAccessible::Name)
            return {};
        const ClipboardItem& item = view_->filteredItems()[*row];
        const QString spoken = RowText::spoken(item.content.view()) + ", " + HistoryItemRow::timeText(item.date);
        return item.isPinned ? spoken + QStringLiteral(", pinned") : spoken;
    }

    QRect rect() const override {
        const auto row = index();
        if (!row)
            return {};
        const QRect place = view_->rowRect(*row);
        return {view_->viewport()->mapToGlobal(place.topLeft()), place.size()};
    }

    QAccessible::State state() const override {
        QAccessible::State state;
        const auto row = index();
        state.invalid = !row;
        if (!row)
            return state;
        state.focusable = true;
        state.focused = view_->hasFocus() && view_->focusedRow() == row;
        state.offscreen = !view_->viewport()->rect().intersects(view_->rowRect(*row));
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
    }

    QStringList actionNames() const override { return {pressAction()}; }
    QStringList keyBindingsForAction(const QString&) const override { return {}; }
    void doAction(const QString& name) override {
        const auto row = index();
        if (row && name == pressAction() && !isListCovered())
            view_->row(*row).pasteItem();
    }

private:
    /// Whatever lies over the list and keeps the mouse from it keeps this from it too.
    bool isListCovered() const {
        const QWidget* viewport = view_->viewport();
        const QWidget* window = view_->window();
        return window->childAt(viewport->mapTo(window, viewport->rect().center())) != viewport;
    }

    QPointer<HistoryView> view_;
    Uuid entry_;
    mutable std::size_t lastIndex_;
};

/// Makes an interface for a row when it is first asked for, and keeps it as long as the list shows that entry.
class AccessibleHistory final : public QAccessibleWidget {
public:
    explicit AccessibleHistory(HistoryView& view)
        : QAccessibleWidget(&view, QAccessible::List), entries_(entriesOf(view)) {}
    ~AccessibleHistory() override {
        for (const auto& [entry, row] : rows_)
            QAccessible::deleteAccessibleInterface(row.id);
    }

    void followRows() {
        std::vector<Uuid> entries = entriesOf(view());
        if (entries_ != entries) {
            entries_ = std::move(entries);
            forgetGoneRows();
            QAccessibleEvent event(&view(), QAccessible::ObjectReorder);
            QAccessible::updateAccessibility(&event);
        }
        announceNewNames();
    }

    int childCount() const override { return static_cast<int>(view().filteredItems().size()); }

    QAccessibleInterface* child(int index) const override {
        if (index < 0 || index >= childCount())
            return nullptr;
        const auto place = static_cast<std::size_t>(index);
        const auto [known, isNew] = rows_.try_emplace(view().filteredItems()[place].id);
        Row& row = known->second;
        if (isNew) {
            auto* made = new AccessibleRow(view(), place);
            row = {QAccessible::registerAccessibleInterface(made), made->text(QAccessible::Name)};
        }
        return QAccessible::accessibleInterface(row.id);
    }

    int indexOfChild(const QAccessibleInterface* child) const override {
        const auto* row = dynamic_cast<const AccessibleRow*>(child);
        const auto index = row ? row->index() : std::nullopt;
        return index ? static_cast<int>(*index) : -1;
    }

    QAccessibleInterface* childAt(int x, int y) const override {
        const auto row = view().rowAt(view().viewport()->mapFromGlobal(QPoint(x, y)));
        return row ? child(static_cast<int>(*row)) : nullptr;
    }

    QAccessibleInterface* focusChild() const override {
        const auto row = view().focusedRow();
        return row ? child(static_cast<int>(*row)) : nullptr;
    }

private:
    struct Row {
        QAccessible::Id id = 0;
        QString name;
    };

    HistoryView& view() const { return static_cast<HistoryView&>(*widget()); }

    static std::vector<Uuid> entriesOf(const HistoryView& view) {
        std::vector<Uuid> entries;
        std::ranges::transform(view.filteredItems(), std::back_inserter(entries), &ClipboardItem::id);
        return entries;
    }

    void forgetGoneRows() {
        std::erase_if(rows_, [](const auto& known) {
            const bool isGone = !QAccessible::accessibleInterface(known.second.id)->isValid();
            if (isGone)
                QAccessible::deleteAccessibleInterface(known.second.id);
            return isGone;
        });
    }

    /// An entry that is pinned, or filed anew under the same id, is the same row.
    void announceNewNames() {
        for (auto& [entry, row] : rows_) {
            auto* shown = QAccessible::accessibleInterface(row.id);
            QString name = shown->text(QAccessible::Name);
            if (name == row.name)
                continue;
            row.name = std::move(name);
            QAccessibleEvent event(shown, QAccessible::NameChanged);
            QAccessible::updateAccessibility(&event);
        }
    }

    mutable std::map<Uuid, Row> rows_;
    std::vector<Uuid> entries_;
};

QAccessibleInterface* makeInterface(const QString&, QObject* object) {
    auto* view = qobject_cast<HistoryView*>(object);
    return view ? new AccessibleHistory(*view) : nullptr;
}

}  // namespace

void installHistoryAccessibility() {
    QAccessible::installFactory(makeInterface);
}

void announceRowsChanged(HistoryView& view) {
    if (!QAccessible::isActive())
        return;
    if (auto* list = dynamic_cast<AccessibleHistory*>(QAccessible::queryAccessibleInterface(&view)))
        list->followRows();
}

void announceRowFocused(HistoryView& view, std::size_t row) {
    if (!QAccessible::isActive())
        return;
    QAccessibleEvent event(&view, QAccessible::Focus);
    event.setChild(static_cast<int>(row));
    QAccessible::updateAccessibility(&event);
}

}  // namespace brindle
