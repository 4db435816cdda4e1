#include "platform/qt/TemplateIcon.h"

#include <QIconEngine>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <functional>
#include <memory>
#include <optional>

#include "platform/qt/QtText.h"

namespace brindle {

namespace {

/// Fills a square with the picture.
using Draw = std::function<void(QPainter& painter, const QRect& square)>;

class PanelIconEngine : public QIconEngine {
public:
    PanelIconEngine(Draw draw, std::optional<QColor> tint) : draw_(std::move(draw)), tint_(tint) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode /*mode*/, QIcon::State /*state*/) override {
        const double scale = painter->device()->devicePixelRatioF();
        QImage image((QSizeF(rect.size()) * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter inner(&image);
        draw_(inner, image.rect());
        if (tint_) {
            inner.setCompositionMode(QPainter::CompositionMode_SourceIn);
            inner.fillRect(image.rect(), *tint_);
        }
        inner.end();
        painter->drawImage(rect, image);
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap result(size);
        result.fill(Qt::transparent);
        QPainter painter(&result);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return result;
    }

    /// What trays that take pictures ask for: small panels, and those of twice the resolution.
    QList<QSize> availableSizes(QIcon::Mode /*mode*/, QIcon::State /*state*/) override {
        QList<QSize> sizes;
        for (const int side : {16, 18, 20, 22, 24, 32, 36, 44, 48, 64})
            sizes.append({side, side});
        return sizes;
    }

    bool isNull() override { return false; }
    QIconEngine* clone() const override { return new PanelIconEngine(draw_, tint_); }

private:
    Draw draw_;
    std::optional<QColor> tint_;
};

/// Empty when there is no such picture.
Draw drawingOf(const QString& path) {
    if (!path.startsWith(QLatin1Char('/'))) {
        const QIcon icon = QIcon::fromTheme(path);
        if (icon.isNull())
            return nullptr;
        return [icon](QPainter& painter, const QRect& square) { icon.paint(&painter, square); };
    }
    auto renderer = std::make_shared<QSvgRenderer>(path);
    if (!renderer->isValid())
        return nullptr;
    renderer->setAspectRatioMode(Qt::KeepAspectRatio);
    return [renderer](QPainter& painter, const QRect& square) { renderer->render(&painter, square); };
}

}  // namespace

QIcon panelIcon(const Image& image, ColorScheme panel) {
    Draw draw = drawingOf(toQString(image.path));
    if (!draw)
        return {};
    std::optional<QColor> tint;
    if (image.isTemplate)
        tint = panel == ColorScheme::dark ? QColor(0xF1F5F9) : QColor(0x1F2937);
    return QIcon(new PanelIconEngine(std::move(draw), tint));
}

}  // namespace brindle
