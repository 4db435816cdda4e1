#pragma once

#include <functional>
#include <memory>

#include "platform/ColorSchemes.h"

namespace brindle {

class PortalAppearance;

/// The preference that the desktop's portal knows (org.freedesktop.portal.Settings). It is asked at the first use and
/// never waited for; until it answers, without one, or when it has no preference, the fallback answers.
class PortalColorSchemes : public ColorSchemes {
public:
    explicit PortalColorSchemes(std::function<ColorScheme()> fallback);
    ~PortalColorSchemes() override;

    [[nodiscard]] ColorScheme systemColorScheme() const override;
    [[nodiscard]] Subscription onChange(std::function<void()> observer) override;

    /// To be called when the fallback may answer differently than before.
    void fallbackChanged();

private:
    [[nodiscard]] PortalAppearance& portal() const;

    std::function<ColorScheme()> fallback_;
    ColorScheme lastFallback_;
    mutable Signal<> changes_;
    mutable std::unique_ptr<PortalAppearance> portal_;
};

}  // namespace brindle
