#pragma once

#include <memory>

#include "app/AppDelegate.h"
#include "support/SimulatedTest.h"

namespace brindle::test {

/// A test with the program's own delegate on the simulated desktop.
class DelegateTest : public SimulatedTest {
protected:
    DelegateTest() { sim.self.setDelegate(delegate.get()); }
    ~DelegateTest() override { sim.self.setDelegate(nullptr); }

    void launch() {
        delegate->applicationDidFinishLaunching();
        sim.journal.take();
    }

    /// An ordinary application that the user works in.
    SimulatedApplicationHandle workIn(const char* name) {
        auto app = sim.desktop.launch(name);
        sim.desktop.bringToFront(app);
        sim.journal.take();
        return app;
    }

    std::shared_ptr<AppDelegate> delegate =
        std::make_shared<AppDelegate>([](auto&...) { return std::make_unique<PopoverContent>(); });
};

}  // namespace brindle::test
