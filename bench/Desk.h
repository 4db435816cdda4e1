#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "platform/freedesktop/SqliteDefaultsStore.h"
#include "services/ClipboardMonitor.h"
#include "services/HistoryManager.h"
#include "services/SettingsManager.h"
#include "support/SimulatedPlatform.h"

namespace brindle::bench {

/// Prose with line breaks, quotes and an accent here and there, different for each number.
std::string text(std::size_t number, std::size_t bytes);

std::vector<ClipboardItem> entries(std::size_t count, std::size_t bytes, bool arePinned);

enum class Storing { nowhere, onDisk };

/// The simulated desktop with a store of its own (SQLite in a fresh folder, or one that forgets) that holds the
/// history. The limit lets in one entry more.
class Platform final : public test::SimulatedPlatform {
public:
    Platform(Storing storing, const std::vector<ClipboardItem>& history);
    ~Platform() override;
    Platform(const Platform&) = delete;
    Platform& operator=(const Platform&) = delete;

    DefaultsStore& defaults() override { return *store_; }

private:
    std::string folder_;
    std::unique_ptr<DefaultsStore> store_;
};

/// The managers with a history of `count` entries of `bytes` each.
struct Desk {
    Desk(Storing storing, std::size_t count, std::size_t bytes, bool arePinned = false)
        : platform(storing, entries(count, bytes, arePinned)) {}

    Platform platform;
    SettingsManager settings;
    HistoryManager history{settings};
    ClipboardMonitor monitor{history};
};

}  // namespace brindle::bench
