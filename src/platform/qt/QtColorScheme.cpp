#include "platform/qt/QtColorScheme.h"

#include <QEvent>
#include <QGuiApplication>
#include <QPalette>
#include <memory>
#include <utility>

namespace brindle {

namespace {

class PaletteWatch : public QObject {
public:
    explicit PaletteWatch(std::function<void()> observer) : observer_(std::move(observer)) {
        qApp->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange)
            observer_();
        return false;
    }

private:
    std::function<void()> observer_;
};

}  // namespace

ColorScheme paletteColorScheme() {
    const QPalette palette = QGuiApplication::palette();
    const bool isDark = palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
    return isDark ? ColorScheme::dark : ColorScheme::light;
}

Subscription onPaletteChange(std::function<void()> observer) {
    return Subscription([watch = std::make_shared<PaletteWatch>(std::move(observer))]() mutable { watch.reset(); });
}

}  // namespace brindle
