#include "platform/x11/X11Platform.h"

#include <utility>

#include "platform/qt/QtColorScheme.h"

namespace brindle {

std::unique_ptr<X11Platform> X11Platform::create() {
    Connections connections{X11Connection::open(), X11Connection::open(), X11Connection::open()};
    if (!connections.desktop || !connections.clipboard || !connections.windows)
        return nullptr;
    return std::unique_ptr<X11Platform>(new X11Platform(std::move(connections)));
}

X11Platform::X11Platform(Connections connections)
    : desktop_(std::move(connections.desktop)),
      clipboard_(std::move(connections.clipboard)),
      loginItem_(bundle_),
      colorSchemes_(paletteColorScheme),
      paletteChanges_(onPaletteChange([this] { colorSchemes_.fallbackChanged(); })),
      workspace_(*desktop_, desktopEntries_, bundle_),
      pasteboard_(*clipboard_),
      keyboard_(*desktop_),
      keyEvents_(*desktop_, keyboard_, primaryLoan()),
      eventTaps_(*desktop_, keyboard_),
      hotKeys_(*desktop_, keyboard_),
      accessibilityTrust_(*desktop_),
      windowSystem_(std::move(connections.windows)),
      popovers_(windowSystem_),
      statusBar_(application_, windowSystem_, colorSchemes_),
      mouseMonitor_(*desktop_, [this] { return statusBar_.isIconElsewhere(); }),
      statusClicks_(statusBar_.onClick([this] { mouseMonitor_.claimClick(); })) {}

X11Platform::~X11Platform() {
    pasteboard_.handOver();
}

PrimaryLoan X11Platform::primaryLoan() {
    return {[this] {
                if (const auto text = pasteboard_.string())
                    pasteboard_.lendPrimary(*text);
            },
            [this] { pasteboard_.returnPrimary(); }};
}

DefaultsStore& X11Platform::defaults() {
    if (!defaults_)
        defaults_.emplace();
    return *defaults_;
}

}  // namespace brindle
