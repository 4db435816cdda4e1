#pragma once

#include <QFont>

namespace brindle {

/// The desktop's font, or the one that Brindle was drawn with where the desktop names none.
QFont interfaceFont(int pixelSize, QFont::Weight weight);
/// The desktop's font for text in columns.
QFont monospacedFont(int pixelSize, QFont::Weight weight);

}  // namespace brindle
