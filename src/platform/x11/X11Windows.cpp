#include "platform/x11/X11Windows.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <string>

#include "platform/x11/X11Connection.h"

namespace brindle::x11 {

namespace {

constexpr xcb_window_t none = XCB_WINDOW_NONE;
constexpr std::size_t deepestTree = 32;  // windows inside each other; far beyond what toolkits build
constexpr int longestFamily = 16;        // dialogs of dialogs; ends a circle as well

struct TypeRule {
    std::string_view name;
    ActivationPolicy policy;
};
constexpr std::array typeRules = {
    TypeRule{"_NET_WM_WINDOW_TYPE_NORMAL", ActivationPolicy::regular},
    TypeRule{"_NET_WM_WINDOW_TYPE_DIALOG", ActivationPolicy::regular},
    TypeRule{"_NET_WM_WINDOW_TYPE_UTILITY", ActivationPolicy::regular},
    TypeRule{"_NET_WM_WINDOW_TYPE_DESKTOP", ActivationPolicy::accessory},
    TypeRule{"_NET_WM_WINDOW_TYPE_DOCK", ActivationPolicy::accessory},
    TypeRule{"_NET_WM_WINDOW_TYPE_TOOLBAR", ActivationPolicy::accessory},
    TypeRule{"_NET_WM_WINDOW_TYPE_MENU", ActivationPolicy::accessory},
    TypeRule{"_NET_WM_WINDOW_TYPE_SPLASH", ActivationPolicy::accessory},
    TypeRule{"_NET_WM_WINDOW_TYPE_DROPDOWN_MENU", ActivationPolicy::accessory},
    TypeRule{"_NET_WM_WINDOW_TYPE_POPUP_MENU", ActivationPolicy::accessory},
    TypeRule{"_NET_WM_WINDOW_TYPE_TOOLTIP", ActivationPolicy::accessory},
    TypeRule{"_NET_WM_WINDOW_TYPE_NOTIFICATION", ActivationPolicy::accessory},
    TypeRule{"_NET_WM_WINDOW_TYPE_COMBO", ActivationPolicy::accessory},
    TypeRule{"_NET_WM_WINDOW_TYPE_DND", ActivationPolicy::accessory},
};

std::string localHost() {
    std::array<char, 256> name{};
    gethostname(name.data(), name.size() - 1);
    return name.data();
}

std::string_view withoutDomain(std::string_view host) {
    return host.substr(0, host.find('.'));
}

bool isOnThisMachine(X11Connection& connection, xcb_window_t window) {
    const auto host = connection.property(window, XCB_ATOM_WM_CLIENT_MACHINE, XCB_ATOM_ANY);
    return !host || withoutDomain(host->c_str()) == withoutDomain(localHost());
}

XcbPointer<xcb_get_window_attributes_reply_t> attributesOf(X11Connection& connection, xcb_window_t window) {
    return XcbPointer<xcb_get_window_attributes_reply_t>(xcb_get_window_attributes_reply(
        connection.get(), xcb_get_window_attributes(connection.get(), window), nullptr));
}

xcb_window_t childUnderPointer(X11Connection& connection, xcb_window_t window) {
    const XcbPointer<xcb_query_pointer_reply_t> pointer(
        xcb_query_pointer_reply(connection.get(), xcb_query_pointer(connection.get(), window), nullptr));
    return pointer ? pointer->child : none;
}

xcb_window_t parentOf(X11Connection& connection, xcb_window_t window) {
    const XcbPointer<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(connection.get(), xcb_query_tree(connection.get(), window), nullptr));
    return tree ? tree->parent : none;
}

bool isClient(X11Connection& connection, xcb_window_t window) {
    return connection.property(window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING).has_value() ||
           !connection.property32(window, connection.atom("WM_STATE"), XCB_ATOM_ANY).empty();
}

xcb_window_t focusedClient(X11Connection& connection) {
    const XcbPointer<xcb_get_input_focus_reply_t> focus(
        xcb_get_input_focus_reply(connection.get(), xcb_get_input_focus(connection.get()), nullptr));
    xcb_window_t window = focus ? focus->focus : none;
    if (window == XCB_INPUT_FOCUS_POINTER_ROOT)
        window = childUnderPointer(connection, connection.root());
    for (std::size_t depth = 0; depth < deepestTree && window != none && window != connection.root(); ++depth) {
        if (isClient(connection, window))
            return window;
        window = parentOf(connection, window);
    }
    return none;
}

bool has(const std::vector<std::uint32_t>& values, std::uint32_t value) {
    return std::find(values.begin(), values.end(), value) != values.end();
}

bool isOfType(X11Connection& connection, xcb_window_t window, std::string_view type) {
    return has(connection.property32(window, connection.atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM),
               connection.atom(type));
}

}  // namespace

