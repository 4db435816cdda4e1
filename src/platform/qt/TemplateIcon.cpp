#include "platform/qt/TemplateIcon.h"

#include <QIconEngine>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <memory>
#include <optional>

#include "platform/qt/QtText.h"

namespace brindle {

namespace {

class VectorIconEngine : public QIconEngine {
public:
    VectorIconEngine(std::shared_ptr<QSvgRenderer> renderer, std::optional<QColor> tint)
        : renderer_(std::move(renderer)), tint_(tint) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode /*mode*/, QIcon::State /*state*/) override {
        const double scale = painter->device()->devicePixelRatioF();
        QImage image((QSizeF(rect.size()) * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter inner(&image);
        renderer_->render(&inner, image.rect());
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

    bool isNull() override { return !renderer_->isValid(); }
    QIconEngine* clone() const override { return new VectorIconEngine(renderer_, tint_); }

private:
    std::shared_ptr<QSvgRenderer> renderer_;
    std::optional<QColor> tint_;
};

}  // namespace

QIcon panelIcon(const Image& image, ColorScheme panel) {
    auto renderer = std::make_shared<QSvgRenderer>(toQString(image.path));
    if (!renderer->isValid())
        return {};
    renderer->setAspectRatioMode(Qt::KeepAspectRatio);
    std::optional<QColor> tint;
    if (image.isTemplate)
        tint = panel == ColorScheme::dark ? QColor(0xF1F5F9) : QColor(0x1F2937);
    return QIcon(new VectorIconEngine(std::move(renderer), tint));
}

}  // namespace brindle
