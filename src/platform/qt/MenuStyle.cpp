#include "platform/qt/MenuStyle.h"

#include <QAction>
#include <QCommonStyle>
#include <QMenu>
#include <QPainter>
#include <QPainterPath>
#include <QStyleOptionMenuItem>
#include <algorithm>

#include "platform/qt/FramelessWindow.h"
#include "platform/qt/InterfaceFont.h"
#include "platform/qt/MenuShadow.h"

namespace brindle {

namespace {

constexpr const char* destructiveProperty = "brindleDestructive";

struct MenuColors {
    QColor background, outline, text, secondary, destructive;
};

// Sizes in points.
constexpr int menuRadius = 8;
constexpr int fontSize = 13;
constexpr int itemRadius = 5;
constexpr int menuPadding = 5;
constexpr int outlineWidth = 1;
constexpr int itemHeight = 26;
constexpr int itemPadding = 10;
constexpr int separatorHeight = 11;
constexpr int submenuOverlap = 3;
constexpr int smallestItemWidth = 104;
constexpr int arrowWidth = 8;
constexpr int columnGap = 24;

const QColor highlight(0x2563EB);

MenuColors colorsFor(ColorScheme scheme) {
    if (scheme == ColorScheme::dark)
        return {0x273449, 0x475569, 0xFFFFFF, 0x94A3B8, 0xF87171};
    return {0xFFFFFF, 0xCBD5E1, 0x0F172A, 0x64748B, 0xDC2626};
}

class MenuStyle : public QCommonStyle {
public:
    MenuStyle(ColorScheme scheme, MenuCorners corners)
        : colors_(colorsFor(scheme)), radius_(corners == MenuCorners::round ? menuRadius : 0) {}

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override {
        if (element == PE_PanelMenu)
            drawPanel(*painter, option->rect);
        else if (element != PE_FrameMenu)
            QCommonStyle::drawPrimitive(element, option, painter, widget);
    }

    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
        const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
        const auto* menu = qobject_cast<const QMenu*>(widget);
        if (element == CE_MenuItem && item != nullptr && menu != nullptr)
            drawItem(*painter, *item, *menu);
        else if (element == CE_MenuScroller)
            drawScroller(*painter, *option);
        else if (element != CE_MenuEmptyArea)
            QCommonStyle::drawControl(element, option, painter, widget);
    }

    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                           const QWidget* widget) const override {
        const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
        if (type != CT_MenuItem || item == nullptr)
            return QCommonStyle::sizeFromContents(type, option, contents, widget);
        if (item->menuItemType == QStyleOptionMenuItem::Separator)
            return {smallestItemWidth, separatorHeight};
        int width = contents.width() + 2 * itemPadding;
        if (item->menuItemType == QStyleOptionMenuItem::SubMenu)
            width += columnGap + arrowWidth;
        else if (item->text.contains(QLatin1Char('\t')))
            width += columnGap;
        return {std::max(width, smallestItemWidth), itemHeight};
    }

    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override {
        switch (metric) {
            case PM_MenuPanelWidth:
                return outlineWidth;
            case PM_MenuHMargin:
            case PM_MenuVMargin:
                return menuPadding;
            case PM_SubMenuOverlap:
                // The toolkit counts from the item's edge.
                return menuPadding + outlineWidth - submenuOverlap;
            default:
                return QCommonStyle::pixelMetric(metric, option, widget);
        }
    }

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* result) const override {
        switch (hint) {
            case SH_Menu_MouseTracking:
            case SH_Menu_SloppySubMenus:
            case SH_Menu_Scrollable:
                return 1;
            case SH_UnderlineShortcut:
                return 0;
            default:
                return QCommonStyle::styleHint(hint, option, widget, result);
        }
    }

