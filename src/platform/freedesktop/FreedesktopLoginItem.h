#pragma once

#include <string>

#include "platform/LoginItem.h"

namespace brindle {

class Bundle;

/// A desktop entry in the user's autostart folder.
class FreedesktopLoginItem : public LoginItem {
public:
    explicit FreedesktopLoginItem(const Bundle& bundle);

    [[nodiscard]] std::optional<std::string> registerItem() override;
    [[nodiscard]] std::optional<std::string> unregisterItem() override;

private:
    const Bundle& bundle_;
};

}  // namespace brindle
