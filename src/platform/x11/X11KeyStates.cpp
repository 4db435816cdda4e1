#include "platform/x11/X11KeyStates.h"

#include <xcb/xinput.h>

#include <string_view>
#include <utility>
#include <vector>

#include "platform/x11/X11Connection.h"

namespace brindle {

namespace {

KeySet keySet(const std::uint8_t* bits) {
    KeySet keys;
    for (std::size_t key = 0; key < keys.size(); ++key)
        keys[key] = ((bits[key / 8] >> (key % 8)) & 1U) != 0;
    return keys;
}

struct Slave {
    std::uint8_t device;
    bool isSynthetic;
};

std::vector<Slave> slaveKeyboards(xcb_connection_t* server) {
    std::vector<Slave> slaves;
    const XcbPointer<xcb_input_xi_query_device_reply_t> reply(
        xcb_input_xi_query_device_reply(server, xcb_input_xi_query_device(server, XCB_INPUT_DEVICE_ALL), nullptr));
    if (!reply)
        return slaves;
    for (auto each = xcb_input_xi_query_device_infos_iterator(reply.get()); each.rem > 0;
         xcb_input_xi_device_info_next(&each)) {
        const std::string_view name(xcb_input_xi_device_info_name(each.data),
                                    static_cast<std::size_t>(xcb_input_xi_device_info_name_length(each.data)));
        if (each.data->type == XCB_INPUT_DEVICE_TYPE_SLAVE_KEYBOARD)
            slaves.push_back({static_cast<std::uint8_t>(each.data->deviceid), name.ends_with("XTEST keyboard")});
    }
    return slaves;
}

KeySet keysDown(const xcb_input_query_device_state_reply_t& reply) {
    for (auto each = xcb_input_query_device_state_classes_iterator(&reply); each.rem > 0;
         xcb_input_input_state_next(&each)) {
        if (each.data->class_id == XCB_INPUT_INPUT_CLASS_KEY)
            return keySet(reinterpret_cast<const xcb_input_key_state_t*>(each.data)->keys);
    }
    return {};
}

}  // namespace

X11KeyStates X11KeyStates::read(X11Connection& connection) {
    X11KeyStates states;
    xcb_connection_t* server = connection.get();
    const auto coreCookie = xcb_query_keymap(server);
    std::vector<std::pair<Slave, xcb_input_query_device_state_cookie_t>> asked;
    if (connection.hasExtension(xcb_input_id)) {
        for (const auto& slave : slaveKeyboards(server))
            asked.emplace_back(slave, xcb_input_query_device_state(server, slave.device));
    }
    const XcbPointer<xcb_query_keymap_reply_t> core(xcb_query_keymap_reply(server, coreCookie, nullptr));
    if (core)
        states.core = keySet(core->keys);
    for (const auto& [slave, cookie] : asked) {
        const XcbPointer<xcb_input_query_device_state_reply_t> reply(
            xcb_input_query_device_state_reply(server, cookie, nullptr));
        if (reply)
            (slave.isSynthetic ? states.synthetic : states.fingers) |= keysDown(*reply);
    }
    return states;
}

std::optional<std::uint8_t> x11SyntheticKeyboard(X11Connection& connection) {
    if (!connection.hasExtension(xcb_input_id))
        return std::nullopt;
    for (const auto& slave : slaveKeyboards(connection.get())) {
        if (slave.isSynthetic)
            return slave.device;
    }
    return std::nullopt;
}

}  // namespace brindle
