#pragma once

#include <functional>
#include <string>
#include <vector>

namespace brindle {

struct MenuItem {
    std::string title;
    std::function<void()> action;
    std::string keyEquivalent;  ///< one character, pressed with Command; empty: none
};

using Menu = std::vector<MenuItem>;

}  // namespace brindle
