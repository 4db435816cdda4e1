#include "services/AccessibilityPermissionHelper.h"

#include "platform/AccessibilityTrust.h"
#include "platform/Platform.h"

namespace brindle {

bool AccessibilityPermissionHelper::checkAccessibilityPermission() {
    return platform().accessibilityTrust().isProcessTrusted(TrustPrompt::ask);
}

}  // namespace brindle
