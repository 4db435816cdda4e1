#pragma once

#include <QObject>
#include <functional>

#include "platform/Application.h"
#include "platform/qt/QuitSignals.h"

namespace brindle {

/// This program as the toolkit's application. SIGTERM, SIGHUP, SIGINT and the end of the session end the main loop as
/// `terminate` does. Needs the application object, which it sets up; one at a time.
class QtApplication final : public QObject, public Application {
    Q_OBJECT

public:
    QtApplication();

    [[nodiscard]] ApplicationDelegate* delegate() const override { return delegate_; }
    void setDelegate(ApplicationDelegate* delegate) override { delegate_ = delegate; }
    void activateIgnoringOtherApps() override;
    void deactivate() override;
    void hide() override;
    void terminate() override;
    [[nodiscard]] EventType currentEvent() const override { return currentEvent_; }

    /// Runs the action with `currentEvent` answering that event.
    void handle(EventType event, const std::function<void()>& action);

private:
    ApplicationDelegate* delegate_ = nullptr;
    EventType currentEvent_ = EventType::other;
    QuitSignals quitSignals_;
};

}  // namespace brindle
