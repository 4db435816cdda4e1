#pragma once

#include <QPixmap>
#include <optional>

#include "base/SharedText.h"
#include "platform/ColorSchemes.h"

namespace brindle {

/// At this many points an application's icon stands in a row.
constexpr int appIconSize = 20;

/// The icon of the installed application with that identifier, looked up once; a clipboard where there is none.
QPixmap appIcon(const std::optional<SharedText>& bundleIdentifier, ColorScheme scheme, double devicePixelRatio);

}  // namespace brindle
