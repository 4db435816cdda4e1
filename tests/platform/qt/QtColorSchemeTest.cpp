#include "platform/qt/QtColorScheme.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QPalette>

namespace brindle {
namespace {

TEST(QtColorScheme, FollowsTheToolkitsColours) {
    const QPalette before = QApplication::palette();
    int changes = 0;
    auto subscription = onPaletteChange([&] { ++changes; });
    for (const auto& [ground, scheme] :
         {std::pair(Qt::black, ColorScheme::dark), std::pair(Qt::white, ColorScheme::light)}) {
        changes = 0;
        QApplication::setPalette(QPalette(Qt::gray, ground));
        QCoreApplication::sendPostedEvents();
        EXPECT_EQ(changes, 1);
        EXPECT_EQ(paletteColorScheme(), scheme);
    }
    subscription.reset();
    QApplication::setPalette(before);
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(changes, 1);
}

}  // namespace
}  // namespace brindle
