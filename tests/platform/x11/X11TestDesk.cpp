#include "platform/x11/X11TestDesk.h"

#include <gtest/gtest.h>
#include <xcb/xinput.h>
#include <xcb/xtest.h>

#include <QFile>

#include "platform/x11/X11KeyStates.h"

namespace brindle::x11test {

namespace {

std::uint8_t physicalKeyboard(xcb_connection_t* server) {
    const XcbPointer<xcb_input_xi_query_device_reply_t> reply(
        xcb_input_xi_query_device_reply(server, xcb_input_xi_query_device(server, XCB_INPUT_DEVICE_ALL), nullptr));
    for (auto each = xcb_input_xi_query_device_infos_iterator(reply.get()); each.rem > 0;
         xcb_input_xi_device_info_next(&each)) {
        const std::string name(xcb_input_xi_device_info_name(each.data),
                               static_cast<std::size_t>(xcb_input_xi_device_info_name_length(each.data)));
        if (each.data->type == XCB_INPUT_DEVICE_TYPE_SLAVE_KEYBOARD && name.find("XTEST") == std::string::npos)
            return static_cast<std::uint8_t>(each.data->deviceid);
    }
    ADD_FAILURE() << "the server has no keyboard";
    return 0;
}

}  // namespace

Hands::Hands() : keyboard_(physicalKeyboard(connection_->get())) {}

Hands::~Hands() {
    for (std::size_t key = 0; key < held_.size(); ++key) {
        if (held_[key])
            release(static_cast<xcb_keycode_t>(key));
    }
}

void Hands::moveKey(xcb_keycode_t key, bool isDown) {
    constexpr unsigned deviceKeyPress = 1;  // counted from the extension's first event
    constexpr unsigned deviceKeyRelease = 2;
    held_[key] = isDown;
    const auto type = connection_->firstEvent(xcb_input_id) + (isDown ? deviceKeyPress : deviceKeyRelease);
    xcb_test_fake_input(connection_->get(), static_cast<std::uint8_t>(type), key, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0,
                        0, keyboard_);
    keysDown(*connection_);  // a round trip: the server has it
}

OtherWindow::OtherWindow(const WindowSpec& spec) : window_(xcb_generate_id(connection_->get())) {
    const std::uint32_t values[] = {spec.isOverrideRedirect ? 1U : 0U, XCB_EVENT_MASK_KEY_PRESS |
                                                                           XCB_EVENT_MASK_KEY_RELEASE |
                                                                           XCB_EVENT_MASK_STRUCTURE_NOTIFY};
    auto* server = connection_->get();
    xcb_create_window(server, 0, window_, connection_->root(), 100, 100, 100, 100, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
    const std::string names = spec.windowClass + '\0' + spec.windowClass + '\0';
    change("WM_CLASS", XCB_ATOM_STRING, 8, names.size(), names.data());
    if (spec.process)
        change("_NET_WM_PID", XCB_ATOM_CARDINAL, 32, 1, &*spec.process);
    if (spec.transientFor != XCB_WINDOW_NONE)
        change("WM_TRANSIENT_FOR", XCB_ATOM_WINDOW, 32, 1, &spec.transientFor);
    setAtoms("_NET_WM_WINDOW_TYPE", spec.types);
    setAtoms("_NET_WM_STATE", spec.states);
    events_.push_back(connection_->onEvent(XCB_KEY_PRESS, [this](const auto& event) { note(event, true); }));
    events_.push_back(connection_->onEvent(XCB_KEY_RELEASE, [this](const auto& event) { note(event, false); }));
    events_.push_back(connection_->onEvent(XCB_MAP_NOTIFY, [this](const auto&) { isMapped_ = true; }));
    events_.push_back(connection_->onEvent(XCB_UNMAP_NOTIFY, [this](const auto&) { isMapped_ = false; }));
    keysDown(*connection_);
}

void OtherWindow::change(const char* property, xcb_atom_t type, std::uint8_t format, std::size_t count,
                         const void* data) {
    xcb_change_property(connection_->get(), XCB_PROP_MODE_REPLACE, window_, connection_->atom(property), type, format,
                        static_cast<std::uint32_t>(count), data);
}

void OtherWindow::setAtoms(const char* property, const std::vector<std::string>& names) {
    std::vector<xcb_atom_t> atoms;
    for (const auto& name : names)
        atoms.push_back(connection_->atom(name));
    if (!atoms.empty())
        change(property, XCB_ATOM_ATOM, 32, atoms.size(), atoms.data());
}

void OtherWindow::note(const xcb_generic_event_t& event, bool isPress) {
    const auto& key = reinterpret_cast<const xcb_key_press_event_t&>(event);
    keys_.push_back({isPress, key.detail, key.state & 0xffU, (key.state >> 13U) & 3U});
}

void OtherWindow::show() {
    xcb_map_window(connection_->get(), window_);
    connection_->flush();
    EXPECT_TRUE(await([this] { return isMapped_; }));
}

void OtherWindow::hide() {
    xcb_unmap_window(connection_->get(), window_);
    connection_->flush();
    EXPECT_TRUE(await([this] { return !isMapped_; }));
}

OtherWindow::~OtherWindow() {
    xcb_destroy_window(connection_->get(), window_);
    keysDown(*connection_);
}

void OtherWindow::focus() {
    xcb_set_input_focus(connection_->get(), XCB_INPUT_FOCUS_POINTER_ROOT, window_, XCB_CURRENT_TIME);
    keysDown(*connection_);
}

bool OtherWindow::hasFocus() {
    const XcbPointer<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(connection_->get(), xcb_get_input_focus(connection_->get()), nullptr));
    return reply && reply->focus == window_;
}

std::vector<OtherWindow::Key> OtherWindow::presses(xcb_keycode_t key) const {
    std::vector<Key> found = keys_;
    std::erase_if(found, [&](const Key& each) { return !each.isPress || each.key != key; });
    return found;
}

WindowManager::WindowManager() {
    QFile config(folder_.filePath("rc.xml"));
    EXPECT_TRUE(config.open(QFile::WriteOnly));
    config.write("<openbox_config><keyboard/><mouse/></openbox_config>");
    config.close();
    // It announces itself before it looks for windows to manage, and misses those that come in between.
    const QString ready = folder_.filePath("ready");
    process_.start("openbox", {"--sm-disable", "--config-file", config.fileName(), "--startup", "touch " + ready});
    EXPECT_TRUE(await([&] { return QFile::exists(ready); }));
}

WindowManager::~WindowManager() {
    process_.kill();
    process_.waitForFinished();
}

void setLayout(const std::string& layout) {
    QStringList arguments{"-option", "", "-layout", QString::fromStdString(layout)};
    if (layout.find(',') != std::string::npos)
        arguments << "-option"
                  << "grp:caps_toggle";
    EXPECT_EQ(QProcess::execute("setxkbmap", arguments), 0);
}

KeySet keysDown(X11Connection& connection) {
    return X11KeyStates::read(connection).core;
}

}  // namespace brindle::x11test
