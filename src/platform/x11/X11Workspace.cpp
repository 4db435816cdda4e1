#include "platform/x11/X11Workspace.h"

#include <unistd.h>

#include <QProcess>
#include <QUrl>
#include <algorithm>
#include <utility>

#include "platform/Bundle.h"
#include "platform/freedesktop/SettingsPages.h"
#include "platform/qt/QtText.h"
#include "platform/x11/X11Windows.h"

namespace brindle {

namespace {

constexpr std::string_view activeProperty = "_NET_ACTIVE_WINDOW";
constexpr std::string_view managerProperty = "_NET_SUPPORTING_WM_CHECK";
constexpr std::uint32_t sourcePager = 2;  // a request of the user's, which no focus-stealing prevention holds up

/// False where the desktop has no such page, or its settings program is not installed.
bool openSettings(std::string_view url) {
    QStringList command;
    for (const std::string& word : settingsCommand(url, qgetenv("XDG_CURRENT_DESKTOP").toStdString()))
        command << toQString(word);
    return !command.isEmpty() && QProcess::startDetached(command.front(), command.mid(1));
}

int milliseconds(double seconds) {
    return static_cast<int>(seconds * 1000);
}

}  // namespace

X11Workspace::X11Workspace(X11Connection& connection, const DesktopEntryIndex& index, const Bundle& bundle)
    : connection_(connection), index_(index), bundle_(bundle) {
    const auto identifier = bundle_.bundleIdentifier();
    ourselves_ = std::make_shared<X11RunningApplication>(
        nullptr, XCB_WINDOW_NONE, std::make_shared<bool>(false),
        X11ApplicationFacts{identifier, index_.nameOf(identifier.value_or("")), getpid()});
    for (QTimer* timer : {&settling_, &activationEnd_, &handOver_}) {
        timer->setSingleShot(true);
        timer->setTimerType(Qt::PreciseTimer);
    }
    look_.setInterval(milliseconds(lookInterval));
    connect(&look_, &QTimer::timeout, this, [this] { updateActive(); });
    connect(&settling_, &QTimer::timeout, this, [this] { settle(); });
    connect(&activationEnd_, &QTimer::timeout, this, [this] { endActivation(); });
    connect(&handOver_, &QTimer::timeout, this, [this] {
        if (!activation_)
            announceHeldBack();
    });

    properties_ = connection_.onEvent(XCB_PROPERTY_NOTIFY, [this](const auto& event) {
        handleProperty(reinterpret_cast<const xcb_property_notify_event_t&>(event));
    });
    destructions_ = connection_.onEvent(XCB_DESTROY_NOTIFY, [this](const auto& event) {
        handleDestroyed(reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window);
    });
    unmappings_ = connection_.onEvent(XCB_UNMAP_NOTIFY, [this](const auto& event) {
        handleGone(reinterpret_cast<const xcb_unmap_notify_event_t&>(event).window);
    });
    connection_.selectEvents(connection_.root(), XCB_EVENT_MASK_PROPERTY_CHANGE);
    updateManager();
}

X11Workspace::~X11Workspace() = default;

RunningApplicationHandle X11Workspace::frontmostApplication() const {
    if (!isManagerTelling_)
        return makeHandle(x11::activeWindow(connection_));
    if (isMasked())
        return ourselves_;
    // Asked again: applications name their windows as late as after showing them.
    if (auto fresh = active_ ? makeHandle(active_->window()) : nullptr)
        return fresh;
    return active_;
}

Subscription X11Workspace::onDidActivateApplication(std::function<void(const RunningApplicationHandle&)> observer) {
    return activations_.subscribe(std::move(observer));
}

bool X11Workspace::openUrl(std::string_view url) {
    if (url == accessibilitySettingsUrl)
        return openSettings(url);
    const auto address =
        QUrl::fromEncoded(QByteArray(url.data(), static_cast<qsizetype>(url.size())), QUrl::StrictMode);
    if (!address.isValid() || address.scheme().isEmpty())
        return false;
    return QProcess::startDetached("xdg-open", {toQString(url)});
}

std::optional<std::string> X11Workspace::applicationPath(std::string_view bundleIdentifier) const {
    return index_.pathOf(bundleIdentifier);
}

std::optional<std::string> X11Workspace::iconForFile(std::string_view path) const {
    return index_.iconOf(path);
}

void X11Workspace::handleProperty(const xcb_property_notify_event_t& event) {
    if (event.window != connection_.root())
        return;
    if (event.atom == connection_.atom(managerProperty) || event.atom == connection_.atom("_NET_SUPPORTED"))
        updateManager();
    else if (event.atom == connection_.atom(activeProperty))
        updateActive();
}

void X11Workspace::handleDestroyed(xcb_window_t window) {
    if (const auto found = isGone_.extract(window))
        *found.mapped() = true;
    if (window == manager_)
        updateManager();
    handleGone(window);
}

void X11Workspace::handleGone(xcb_window_t window) {
    if (active_ && active_->window() == window)
        updateActive();
}

// The properties of a window manager that was killed stay on the root: its own window tells.
void X11Workspace::updateManager() {
    manager_ = connection_.firstOfProperty32(connection_.root(), connection_.atom(managerProperty), XCB_ATOM_WINDOW);
    if (manager_ != XCB_WINDOW_NONE)
        connection_.selectEvents(manager_, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    isManagerTelling_ = x11::managerSupports(connection_, activeProperty);
    if (isManagerTelling_)
        look_.stop();
    else if (!look_.isActive())
        look_.start();
    updateActive();
}

void X11Workspace::updateActive() {
    if (auto handle = shownActive()) {
        settling_.stop();
        setActive(std::move(handle));
    } else if (!settling_.isActive()) {
        settling_.start(milliseconds(settlingTime));
    }
}

void X11Workspace::settle() {
    if (auto handle = shownActive())
        setActive(std::move(handle));
    else
        active_.reset();
}

// Some window managers go on reporting a window that has left the screen.
X11Workspace::Handle X11Workspace::shownActive() const {
    const auto window = x11::activeWindow(connection_);
    return x11::isShown(connection_, window) ? makeHandle(window) : nullptr;
}

void X11Workspace::setActive(Handle handle) {
    const bool isSame = active_ && active_->window() == handle->window();
    active_ = std::move(handle);
    if (!isSame)
        announce();
}

void X11Workspace::announce() {
    const bool isWanted = activation_ && x11::isOrBelongsTo(connection_, active_->window(), activation_->window);
    const bool isOurs = active_->processIdentifier() == getpid();
    if (isWanted)
        activation_.reset();
    if (isWanted || isOurs)
        handOver_.stop();
    else if (isAfterOurs_)  // the window manager gives the focus of a popover that closes to one of its own choice
        handOver_.start(milliseconds(handOverTime));
    isAfterOurs_ = isOurs;
    isUnannounced_ = isMasked() || handOver_.isActive();
    if (!isUnannounced_)
        activations_.emit(active_);
}

void X11Workspace::announceHeldBack() {
    if (std::exchange(isUnannounced_, false) && active_)
        activations_.emit(active_);
}

void X11Workspace::endActivation() {
    activation_.reset();
    announceHeldBack();
}

bool X11Workspace::isMasked() const {
    return activation_ && (active_ ? active_->facts() : X11ApplicationFacts{}).looksLike(activation_->facts);
}

std::shared_ptr<X11RunningApplication> X11Workspace::makeHandle(xcb_window_t window) const {
    if (window == XCB_WINDOW_NONE)
        return nullptr;
    auto& isGone = isGone_[window];
    if (!isGone) {
        isGone = std::make_shared<bool>(false);
        connection_.selectEvents(window, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
        // A window that went before that will not tell any more.
        if (!x11::exists(connection_, window)) {
            isGone_.erase(window);
            return nullptr;
        }
    }
    return std::make_shared<X11RunningApplication>(const_cast<X11Workspace*>(this), window, isGone, factsOf(window));
}

X11ApplicationFacts X11Workspace::factsOf(xcb_window_t window) const {
    X11ApplicationFacts facts;
    facts.processIdentifier = x11::processOf(connection_, window);
    facts.activationPolicy = x11::policyOf(connection_, window);
    facts.bundleIdentifier = facts.processIdentifier == getpid() ? bundle_.bundleIdentifier() : identifierOf(window);
    if (facts.bundleIdentifier)
        facts.localizedName = index_.nameOf(*facts.bundleIdentifier);
    if (const auto names = x11::namesOf(connection_, window); !facts.localizedName && !names.windowClass.empty())
        facts.localizedName = names.windowClass;
    return facts;
}

// Dialogs often say less of their application than the window that they belong to.
std::optional<std::string> X11Workspace::identifierOf(xcb_window_t window) const {
    auto identifier = index_.identifierFor(x11::namesOf(connection_, window));
    const auto owner = x11::ownerOf(connection_, window);
    if (!identifier && owner != XCB_WINDOW_NONE)
        identifier = index_.identifierFor(x11::namesOf(connection_, owner));
    return identifier;
}

bool X11Workspace::activate(const X11RunningApplication& application) {
    if (!x11::exists(connection_, application.window()))
        return false;
    if (!isManagerTelling_) {
        const bool isFocused = focus(application.window());
        updateActive();
        return isFocused;
    }
    // Some window managers would take the focus away from it and give it back, in the middle of a paste.
    if (const auto front = shownActive(); front && front->window() == application.window())
        return true;
    goToDesktopOf(application.window());
    askManager(application.window(), activeProperty, {sourcePager, connection_.lastTime()});
    if (!active_ || !x11::isOrBelongsTo(connection_, active_->window(), application.window())) {
        activation_ = {application.window(), application.facts()};
        activationEnd_.start(milliseconds(activationTime));
    }
    return true;
}

// Some window managers leave a window on another desktop where it is, whoever asks for it.
void X11Workspace::goToDesktopOf(xcb_window_t window) {
    constexpr std::uint32_t all = 0xFFFFFFFF;
    constexpr std::string_view current = "_NET_CURRENT_DESKTOP";
    const auto wanted = connection_.property32(window, connection_.atom("_NET_WM_DESKTOP"), XCB_ATOM_CARDINAL);
    const auto shown = connection_.property32(connection_.root(), connection_.atom(current), XCB_ATOM_CARDINAL);
    if (!wanted.empty() && !shown.empty() && wanted[0] != all && wanted[0] != shown[0])
        askManager(connection_.root(), current, {wanted[0], connection_.lastTime()});
}

void X11Workspace::askManager(xcb_window_t window, std::string_view name, std::array<std::uint32_t, 2> data) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = connection_.atom(name);
    std::copy(data.begin(), data.end(), message.data.data32);
    xcb_send_event(connection_.get(), 0, connection_.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
    connection_.flush();
}

bool X11Workspace::focus(xcb_window_t window) {
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(connection_.get(), window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    // Refused by the server when the window is not on the screen.
    const auto cookie =
        xcb_set_input_focus_checked(connection_.get(), XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME);
    const XcbPointer<xcb_generic_error_t> error(xcb_request_check(connection_.get(), cookie));
    return !error;
}

}  // namespace brindle