bool managerSupports(X11Connection& connection, std::string_view feature) {
    const auto check = connection.atom("_NET_SUPPORTING_WM_CHECK");
    const auto manager = connection.firstOfProperty32(connection.root(), check, XCB_ATOM_WINDOW);
    // A manager that died leaves its properties on the root, but its own window is gone.
    if (manager == none || connection.firstOfProperty32(manager, check, XCB_ATOM_WINDOW) != manager)
        return false;
    return has(connection.property32(connection.root(), connection.atom("_NET_SUPPORTED"), XCB_ATOM_ATOM),
               connection.atom(feature));
}

xcb_window_t activeWindow(X11Connection& connection) {
    constexpr std::string_view property = "_NET_ACTIVE_WINDOW";
    if (managerSupports(connection, property))
        return connection.firstOfProperty32(connection.root(), connection.atom(property), XCB_ATOM_WINDOW);
    return focusedClient(connection);
}

xcb_window_t receiverOfKeys(X11Connection& connection) {
    const auto active = activeWindow(connection);
    return isShown(connection, active) ? active : focusedClient(connection);
}

WindowNames namesOf(X11Connection& connection, xcb_window_t window) {
    WindowNames names;
    if (const auto both = connection.property(window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING)) {
        names.instance = both->c_str();  // NOLINT(readability-redundant-string-cstr): as far as the first NUL
        if (names.instance.size() + 1 < both->size())
            names.windowClass = both->c_str() + names.instance.size() + 1;
    }
    const auto gtk =
        connection.property(window, connection.atom("_GTK_APPLICATION_ID"), connection.atom("UTF8_STRING"));
    names.gtkApplicationId = gtk.value_or("");
    return names;
}

std::int32_t processOf(X11Connection& connection, xcb_window_t window) {
    const auto process = connection.firstOfProperty32(window, connection.atom("_NET_WM_PID"), XCB_ATOM_CARDINAL);
    return process != 0 && isOnThisMachine(connection, window) ? static_cast<std::int32_t>(process) : unknownProcess;
}

ActivationPolicy policyOf(X11Connection& connection, xcb_window_t window) {
    const auto attributes = attributesOf(connection, window);
    if (attributes && attributes->override_redirect != 0)
        return ActivationPolicy::accessory;
    const auto states = connection.property32(window, connection.atom("_NET_WM_STATE"), XCB_ATOM_ATOM);
    const bool isDialog = !connection.property32(window, XCB_ATOM_WM_TRANSIENT_FOR, XCB_ATOM_WINDOW).empty();
    if (has(states, connection.atom("_NET_WM_STATE_SKIP_TASKBAR")) && !isDialog)
        return ActivationPolicy::accessory;
    // The window's own order of preference; types that nobody knows are passed over.
    for (const auto type : connection.property32(window, connection.atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM)) {
        for (const auto& rule : typeRules) {
            if (connection.atom(rule.name) == type)
                return rule.policy;
        }
    }
    return ActivationPolicy::regular;
}

bool exists(X11Connection& connection, xcb_window_t window) {
    return attributesOf(connection, window) != nullptr;
}

bool isShown(X11Connection& connection, xcb_window_t window) {
    const auto attributes = attributesOf(connection, window);
    return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
}

xcb_window_t ownerOf(X11Connection& connection, xcb_window_t window) {
    return connection.firstOfProperty32(window, XCB_ATOM_WM_TRANSIENT_FOR, XCB_ATOM_WINDOW);
}

bool isOrBelongsTo(X11Connection& connection, xcb_window_t window, xcb_window_t owner) {
    for (int depth = 0; depth < longestFamily && window != none; ++depth) {
        if (window == owner)
            return true;
        window = ownerOf(connection, window);
    }
    return false;
}

std::vector<xcb_window_t> underPointer(X11Connection& connection) {
    std::vector<xcb_window_t> path;
    for (auto window = childUnderPointer(connection, connection.root()); window != none && path.size() < deepestTree;
         window = childUnderPointer(connection, window))
        path.push_back(window);
    return path;
}

bool isDialog(X11Connection& connection, xcb_window_t window) {
    return ownerOf(connection, window) != none || isOfType(connection, window, "_NET_WM_WINDOW_TYPE_DIALOG");
}

bool isDock(X11Connection& connection, xcb_window_t window) {
    return isOfType(connection, window, "_NET_WM_WINDOW_TYPE_DOCK");
}

}  // namespace brindle::x11
