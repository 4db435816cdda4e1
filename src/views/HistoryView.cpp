#include "views/HistoryView.h"

#include <QAccessible>
#include <QEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>

#include "services/HistoryManager.h"
#include "views/HistoryAccessible.h"
#include "views/Palette.h"

namespace brindle {

namespace {

// Points; the ring around a list that has no row to show it on.
constexpr int ringInset = 4;
constexpr double ringRadius = 8;

}  // namespace

HistoryView::HistoryView(HistoryManager& historyManager, ClipboardMonitor& clipboardMonitor,
                         const Published<std::string>& searchText, HistoryFilter filter,
                         Published<bool>& isSearchFocused, Published<bool>& showAccessibilityDialog, QWidget* parent)
    : QAbstractScrollArea(parent),
      historyManager_(historyManager),
      clipboardMonitor_(clipboardMonitor),
      searchText_(searchText),
      filter_(filter),
      isSearchFocused_(isSearchFocused),
      showAccessibilityDialog_(showAccessibilityDialog),
      shownFilter_(filter),
      scrollBar_(*verticalScrollBar(), *viewport()) {
    installHistoryAccessibility();
    setAccessibleName(QStringLiteral("Clipboard history"));
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::TabFocus);
    setContextMenuPolicy(Qt::PreventContextMenu);
    viewport()->setContextMenuPolicy(Qt::PreventContextMenu);
    viewport()->setMouseTracking(true);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, viewport(), qOverload<>(&QWidget::update));
    historyObserver_ = historyManager_.history().subscribe([this](const auto&) { filtered_.invalidate(); });
}

void HistoryView::setColorScheme(ColorScheme scheme) {
    scheme_ = scheme;
    viewport()->update();
}

void HistoryView::refresh() {
    const auto focused = focusedRow();
    filtered_.update(historyManager_.history().value(), filter_, searchText_.value());
    // The keyboard stays at its place when the entry there goes.
    if (focused && !focusedRow() && !filteredItems().empty())
        focusedId_ = filteredItems()[std::min(*focused, filteredItems().size() - 1)].id;
    heights_.rebuild(filteredItems());
    updateScrollRange();
    if (!(filter_ == shownFilter_) || searchText_.value() != shownSearchText_)
        verticalScrollBar()->setValue(0);
    shownFilter_ = filter_;
    shownSearchText_ = searchText_.value();
    viewport()->update();
    announceRowsChanged(*this);
}

void HistoryView::updateScrollRange() {
    verticalScrollBar()->setPageStep(viewport()->height());
    verticalScrollBar()->setRange(0, std::max(0, heights_.total() - viewport()->height()));
}

HistoryItemRow HistoryView::row(std::size_t index) const {
    return {filteredItems()[index], historyManager_, clipboardMonitor_, isSearchFocused_, showAccessibilityDialog_};
}

QRect HistoryView::rowRect(std::size_t index) const {
    return {0, heights_.top(index) - verticalScrollBar()->value(), viewport()->width(), heights_.height(index)};
}

std::optional<std::size_t> HistoryView::rowAt(QPoint viewportPosition) const {
    if (!viewport()->rect().contains(viewportPosition))
        return std::nullopt;
    return heights_.rowAt(viewportPosition.y() + verticalScrollBar()->value());
}

std::optional<Uuid> HistoryView::idAt(std::optional<QPoint> viewportPosition) const {
    const auto index = viewportPosition ? rowAt(*viewportPosition) : std::nullopt;
    return index ? std::optional(filteredItems()[*index].id) : std::nullopt;
}

RowAppearance HistoryView::appearance(std::size_t index) const {
    const Uuid& id = filteredItems()[index].id;
    const bool isUnderPointer =
        pointer_ && !scrollBar_.isDragged() && rowRect(index).contains(*pointer_) && !scrollBar_.isOverThumb(*pointer_);
    RowAppearance shown{.scheme = scheme_};
    if (isUnderPointer && pressedId_ == id)
        shown.look = RowAppearance::Look::pressed;
    else if (menuId_ == id || (isUnderPointer && !pressedId_ && !menuId_))
        shown.look = RowAppearance::Look::hover;
    shown.showsFocusRing = hasFocus() && ring_.isShown() && focusedId_ == id;
    return shown;
}

void HistoryView::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    painter.fillRect(event->rect(), color(Role::surface, scheme_));
    auto index = heights_.rowAt(event->rect().top() + verticalScrollBar()->value());
    while (index && *index < heights_.count() && rowRect(*index).top() <= event->rect().bottom()) {
        row(*index).paint(painter, rowRect(*index), appearance(*index));
        ++*index;
    }
    scrollBar_.paint(painter, scheme_);
    if (filteredItems().empty() && hasFocus() && ring_.isShown())
        paintFocusRing(painter, viewport()->rect().adjusted(ringInset, ringInset, -ringInset, -ringInset), ringRadius,
                       color(Role::focusRing, scheme_));
}

void HistoryView::resizeEvent(QResizeEvent*) {
    updateScrollRange();
}

bool HistoryView::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::Leave) {
        pointer_.reset();
        scrollBar_.pointerLeft();
        viewport()->update();
    }
    return QAbstractScrollArea::viewportEvent(event);
}

}  // namespace brindle
