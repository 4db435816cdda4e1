#include "views/AboutView.h"

#include <QFile>
#include <QPainter>
#include <cmath>
#include <utility>

#include "platform/Bundle.h"
#include "platform/Platform.h"
#include "platform/qt/QtText.h"
#include "views/Feedback.h"
#include "views/IcnsFile.h"
#include "views/Palette.h"
#include "views/ScaledImage.h"
#include "views/Symbols.h"

namespace brindle {

namespace {

// Points, from the top down.
constexpr QPoint closePlace(274, 22);
constexpr int iconTop = 64;
constexpr int imageSize = 80;
constexpr int symbolSize = 60;
constexpr int nameGap = 20;
constexpr int nameHeight = 21;
constexpr int versionGap = 4;
constexpr int versionHeight = 14;
constexpr int lineGap = 28;
constexpr int sidePadding = 24;
constexpr int buttonGap = 28;
constexpr int buttonHeight = 33;

QImage readIcon() {
    const auto folder = platform().bundle().resourcePath();
    QFile file(folder ? toQString(*folder) + "/AppIcon.icns" : QString());
    if (!folder || !file.open(QIODevice::ReadOnly))
        return {};
    const auto png = largestPng(file.readAll().toStdString());
    return png ? QImage::fromData(QByteArray::fromStdString(*png), "PNG") : QImage();
}

}  // namespace

AboutView::AboutView(std::function<void()> dismiss)
    : SheetView(QStringLiteral("About"), fixedSize, std::move(dismiss)),
      icon_(readIcon()),
      closeButton_(SymbolButton::Kind::close, QStringLiteral("Close"), this),
      name_(QStringLiteral("Brindle"), {TextStyle::title2, Role::primaryText, Qt::AlignHCenter}, this),
      version_(toQString("Version " + appVersion()), {TextStyle::subheadline, Role::secondaryText, Qt::AlignHCenter},
               this),
      learnMore_(PushButton::Kind::primary, QStringLiteral("Learn More"), {.radius = 8, .style = TextStyle::link},
                 this) {
    connect(&closeButton_, &SymbolButton::clicked, this, &AboutView::dismiss);
    connect(&learnMore_, &PushButton::clicked, this, [] { openURL(BRINDLE_WEB_PAGE); });
    placeParts();
}

int AboutView::iconSize() const {
    return icon_.isNull() ? symbolSize : imageSize;
}

void AboutView::placeParts() {
    closeButton_.move(closePlace);
    int top = iconTop + iconSize() + nameGap;
    name_.setGeometry(0, top, width(), nameHeight);
    top += nameHeight + versionGap;
    version_.setGeometry(0, top, width(), versionHeight);
    top += versionHeight + lineGap + 1 + buttonGap;
    const int buttonWidth =
        2 * sidePadding + static_cast<int>(std::lround(textWidth(learnMore_.text(), TextStyle::link)));
    learnMore_.setGeometry((width() - buttonWidth) / 2, top, buttonWidth, buttonHeight);
}

void AboutView::setColorScheme(ColorScheme scheme) {
    SheetView::setColorScheme(scheme);
    closeButton_.setColorScheme(scheme);
    name_.setColorScheme(scheme);
    version_.setColorScheme(scheme);
    learnMore_.setColorScheme(scheme);
}

void AboutView::paintEvent(QPaintEvent* event) {
    SheetView::paintEvent(event);
    QPainter painter(this);
    const QPoint corner((width() - iconSize()) / 2, iconTop);
    if (icon_.isNull())
        drawSymbol(painter, corner, "doc.on.clipboard", symbolSize, accentColor());
    else
        drawScaled(painter, QRect(corner, QSize(imageSize, imageSize)), icon_);
    const int line = version_.geometry().top() + versionHeight + lineGap;
    painter.fillRect(sidePadding, line, width() - 2 * sidePadding, 1, color(Role::rule, colorScheme()));
}

}  // namespace brindle
