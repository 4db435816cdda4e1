#pragma once

namespace brindle {

/// Whatever the application was given as its delegate. Who needs more of it converts it (`dynamic_cast`).
class ApplicationDelegate {
public:
    ApplicationDelegate(const ApplicationDelegate&) = delete;
    ApplicationDelegate& operator=(const ApplicationDelegate&) = delete;

protected:
    ApplicationDelegate() = default;
    virtual ~ApplicationDelegate() = default;
};

enum class EventType { leftMouseUp = 2, rightMouseUp = 4, other = 0 };

/// This program as the desktop sees it. Main thread.
class Application {
public:
    virtual ~Application() = default;

    [[nodiscard]] virtual ApplicationDelegate* delegate() const = 0;  ///< null: none
    virtual void setDelegate(ApplicationDelegate* delegate) = 0;      ///< not owned; null before it goes

    /// Brings this program to the front, whatever else is there.
    virtual void activateIgnoringOtherApps() = 0;
    /// Gives the focus up.
    virtual void deactivate() = 0;
    /// Takes every window of this program off the screen.
    virtual void hide() = 0;
    /// Ends the main loop; the process exits soon after.
    virtual void terminate() = 0;

    /// The event that is being handled; `other` for anything but a mouse button.
    [[nodiscard]] virtual EventType currentEvent() const = 0;
};

}  // namespace brindle
