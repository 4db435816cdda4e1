#include "views/ListDialog.h"

#include <QGuiApplication>
#include <QInputMethod>
#include <QKeyEvent>
#include <QPainter>
#include <algorithm>
#include <utility>

#include "platform/qt/SoftShadow.h"
#include "views/AccessibleRole.h"
#include "views/FocusRing.h"
#include "views/Palette.h"

namespace brindle {

namespace {

// Points.
constexpr int cardWidth = 270;
constexpr int cardPadding = 20;
constexpr int cardRadius = 12;
constexpr int innerWidth = cardWidth - 2 * cardPadding;
constexpr int titleHeight = 16;
constexpr int gapBeforeField = 14;
constexpr int fieldHeight = 30;
constexpr int gapBeforeMessage = 8;
constexpr int messageInset = 8;
constexpr int gapBeforeButtons = 16;
constexpr int buttonHeight = 30;
constexpr int buttonGap = 8;

const SoftShadow cardShadow = {{0, 8}, 14, QColor(2, 6, 23, 102)};

}  // namespace

ListDialog::ListDialog(const Question& question, Published<bool>& isPresented, std::function<void()> action,
                       QWidget& popover)
    : QWidget(&popover),
      isPresented_(isPresented),
      action_(std::move(action)),
      title_(question.title, {TextStyle::headline, Role::primaryText, Qt::AlignHCenter}, this),
      cancelButton_(PushButton::Kind::plainRaised, QStringLiteral("Cancel"), this),
      actionButton_(question.actionKind, question.actionTitle, this) {
    if (question.text) {
        const FieldBox::Shape shape{.radius = 6, .padding = 9};
        field_ = std::make_unique<FieldBox>(*question.text, QStringLiteral("List Name"), shape, this);
    } else {
        const Label::Look look{TextStyle::small, Role::secondaryText, Qt::AlignHCenter};
        message_ = std::make_unique<Label>(question.message, look, this);
    }
    setAccessible(*this, QAccessible::Dialog, question.title);
    setAccessibleDescription(question.message);
    setAttribute(Qt::WA_NoMousePropagation);
    setContextMenuPolicy(Qt::PreventContextMenu);
    connect(&cancelButton_, &PushButton::clicked, this, &ListDialog::cancel);
    connect(&actionButton_, &PushButton::clicked, this, &ListDialog::act);
    setGeometry(popover.rect());
    placeParts();
}

void ListDialog::placeParts() {
    const int messageWidth = innerWidth - 2 * messageInset;
    const int messageHeight = message_ ? message_->heightForWidth(messageWidth) : 0;
    const int middle = field_ ? gapBeforeField + fieldHeight : gapBeforeMessage + messageHeight;
    const int cardHeight = 2 * cardPadding + titleHeight + middle + gapBeforeButtons + buttonHeight;
    card_ = QRect((width() - cardWidth) / 2, (height() - cardHeight) / 2, cardWidth, cardHeight);
    const int left = card_.left() + cardPadding;
    int top = card_.top() + cardPadding;
    title_.setGeometry(left, top, innerWidth, titleHeight);
    top += titleHeight;
    if (field_)
        field_->setBoxGeometry({left, top + gapBeforeField, innerWidth, fieldHeight});
    else
        message_->setGeometry(left + messageInset, top + gapBeforeMessage, messageWidth, messageHeight);
    top += middle + gapBeforeButtons;
    constexpr int buttonWidth = (innerWidth - buttonGap) / 2;
    cancelButton_.setGeometry(left, top, buttonWidth, buttonHeight);
    actionButton_.setGeometry(left + buttonWidth + buttonGap, top, buttonWidth, buttonHeight);
}

void ListDialog::setColorScheme(ColorScheme scheme) {
    scheme_ = scheme;
    title_.setColorScheme(scheme);
    if (field_)
        field_->setColorScheme(scheme);
    if (message_)
        message_->setColorScheme(scheme);
    cancelButton_.setColorScheme(scheme);
    actionButton_.setColorScheme(scheme);
    update();
}

void ListDialog::open(Qt::FocusReason reason) {
    show();
    raise();
    if (field_)
        field_->field().selectAll();
    stops().front()->setFocus(reason);
}

std::vector<QWidget*> ListDialog::stops() {
    std::vector<QWidget*> stops = {&cancelButton_, &actionButton_};
    if (field_)
        stops.insert(stops.begin(), &field_->field());
    return stops;
}

bool ListDialog::focusNextPrevChild(bool next) {
    const auto all = stops();
    const auto current = static_cast<std::size_t>(std::ranges::find(all, window()->focusWidget()) - all.begin());
    const std::size_t target = (current + (next ? 1 : all.size() - 1)) % all.size();
    all[target]->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

void ListDialog::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    const bool isReturn = key == Qt::Key_Return || key == Qt::Key_Enter;
    if (key == Qt::Key_Escape)
        cancel();
    else if (isReturn && !event->isAutoRepeat())  // the key that opened it may still be down
        act();
    else if (key == Qt::Key_Left || key == Qt::Key_Right)
        focusNextPrevChild(key == Qt::Key_Right);
}

void ListDialog::cancel() {
    isPresented_ = false;
}

void ListDialog::act() {
    if (!isPresented_.value())
        return;
    QGuiApplication::inputMethod()->commit();  // a click on the button leaves what is being composed in the field
    isPresented_ = false;
    action_();
}

void ListDialog::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), color(Role::dim, scheme_));
    paintShadow(painter, card_, cardRadius, cardShadow);
    fillRounded(painter, card_, cardRadius, color(Role::raised, scheme_));
    strokeRounded(painter, card_, cardRadius, 1, color(Role::raisedBorder, scheme_));
}

}  // namespace brindle
