#pragma once

namespace brindle {

/// Asks the desktop whether this program may put key events into others. Nothing is remembered.
class AccessibilityPermissionHelper {
public:
    AccessibilityPermissionHelper() = delete;

    /// The desktop may show its own prompt while trust is missing.
    [[nodiscard]] static bool checkAccessibilityPermission();
};

}  // namespace brindle
