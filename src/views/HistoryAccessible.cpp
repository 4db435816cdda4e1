#include "views/HistoryAccessible.h"

#include <QAccessibleWidget>
#include <QPointer>
#include <map>

#include "views/HistoryView.h"
#include "views/RowText.h"

namespace brindle {

namespace {

class AccessibleRow final : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    AccessibleRow(HistoryView& view, std::size_t index) : view_(&view), index_(index) {}

    bool isValid() const override { return view_ && index_ < view_->filteredItems().size(); }
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
        if (!isValid() || kind != QAccessible::Name)
            return {};
        const ClipboardItem& item = view_->filteredItems()[index_];
        const QString spoken = RowText::spoken(item.content.view()) + ", " + HistoryItemRow::timeText(item.date);
        return item.isPinned ? spoken + QStringLiteral(", pinned") : spoken;
    }

    QRect rect() const override {
        if (!isValid())
            return {};
        const QRect place = view_->rowRect(index_);
        return {view_->viewport()->mapToGlobal(place.topLeft()), place.size()};
    }

    QAccessible::State state() const override {
        QAccessible::State state;
        state.invalid = !isValid();
        if (state.invalid)
            return state;
        state.focusable = true;
        state.focused = view_->hasFocus() && view_->focusedRow() == index_;
        state.offscreen = !view_->viewport()->rect().intersects(view_->rowRect(index_));
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
    }

    QStringList actionNames() const override { return {pressAction()}; }
    QStringList keyBindingsForAction(const QString&) const override { return {}; }
    void doAction(const QString& name) override {
        if (isValid() && name == pressAction())
            view_->row(index_).pasteItem();
    }

private:
    QPointer<HistoryView> view_;
    std::size_t index_;
};

/// Makes an interface for a row when it is first asked for.
class AccessibleHistory final : public QAccessibleWidget {
public:
    explicit AccessibleHistory(HistoryView& view) : QAccessibleWidget(&view, QAccessible::List) {}
    ~AccessibleHistory() override { forgetRows(); }

    void forgetRows() {
        for (const auto& [index, id] : rows_)
            QAccessible::deleteAccessibleInterface(id);
        rows_.clear();
    }

    int childCount() const override { return static_cast<int>(view().filteredItems().size()); }

    QAccessibleInterface* child(int index) const override {
        if (index < 0 || index >= childCount())
            return nullptr;
        const auto [known, isNew] = rows_.try_emplace(index, 0);
        if (isNew)
            known->second =
                QAccessible::registerAccessibleInterface(new AccessibleRow(view(), static_cast<std::size_t>(index)));
        return QAccessible::accessibleInterface(known->second);
    }

    int indexOfChild(const QAccessibleInterface* child) const override {
        for (const auto& [index, id] : rows_) {
            if (QAccessible::accessibleInterface(id) == child)
                return index;
        }
        return -1;
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
    HistoryView& view() const { return static_cast<HistoryView&>(*widget()); }

    mutable std::map<int, QAccessible::Id> rows_;
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
        list->forgetRows();
    QAccessibleEvent event(&view, QAccessible::ObjectReorder);
    QAccessible::updateAccessibility(&event);
}

void announceRowFocused(HistoryView& view, std::size_t row) {
    if (!QAccessible::isActive())
        return;
    QAccessibleEvent event(&view, QAccessible::Focus);
    event.setChild(static_cast<int>(row));
    QAccessible::updateAccessibility(&event);
}

}  // namespace brindle
