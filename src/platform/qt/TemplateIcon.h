#pragma once

#include <QIcon>

#include "platform/ColorSchemes.h"
#include "platform/Image.h"

namespace brindle {

/// The picture as an icon that is drawn anew at each size asked for. A template is drawn in the colour of a text on a
/// panel of that scheme. An empty icon when the file cannot be read or the theme has none of that name.
QIcon panelIcon(const Image& image, ColorScheme panel);

}  // namespace brindle
