#include "platform/freedesktop/DesktopEntryIndex.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <system_error>
#include <unordered_set>
#include <utility>

#include "platform/freedesktop/DesktopEntry.h"
#include "platform/freedesktop/Files.h"
#include "platform/freedesktop/XdgPaths.h"

namespace brindle {

namespace {

constexpr std::string_view suffix = ".desktop";
constexpr int depthLimit = 4;  // folders below "applications"; also ends loops of links

std::string lowered(std::string_view text) {
    std::string lower(text);
    for (char& each : lower) {
        if (each >= 'A' && each <= 'Z')
            each = static_cast<char>(each - 'A' + 'a');
    }
    return lower;
}

long long changeOf(const std::string& folder) {
    struct stat status {};
    if (::stat(folder.c_str(), &status) != 0)
        return -1;
    return status.st_mtim.tv_sec * 1'000'000'000LL + status.st_mtim.tv_nsec;
}

std::vector<std::string> applicationFolders() {
    std::vector<std::string> folders = {xdg::dataHome()};
    for (auto& each : xdg::dataDirs())
        folders.push_back(std::move(each));
    for (auto& each : folders)
        each += "/applications";
    return folders;
}

// Sorted, so that nothing depends on the order on the disk.
std::vector<std::string> namesIn(const std::string& folder) {
    std::vector<std::string> names;
    std::error_code failure;
    for (std::filesystem::directory_iterator each(folder, failure), end; !failure && each != end;
         each.increment(failure))
        names.push_back(each->path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace

/// Fills a catalog. Of entries with the same identifier the first one counts, whatever it holds.
class DesktopEntryIndex::Scan {
public:
    Catalog run() {
        for (const auto& folder : applicationFolders())
            readFolder(folder, "", 0);
        for (auto& [windowClass, identifier] : outsideMenus_)
            catalog_.byClass.try_emplace(std::move(windowClass), std::move(identifier));
        return std::move(catalog_);
    }

private:
    void readFolder(const std::string& path, const std::string& prefix, int depth) {
        catalog_.folders.push_back({path, changeOf(path)});
        for (const auto& name : namesIn(path)) {
            auto file = path;
            (file += '/') += name;
            std::error_code ignored;  // what cannot be looked at is no folder
            if (name.size() > suffix.size() && name.ends_with(suffix))
                readEntry(file, prefix + name.substr(0, name.size() - suffix.size()));
            else if (depth < depthLimit && std::filesystem::is_directory(file, ignored))
                readFolder(file, prefix + name + '-', depth + 1);
        }
    }

    void readEntry(const std::string& path, const std::string& identifier) {
        if (!seen_.insert(identifier).second)
            return;
        const auto text = files::contents(path, desktopEntryLimit);
        auto entry = text ? parseDesktopEntry(*text, locale_) : std::nullopt;
        if (!entry || entry->isHidden)
            return;
        if (!entry->startupWmClass.empty())
            claimClass(lowered(entry->startupWmClass), identifier, *entry);
        catalog_.byPath.emplace(path, identifier);
        catalog_.entries.emplace(identifier, Entry{path, std::move(entry->name), std::move(entry->icon)});
    }

    /// Several entries may name one class, a settings dialog's beside the program's own: those in the menus go first.
    void claimClass(std::string windowClass, const std::string& identifier, const DesktopEntry& entry) {
        if (entry.isNoDisplay)
            outsideMenus_.emplace_back(std::move(windowClass), identifier);
        else
            catalog_.byClass.try_emplace(std::move(windowClass), identifier);
    }

    Catalog catalog_;
    std::string locale_ = messagesLocale();
    std::unordered_set<std::string> seen_;
    std::vector<std::pair<std::string, std::string>> outsideMenus_;
};

/// What the lookup finds; on a miss once more if the folders have changed.
template <typename Lookup>
auto DesktopEntryIndex::find(Lookup lookup) const {
    if (!catalog_)
        catalog_ = Scan().run();
    auto found = lookup(*catalog_);
    if (found || !isStale())
        return found;
    catalog_ = Scan().run();
    return lookup(*catalog_);
}

bool DesktopEntryIndex::isStale() const {
    return std::any_of(catalog_->folders.begin(), catalog_->folders.end(),
                       [](const Folder& folder) { return changeOf(folder.path) != folder.changed; });
}

std::optional<std::string> DesktopEntryIndex::match(const Catalog& catalog, const WindowNames& names) {
    const std::array candidates = {lowered(names.windowClass), lowered(names.instance)};
    for (const auto& each : candidates) {
        if (const auto found = catalog.byClass.find(each); found != catalog.byClass.end())
            return found->second;
    }
    for (const auto& each : {names.gtkApplicationId, candidates[0], candidates[1]}) {
        if (catalog.entries.contains(each))
            return each;
    }
    return std::nullopt;
}

std::optional<std::string> DesktopEntryIndex::identifierFor(const WindowNames& names) const {
    return find([&](const Catalog& catalog) { return match(catalog, names); });
}

std::optional<std::string> DesktopEntryIndex::nameOf(std::string_view identifier) const {
    return find([&](const Catalog& catalog) { return field(catalog, identifier, &Entry::name); });
}

std::optional<std::string> DesktopEntryIndex::pathOf(std::string_view identifier) const {
    return find([&](const Catalog& catalog) { return field(catalog, identifier, &Entry::path); });
}

std::optional<std::string> DesktopEntryIndex::iconOf(std::string_view path) const {
    return find([&](const Catalog& catalog) -> std::optional<std::string> {
        const auto identifier = catalog.byPath.find(std::string(path));
        if (identifier == catalog.byPath.end())
            return std::nullopt;
        const auto icon = field(catalog, identifier->second, &Entry::icon);
        return icon->empty() ? std::nullopt : icon;
    });
}

std::optional<std::string> DesktopEntryIndex::field(const Catalog& catalog, std::string_view identifier,
                                                    std::string Entry::*member) {
    const auto entry = catalog.entries.find(std::string(identifier));
    return entry == catalog.entries.end() ? std::nullopt : std::optional(entry->second.*member);
}

}  // namespace brindle
