#include "views/SegmentedControl.h"

#include <QKeyEvent>
#include <QPainter>
#include <algorithm>
#include <utility>

#include "platform/qt/SoftShadow.h"
#include "views/AccessibleRole.h"
#include "views/Control.h"
#include "views/FocusRing.h"
#include "views/Fonts.h"
#include "views/Palette.h"

namespace brindle {

namespace {

// Points.
constexpr int controlWidth = 200;
constexpr int controlHeight = 28;
constexpr int padding = 2;
constexpr double trackRadius = 7;
constexpr double segmentRadius = 5;

const SoftShadow chosenShadow = {{0, 1}, 1, QColor(2, 6, 23, 56)};

}  // namespace

class SegmentedControl::Segment final : public Control {
public:
    Segment(const QString& title, QWidget* parent) : Control(title, parent) {
        setText(title);
        setCheckable(true);
        setAutoExclusive(true);
    }

    void setChosen(bool isChosen) {
        setAutoExclusive(false);  // else the chosen one could only give way to another
        setChecked(isChosen);
        setAutoExclusive(true);
    }
    [[nodiscard]] bool isRinged() const { return showsFocusRing(); }

protected:
    void paint(QPainter& painter) override {
        const bool isLit = isChecked() || look() != Look::rest;
        painter.setPen(color(isLit ? Role::primaryText : Role::segmentText, colorScheme()));
        drawTextLine(painter, rect(), text(), isChecked() ? TextStyle::smallMedium : TextStyle::small,
                     Qt::AlignHCenter);
    }
};

SegmentedControl::SegmentedControl(const QString& name, const std::vector<QString>& titles,
                                   const std::function<void(std::size_t)>& choose, QWidget* parent)
    : QWidget(parent) {
    setAccessible(*this, QAccessible::Grouping, name);
    setFixedSize(controlWidth, controlHeight);
    const double width = (controlWidth - 2.0 * padding) / static_cast<double>(titles.size());
    for (std::size_t i = 0; i < titles.size(); ++i) {
        auto* segment = new Segment(titles[i], this);
        const auto edge = [&](std::size_t index) { return padding + qRound(width * static_cast<double>(index)); };
        segment->setGeometry(edge(i), padding, edge(i + 1) - edge(i), controlHeight - 2 * padding);
        segment->installEventFilter(this);
        connect(segment, &QAbstractButton::clicked, this, [choose, i] { choose(i); });
        connect(segment, &QAbstractButton::toggled, this, qOverload<>(&QWidget::update));
        segments_.push_back(segment);
    }
}

void SegmentedControl::setColorScheme(ColorScheme scheme) {
    scheme_ = scheme;
    for (Segment* segment : segments_)
        segment->setColorScheme(scheme);
    update();
}

void SegmentedControl::setChosen(std::optional<std::size_t> index) {
    for (std::size_t i = 0; i < segments_.size(); ++i)
        segments_[i]->setChosen(index == i);
    // One of them is where Tab leads to, and where the keyboard goes when another had it.
    Segment* stop = segments_[index.value_or(0)];
    for (Segment* segment : segments_)
        segment->setFocusPolicy(segment == stop ? Qt::TabFocus : Qt::NoFocus);
    const QWidget* focused = window()->focusWidget();
    if (focused != stop && std::ranges::find(segments_, focused) != segments_.end())
        stop->setFocus(Qt::OtherFocusReason);
    update();
}

bool SegmentedControl::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut)
        update();
    return QWidget::eventFilter(watched, event);
}

void SegmentedControl::keyPressEvent(QKeyEvent* event) {
    const auto focused = std::ranges::find_if(segments_, &QWidget::hasFocus);
    const bool isStep = event->key() == Qt::Key_Left || event->key() == Qt::Key_Right;
    if (!isStep || focused == segments_.end()) {
        event->ignore();
        return;
    }
    const bool isForward = event->key() == Qt::Key_Right;
    if (focused == (isForward ? segments_.end() - 1 : segments_.begin()))
        return;
    Segment* next = *(isForward ? focused + 1 : focused - 1);
    next->setFocus(isForward ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    next->click();
}

void SegmentedControl::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    fillRounded(painter, rect(), trackRadius, color(Role::segmentTrack, scheme_));
    const auto chosen = std::ranges::find_if(segments_, &QAbstractButton::isChecked);
    if (chosen != segments_.end()) {
        paintShadow(painter, (*chosen)->geometry(), segmentRadius, chosenShadow);
        fillRounded(painter, (*chosen)->geometry(), segmentRadius, color(Role::segmentChosen, scheme_));
    }
    if (std::ranges::any_of(segments_, &Segment::isRinged))
        paintFocusRing(painter, rect(), trackRadius, color(Role::focusRing, scheme_));
}

}  // namespace brindle
