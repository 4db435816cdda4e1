#include "views/AccessibilityPermissionDialog.h"

#include <QPainter>
#include <utility>

#include "platform/Platform.h"
#include "platform/Workspace.h"
#include "views/ApplicationImage.h"
#include "views/Symbols.h"

namespace brindle {

namespace {

// Points.
constexpr QRect imagePlace(190, 32, 100, 100);
constexpr double imageRadius = 20;
constexpr QRect titlePlace(0, 152, 480, 21);
constexpr QPoint instructionPlace(48, 193);
constexpr int instructionWidth = 384;
constexpr int gap = 20;
constexpr int handHeight = 48;
constexpr int handRise = 2;  // brings the picture, which hangs low in its line, to the middle
constexpr int iconLeft = 200;
constexpr QRect buttonPlace(64, 520, 352, 48);

}  // namespace

AccessibilityPermissionDialog::AccessibilityPermissionDialog(std::function<void()> dismiss)
    : SheetView(QStringLiteral("Next Action"), fixedSize, std::move(dismiss)),
      title_(accessibleName(), {TextStyle::title2, Role::primaryText, Qt::AlignHCenter}, this),
      instruction_(QStringLiteral("After unlocking the Privacy & Security, drag the logo of Brindle below to the list "
                                  "of \"Allow the apps below to control your computer\" on right side of "
                                  "\"Accessibility\"."),
                   {.alignment = Qt::AlignHCenter}, this),
      hand_(QStringLiteral("👇"), {.style = TextStyle::hand, .alignment = Qt::AlignHCenter}, this),
      icon_(this),
      done_(PushButton::Kind::primary, QStringLiteral("Done"), {.radius = 12}, this) {
    constexpr int room = DraggableAppIcon::shadowRoom;
    title_.setGeometry(titlePlace);
    const int instructionHeight = instruction_.heightForWidth(instructionWidth);
    instruction_.setGeometry({instructionPlace, QSize(instructionWidth, instructionHeight)});
    const int handTop = instructionPlace.y() + instructionHeight + gap;
    hand_.setGeometry(0, handTop - handRise, width(), handHeight);
    icon_.move(QPoint(iconLeft, handTop + handHeight + gap) - QPoint(room, room));
    done_.setGeometry(buttonPlace);
    connect(&done_, &PushButton::clicked, this, &AccessibilityPermissionDialog::openSettings);
}

void AccessibilityPermissionDialog::openSettings() {
    platform().workspace().openUrl(accessibilitySettingsUrl);
    dismiss();
}

void AccessibilityPermissionDialog::setColorScheme(ColorScheme scheme) {
    SheetView::setColorScheme(scheme);
    for (Label* label : {&title_, &instruction_, &hand_})
        label->setColorScheme(scheme);
    done_.setColorScheme(scheme);
}

void AccessibilityPermissionDialog::paintEvent(QPaintEvent* event) {
    SheetView::paintEvent(event);
    QPainter painter(this);
    const QPixmap image = applicationImage(imagePlace.width(), brindle::devicePixelRatio(painter));
    if (!image.isNull())
        painter.drawPixmap(imagePlace.topLeft(), withRoundCorners(image, imageRadius));
}

}  // namespace brindle
