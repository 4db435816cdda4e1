#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>

#include "platform/Pasteboard.h"

namespace brindle {

/// A pasteboard and the desktop around it, real or simulated.
struct PasteboardWorld {
    Pasteboard& pasteboard;
    std::function<void(const std::string&)> copyAsOther;
    std::function<void()> copyImageAsOther;
    std::function<std::optional<std::string>()> pasteAsOther;
    /// Lets the desktop go on until the condition holds; gives up after a while.
    std::function<void(const std::function<bool()>&)> settle;
};

/// What every pasteboard must do, starting from an empty one.
inline void checkPasteboardContract(const PasteboardWorld& world) {
    auto& pasteboard = world.pasteboard;
    const auto text = [&] { return pasteboard.string() ? pasteboard.string()->string() : "(none)"; };
    const auto arrives = [&](std::int64_t count) {
        world.settle([&] { return pasteboard.changeCount() >= count; });
        return pasteboard.changeCount();
    };
    ASSERT_EQ(pasteboard.changeCount(), 0) << "nothing is there yet";
    EXPECT_EQ(text(), "(none)");

    world.copyAsOther("first");
    EXPECT_EQ(arrives(1), 1);
    EXPECT_EQ(text(), "first");
    world.copyAsOther("");
    EXPECT_EQ(arrives(2), 2) << "an empty text is a text";
    EXPECT_EQ(text(), "");
    world.copyImageAsOther();
    EXPECT_EQ(arrives(3), 3);
    EXPECT_EQ(text(), "(none)");

    pasteboard.clearContents();
    EXPECT_EQ(text(), "(none)");
    pasteboard.setString("ours é 😀");
    EXPECT_EQ(pasteboard.changeCount(), 4) << "clearing and setting are one change";
    EXPECT_EQ(text(), "ours é 😀");
    EXPECT_EQ(world.pasteAsOther(), "ours é 😀");

    world.copyAsOther("second");
    EXPECT_EQ(arrives(5), 5) << "the desktop's news of our own write do not count";
    EXPECT_EQ(text(), "second");

    pasteboard.clearContents();
    EXPECT_EQ(pasteboard.changeCount(), 6);
    world.settle([&] { return !world.pasteAsOther(); });
    EXPECT_EQ(world.pasteAsOther(), std::nullopt);
    EXPECT_EQ(text(), "(none)");

    world.copyAsOther("too late");
    pasteboard.clearContents();
    pasteboard.setString("newest");
    world.copyAsOther("last");
    EXPECT_EQ(arrives(8), 8) << "a write of our own ends the read under way, which never counts";
    EXPECT_EQ(text(), "last");
}

}  // namespace brindle