private:
    void drawPanel(QPainter& painter, QRect rect) const {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(colors_.outline);
        painter.setBrush(colors_.background);
        const QRectF edge = QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5);
        painter.drawRoundedRect(edge, std::max(radius_ - 0.5, 0.0), std::max(radius_ - 0.5, 0.0));
    }

    void drawItem(QPainter& painter, const QStyleOptionMenuItem& item, const QMenu& menu) const {
        painter.setRenderHint(QPainter::Antialiasing);
        if (item.menuItemType == QStyleOptionMenuItem::Separator) {
            painter.fillRect(item.rect.adjusted(itemPadding, menuPadding, -itemPadding, -menuPadding), colors_.outline);
            return;
        }
        const bool isChosen = item.state.testFlag(State_Selected) && item.state.testFlag(State_Enabled);
        if (isChosen) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(highlight);
            painter.drawRoundedRect(item.rect, itemRadius, itemRadius);
        }
        const auto* action = menu.actionAt(item.rect.center());
        const bool isDestructive = action != nullptr && action->property(destructiveProperty).toBool();
        const QColor text = isDestructive ? colors_.destructive : colors_.text;
        drawTexts(painter, item, isChosen ? QColor(Qt::white) : text);
    }

    void drawScroller(QPainter& painter, const QStyleOption& option) const {
        const double sign = option.state.testFlag(State_DownArrow) ? 1 : -1;
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(colors_.text, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        const QPointF middle = QRectF(option.rect).center();
        painter.drawPolyline(QPolygonF({middle + QPointF(-3.5, -1.75 * sign), middle + QPointF(0, 1.75 * sign),
                                        middle + QPointF(3.5, -1.75 * sign)}));
    }

    void drawTexts(QPainter& painter, const QStyleOptionMenuItem& item, const QColor& color) const {
        const bool isEnabled = item.state.testFlag(State_Enabled);
        const QRect inner = item.rect.adjusted(itemPadding, 0, -itemPadding, 0);
        painter.setFont(item.font);
        painter.setPen(isEnabled ? color : colors_.secondary);
        const QString title = item.text.section(QLatin1Char('\t'), 0, 0);
        const QString shortcut = item.text.section(QLatin1Char('\t'), 1);
        const auto start = visualAlignment(item.direction, Qt::AlignLeft | Qt::AlignVCenter);
        const auto end = visualAlignment(item.direction, Qt::AlignRight | Qt::AlignVCenter);
        painter.drawText(inner, static_cast<int>(start) | Qt::TextSingleLine | Qt::TextHideMnemonic, title);
        painter.drawText(inner, static_cast<int>(end) | Qt::TextSingleLine, shortcut);
        if (item.menuItemType == QStyleOptionMenuItem::SubMenu)
            drawArrow(painter, inner, item.direction);
    }

    static void drawArrow(QPainter& painter, QRect inner, Qt::LayoutDirection direction) {
        const bool isLeftToRight = direction == Qt::LeftToRight;
        painter.save();
        painter.translate(isLeftToRight ? inner.x() + inner.width() - arrowWidth : inner.x() + arrowWidth,
                          inner.y() + inner.height() / 2.0);
        painter.scale(isLeftToRight ? 1 : -1, 1);
        painter.setPen(QPen(painter.pen().color(), 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.setBrush(Qt::NoBrush);
        painter.drawPolyline(QPolygonF({{2.5, -3.5}, {6, 0}, {2.5, 3.5}}));
        painter.restore();
    }

    MenuColors colors_;
    double radius_;
};

}  // namespace

void styleMenu(QMenu& menu, ColorScheme scheme) {
    const auto* window = FramelessWindow::of(menu.parentWidget());
    styleMenu(menu, scheme, window != nullptr && window->isComposited() ? MenuCorners::round : MenuCorners::square);
}

void styleMenu(QMenu& menu, ColorScheme scheme, MenuCorners corners) {
    auto* style = new MenuStyle(scheme, corners);
    style->setParent(&menu);
    menu.setStyle(style);
    menu.setWindowFlags(menu.windowFlags() | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint);
    menu.setAttribute(Qt::WA_TranslucentBackground, corners == MenuCorners::round);
    if (corners == MenuCorners::round)
        new MenuShadow(menu, menuRadius, scheme);
    menu.setFont(interfaceFont(fontSize, QFont::Normal));
    for (const auto* action : menu.actions())
        if (auto* submenu = action->menu())
            styleMenu(*submenu, scheme, corners);
}

void markDestructive(QAction& action) {
    action.setProperty(destructiveProperty, true);
}

}  // namespace brindle
