#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/Date.h"
#include "base/SharedText.h"
#include "base/Uuid.h"

namespace brindle {

enum class ItemType { text, image };

/// The text that stands for the type where it is stored.
constexpr std::string_view rawValue(ItemType type) {
    return type == ItemType::text ? "text" : "image";
}

/// The type that a stored text names, letter case included; none for any other text.
constexpr std::optional<ItemType> itemTypeFromRawValue(std::string_view raw) {
    if (raw == "text")
        return ItemType::text;
    if (raw == "image")
        return ItemType::image;
    return std::nullopt;
}

/// One captured entry. A plain value: a copy is a snapshot, found again in the history by its id.
struct ClipboardItem {
    Uuid id;
    SharedText content;  ///< exactly as the pasteboard gave it
    ItemType type = ItemType::text;
    Date date;                            ///< the moment of capture
    std::optional<SharedText> sourceApp;  ///< bundle identifier of the application that was frontmost then
    bool isPinned = false;
    std::optional<Uuid> listId;  ///< the list that it is filed in

    friend bool operator==(const ClipboardItem&, const ClipboardItem&) = default;
};

}  // namespace brindle
