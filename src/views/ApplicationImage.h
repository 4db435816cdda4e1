#pragma once

#include <QPixmap>

namespace brindle {

/// The program's own image in a square of that many points: the bundle's, else the application's icon, else null.
QPixmap applicationImage(int points, double devicePixelRatio);

/// The picture with its corners rounded.
QPixmap withRoundCorners(const QPixmap& picture, double radius);

}  // namespace brindle
