#include "platform/x11/X11AccessibilityTrust.h"

#include <xcb/xtest.h>

#include <string_view>

#include "platform/x11/X11Connection.h"

namespace brindle {

bool X11AccessibilityTrust::isProcessTrusted(TrustPrompt /*prompt*/) {
    constexpr std::string_view name = "XTEST";
    xcb_connection_t* server = connection_.get();
    const XcbPointer<xcb_query_extension_reply_t> extension(
        xcb_query_extension_reply(server, xcb_query_extension(server, name.size(), name.data()), nullptr));
    // A request of an extension that was absent at first sight would break the connection.
    if (!extension || extension->present == 0 || !connection_.hasExtension(xcb_test_id))
        return false;
    const XcbPointer<xcb_test_get_version_reply_t> version(xcb_test_get_version_reply(
        server, xcb_test_get_version(server, XCB_TEST_MAJOR_VERSION, XCB_TEST_MINOR_VERSION), nullptr));
    return version != nullptr;
}

}  // namespace brindle
