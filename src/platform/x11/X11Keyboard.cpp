#include "platform/x11/X11Keyboard.h"

// The header has a member of that name, which is a keyword here.
#define explicit isExplicit
#include <xcb/xkb.h>
#undef explicit
#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon-x11.h>

#include "platform/x11/X11Connection.h"

namespace brindle {

namespace {

constexpr xcb_keycode_t placeOfV = 55;  // on every PC keyboard, by the evdev numbering
constexpr int lockRow = 1;              // of the eight rows of the modifier mapping

}  // namespace

X11Keyboard::X11Keyboard(X11Connection& connection, std::optional<std::uint8_t> device)
    : connection_(connection), context_(xkb_context_new(XKB_CONTEXT_NO_DEFAULT_INCLUDES), &xkb_context_unref) {
    reload_.setSingleShot(true);
    QObject::connect(&reload_, &QTimer::timeout, [this] { reload(); });
    std::uint8_t firstEvent = 0;
    const bool hasXkb =
        xkb_x11_setup_xkb_extension(connection_.get(), XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
                                    XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, &firstEvent, nullptr) != 0;
    device_ = !hasXkb ? -1 : device ? *device : xkb_x11_get_core_keyboard_device_id(connection_.get());
    followChanges(firstEvent);
    readKeymap();
    readModifiers();
}

void X11Keyboard::followChanges(std::uint8_t firstXkbEvent) {
    mappingEvents_ = connection_.onEvent(XCB_MAPPING_NOTIFY, [this](const auto&) { reload_.start(0); });
    if (device_ < 0)
        return;
    constexpr std::uint16_t whole = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
    constexpr std::uint16_t mapParts = XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP;
    xcb_xkb_select_events_details_t details{};
    xcb_xkb_select_events_aux(connection_.get(), static_cast<std::uint16_t>(device_), whole, 0, whole, mapParts,
                              mapParts, &details);
    details.affectState = details.stateDetails = XCB_XKB_STATE_PART_GROUP_STATE;
    xcb_xkb_select_events_aux(connection_.get(), XCB_XKB_ID_USE_CORE_KBD, XCB_XKB_EVENT_TYPE_STATE_NOTIFY, 0, 0, 0, 0,
                              &details);
    xkbEvents_ = connection_.onEvent(firstXkbEvent, [this](const auto& event) { handleXkbEvent(event); });
}

void X11Keyboard::handleXkbEvent(const xcb_generic_event_t& event) {
    const auto& state = reinterpret_cast<const xcb_xkb_state_notify_event_t&>(event);
    if (state.xkbType != XCB_XKB_STATE_NOTIFY) {
        if (state.deviceID == device_)
            reload_.start(0);
    } else if (layout_ != state.group) {
        layout_ = state.group;
        changes_.emit();
    }
}

void X11Keyboard::reload() {
    readKeymap();
    readModifiers();
    changes_.emit();
}

void X11Keyboard::readKeymap() {
    xcb_connection_t* server = connection_.get();
    keymap_.reset(device_ < 0
                      ? nullptr
                      : xkb_x11_keymap_new_from_device(context_.get(), server, device_, XKB_KEYMAP_COMPILE_NO_FLAGS));
    if (!keymap_)
        return;
    const XcbPointer<xcb_xkb_get_state_reply_t> state(
        xcb_xkb_get_state_reply(server, xcb_xkb_get_state(server, XCB_XKB_ID_USE_CORE_KBD), nullptr));
    layout_ = state ? state->group : 0;
}

void X11Keyboard::readModifiers() {
    superMask_ = numLockMask_ = 0;
    modifierKeys_.reset();
    xcb_connection_t* server = connection_.get();
    const XcbPointer<xcb_get_modifier_mapping_reply_t> mapping(
        xcb_get_modifier_mapping_reply(server, xcb_get_modifier_mapping(server), nullptr));
    if (!mapping)
        return;
    const xcb_keycode_t* keys = xcb_get_modifier_mapping_keycodes(mapping.get());
    for (int row = 0; row < 8; ++row) {
        for (int column = 0; column < mapping->keycodes_per_modifier; ++column) {
            const xcb_keycode_t key = *keys++;
            if (key == 0)
                continue;
            const bool isNumLock = types(key, XKB_KEY_Num_Lock);
            if (isNumLock)
                numLockMask_ |= static_cast<std::uint16_t>(1U << row);
            if (types(key, XKB_KEY_Super_L) || types(key, XKB_KEY_Super_R))
                superMask_ |= static_cast<std::uint16_t>(1U << row);
            if (!isNumLock && row != lockRow)
                modifierKeys_.set(key);
        }
    }
}

xcb_keycode_t X11Keyboard::vKey() const {
    if (const auto key = keyFor(XKB_KEY_v, layout_))
        return *key;
    return keyFor(XKB_KEY_v).value_or(placeOfV);
}

std::optional<xcb_keycode_t> X11Keyboard::keyFor(xkb_keysym_t symbol) const {
    const auto layouts = keymap_ ? xkb_keymap_num_layouts(keymap_.get()) : 0;
    for (xkb_layout_index_t layout = 0; layout < layouts; ++layout) {
        if (const auto key = keyFor(symbol, layout))
            return key;
    }
    return std::nullopt;
}

std::optional<xcb_keycode_t> X11Keyboard::keyFor(xkb_keysym_t symbol, xkb_layout_index_t layout) const {
    if (!keymap_)
        return std::nullopt;
    const auto last = xkb_keymap_max_keycode(keymap_.get());
    for (auto key = xkb_keymap_min_keycode(keymap_.get()); key <= last; ++key) {
        const xkb_keysym_t* symbols = nullptr;
        if (xkb_keymap_key_get_syms_by_level(keymap_.get(), key, layout, 0, &symbols) == 1 && symbols[0] == symbol)
            return static_cast<xcb_keycode_t>(key);
    }
    return std::nullopt;
}

std::optional<KeyRepeat> X11Keyboard::repeatOf(xcb_keycode_t key) const {
    if (device_ < 0)
        return std::nullopt;
    const XcbPointer<xcb_xkb_get_controls_reply_t> controls(xcb_xkb_get_controls_reply(
        connection_.get(), xcb_xkb_get_controls(connection_.get(), XCB_XKB_ID_USE_CORE_KBD), nullptr));
    if (!controls || (controls->enabledControls & XCB_XKB_BOOL_CTRL_REPEAT_KEYS) == 0 ||
        ((controls->perKeyRepeat[key / 8] >> (key % 8)) & 1U) == 0 || controls->repeatInterval == 0)
        return std::nullopt;
    return KeyRepeat{std::chrono::milliseconds(controls->repeatDelay),
                     std::chrono::milliseconds(controls->repeatInterval)};
}

bool X11Keyboard::types(xcb_keycode_t key, xkb_keysym_t symbol) const {
    const xkb_keysym_t* symbols = nullptr;
    return keymap_ && xkb_keymap_key_get_syms_by_level(keymap_.get(), key, 0, 0, &symbols) == 1 && symbols[0] == symbol;
}

}  // namespace brindle
