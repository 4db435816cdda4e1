#include "views/TabButton.h"

#include <QAccessible>
#include <QFontMetricsF>
#include <QPainter>
#include <array>
#include <utility>

#include "views/OneLine.h"
#include "views/Palette.h"
#include "views/TabAccessible.h"

namespace brindle {

namespace {

// Points.
constexpr double padding = 6;
constexpr double gap = 4;
constexpr double radius = 6;
constexpr double longestTitle = 180;

constexpr double countOpacity = 0.8;

struct Appearance {
    // At rest, hovered, pressed
    std::array<std::optional<Role>, 3> fill;
    std::array<Role, 3> ink;
    Role ring;
};

constexpr Appearance unselected = {{std::nullopt, Role::tabHover, Role::tabPressed},
                                   {Role::secondaryText, Role::activeText, Role::activeText},
                                   Role::focusRing};
constexpr Appearance selected = {{Role::selection, Role::selectionHover, Role::selectionPressed},
                                 {Role::primaryText, Role::primaryText, Role::primaryText},
                                 Role::focusRingOnSelection};

void announceSelection(QWidget& tab) {
    if (!QAccessible::isActive())
        return;
    QAccessible::State changed;
    changed.selected = true;
    QAccessibleStateChangeEvent event(&tab, changed);
    QAccessible::updateAccessibility(&event);
}

}  // namespace

TabButton::TabButton(std::function<void()> action, QWidget* parent) : Control({}, parent) {
    installTabAccessibility();
    setContextMenuPolicy(Qt::PreventContextMenu);
    connect(this, &QAbstractButton::clicked, this, std::move(action));
}

void TabButton::show(const QString& title, std::optional<std::size_t> count, bool isSelected) {
    const bool selectionChanges = isSelected != isSelected_;
    if (!selectionChanges && title == title_ && count == count_)
        return;
    title_ = title;
    count_ = count;
    isSelected_ = isSelected;
    measure();
    setAccessibleName(count ? title_ + ' ' + countText() : title_);
    if (selectionChanges)
        announceSelection(*this);
    update();
}

void TabButton::measure() {
    const QFontMetricsF metrics(textFont(titleStyle()));
    shownTitle_ = metrics.elidedText(oneLine(title_), Qt::ElideRight, longestTitle);
    titleWidth_ = metrics.horizontalAdvance(shownTitle_);
    countWidth_ = count_ ? textWidth(countText(), TextStyle::subheadline) : 0;
}

QString TabButton::countText() const {
    return '(' + QString::number(*count_) + ')';
}

double TabButton::exactWidth() const {
    return padding + titleWidth_ + (count_ ? gap + countWidth_ : 0) + padding;
}

void TabButton::paint(QPainter& painter) {
    const Appearance& drawn = isSelected_ ? selected : unselected;
    const auto state = static_cast<std::size_t>(look());
    if (drawn.fill[state])
        fillRounded(painter, rect(), radius, color(*drawn.fill[state], colorScheme()));
    painter.setPen(color(drawn.ink[state], colorScheme()));
    drawTextLine(painter, QRectF(padding, 0, titleWidth_, height()), shownTitle_, titleStyle());
    if (count_) {
        QColor faint = color(Role::secondaryText, colorScheme());
        faint.setAlphaF(countOpacity);
        painter.setPen(faint);
        drawTextLine(painter, QRectF(padding + titleWidth_ + gap, 0, countWidth_, height()), countText(),
                     TextStyle::subheadline);
    }
    if (showsFocusRing())
        paintFocusRing(painter, rect(), radius, color(drawn.ring, colorScheme()));
}

}  // namespace brindle
