#include "platform/x11/X11HotKeys.h"

#include "platform/KeyCodes.h"

namespace brindle {

namespace {

constexpr EventTypeSpec hotKeyPressed{0x6B657962, 5};  // "keyb", pressed

}  // namespace

std::int32_t X11HotKeys::registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyId /*id*/,
                                        HotKeyRef& registered) {
    if (keyCode != static_cast<std::uint32_t>(VirtualKey::v))
        return XCB_VALUE;
    const X11Combination combination{.withShift = (modifiers & hotKeyModifiers::shift) != 0,
                                     .withCommand = (modifiers & hotKeyModifiers::command) != 0};
    auto grabs = std::make_unique<X11KeyGrabs>(connection_, keyboard_, combination, OtherModifiers::refused,
                                               [this](const X11KeyPress& press) {
                                                   if (!press.isAutoRepeat)
                                                       presses_.emit();
                                               });
    if (const int status = grabs->grab(); status != 0)
        return status;
    registered = ++lastHotKey_;
    grabs_.emplace(registered, std::move(grabs));
    return noError;
}

EventHandlerRef X11HotKeys::installEventHandler(EventTypeSpec type, std::function<void()> handler) {
    if (type.eventClass != hotKeyPressed.eventClass || type.eventKind != hotKeyPressed.eventKind)
        return 0;
    handlers_.push_back(presses_.subscribe(std::move(handler)));
    return static_cast<EventHandlerRef>(handlers_.size());
}

}  // namespace brindle
