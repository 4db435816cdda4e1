#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace brindle {

/// What a window says about its application; empty where it says nothing.
struct WindowNames {
    std::string instance;          ///< first half of WM_CLASS
    std::string windowClass;       ///< second half of WM_CLASS
    std::string gtkApplicationId;  ///< _GTK_APPLICATION_ID
};

/// The installed applications by their desktop entries. An identifier is an entry's file name below "applications"
/// without ".desktop", sub folders joined by "-". Main thread. The entries are read at the first lookup, and again when
/// a lookup finds nothing and a folder has changed since.
class DesktopEntryIndex {
public:
    /// The entry whose StartupWMClass is the class or the instance (case aside), else the one named like the GTK id,
    /// else like the class or the instance in lower case.
    [[nodiscard]] std::optional<std::string> identifierFor(const WindowNames& names) const;
    /// The name in the user's language.
    [[nodiscard]] std::optional<std::string> nameOf(std::string_view identifier) const;
    /// The entry's file.
    [[nodiscard]] std::optional<std::string> pathOf(std::string_view identifier) const;
    /// The icon of the entry in that file, which `pathOf` gave: an absolute path or a name in the icon theme.
    [[nodiscard]] std::optional<std::string> iconOf(std::string_view path) const;

private:
    struct Entry {
        std::string path;
        std::string name;
        std::string icon;
    };
    struct Folder {
        std::string path;
        long long changed;  // nanoseconds; -1: there is none
    };
    struct Catalog {
        std::unordered_map<std::string, Entry> entries;        // by identifier
        std::unordered_map<std::string, std::string> byClass;  // identifiers by StartupWMClass in lower case
        std::unordered_map<std::string, std::string> byPath;   // identifiers by file
        std::vector<Folder> folders;
    };
    class Scan;

    template <typename Lookup>
    auto find(Lookup lookup) const;
    [[nodiscard]] static std::optional<std::string> match(const Catalog& catalog, const WindowNames& names);
    [[nodiscard]] static std::optional<std::string> field(const Catalog& catalog, std::string_view identifier,
                                                          std::string Entry::*member);
    [[nodiscard]] bool isStale() const;

    mutable std::optional<Catalog> catalog_;
};

}  // namespace brindle
