#include "platform/freedesktop/PortalColorSchemes.h"

#include <utility>

#include "platform/freedesktop/PortalAppearance.h"

namespace brindle {

PortalColorSchemes::PortalColorSchemes(std::function<ColorScheme()> fallback)
    : fallback_(std::move(fallback)), lastFallback_(fallback_()) {}

PortalColorSchemes::~PortalColorSchemes() = default;

ColorScheme PortalColorSchemes::systemColorScheme() const {
    const auto scheme = portal().scheme();
    return scheme ? *scheme : fallback_();
}

Subscription PortalColorSchemes::onChange(std::function<void()> observer) {
    (void)portal();  // from now on somebody wants to hear of changes
    return changes_.subscribe(std::move(observer));
}

void PortalColorSchemes::fallbackChanged() {
    const ColorScheme before = std::exchange(lastFallback_, fallback_());
    if (lastFallback_ != before && !portal().scheme())
        changes_.emit();
}

PortalAppearance& PortalColorSchemes::portal() const {
    if (!portal_)
        portal_ = std::make_unique<PortalAppearance>([this] { changes_.emit(); });
    return *portal_;
}

}  // namespace brindle
