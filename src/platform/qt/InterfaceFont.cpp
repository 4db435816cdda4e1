#include "platform/qt/InterfaceFont.h"

#include <QFontDatabase>
#include <QGuiApplication>

namespace brindle {

namespace {

/// What the toolkit calls the font of a desktop that has not chosen one.
bool isNoChoice(const QString& family) {
    return family.isEmpty() || family.compare("sans serif", Qt::CaseInsensitive) == 0 ||
           family.compare("sans-serif", Qt::CaseInsensitive) == 0 || family.compare("sans", Qt::CaseInsensitive) == 0;
}

QString interfaceFamily() {
    const QString inter = QStringLiteral("Inter");
    const QString desktop = QGuiApplication::font().family();
    return isNoChoice(desktop) && QFontDatabase::hasFamily(inter) ? inter : desktop;
}

/// Unhinted, so that lines break alike at every scale.
QFont unhinted(const QString& family, int pixelSize, QFont::Weight weight) {
    QFont made(family);
    made.setPixelSize(pixelSize);
    made.setWeight(weight);
    made.setHintingPreference(QFont::PreferNoHinting);
    made.setStyleStrategy(static_cast<QFont::StyleStrategy>(QFont::PreferAntialias | QFont::NoSubpixelAntialias));
    return made;
}

}  // namespace

QFont interfaceFont(int pixelSize, QFont::Weight weight) {
    return unhinted(interfaceFamily(), pixelSize, weight);
}

QFont monospacedFont(int pixelSize, QFont::Weight weight) {
    QFont made = unhinted(QFontDatabase::systemFont(QFontDatabase::FixedFont).family(), pixelSize, weight);
    made.setStyleHint(QFont::Monospace, made.styleStrategy());
    return made;
}

}  // namespace brindle
