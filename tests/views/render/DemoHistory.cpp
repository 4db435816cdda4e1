#include "views/render/DemoHistory.h"

namespace brindle::test {

namespace {

/// 2026-03-05, a Thursday, at that time UTC.
Date at(int hour, int minute) {
    return Date::fromUnixTime(1772668800.0 + hour * 3600 + minute * 60);
}

struct Entry {
    const char* application;
    const char* text;
    Date date;
    bool isPinned = false;
    int list = -1;
};

const Entry entries[] = {
    {"mail", "orders@example.com", at(10, 20), false, 0},
    {"term", "ssh deploy@harbour.example.org", at(10, 58), false, 1},
    {"note", "42 Harbour Street, Unit 5", at(11, 16), false, 0},
    {nullptr, "נפגשים מחר בתשע ליד הספרייה", at(12, 40)},
    {"chat", "Lunch at noon? 🥗 See you there 👋", at(12, 51)},
    {"web", "https://docs.example.org/install", at(13, 48), true, 1},
    {"code", "for (const auto &row : rows)\n    total += row.price * row.count;", at(14, 5)},
    {"mail",
     "Thanks for the notes. I moved the review to Thursday at ten, so that we both have time to read the draft before "
     "we meet.",
     at(14, 27), false, 0},
    {"term", "git rebase --autosquash main", at(14, 32)},
};

}  // namespace

void installDemoImages(SimulatedPlatform& sim) {
    sim.package.resources = BRINDLE_RESOURCES;
    sim.package.images["AppIcon"] = BRINDLE_RESOURCES "/AppIcon.svg";
    sim.package.info["CFBundleShortVersionString"] = "1.0";
    for (const char* symbol :
         {"doc.on.clipboard", "gearshape.fill", "magnifyingglass", "pin.fill", "plus", "xmark.circle.fill"})
        sim.package.symbols[symbol] = std::string(BRINDLE_RESOURCES "/symbols/") + symbol + ".svg";
    for (const char* application : {"term", "mail", "code", "web", "chat", "note"}) {
        const std::string path = std::string("/usr/share/applications/") + application;
        sim.desktop.applicationPaths[application] = path;
        sim.desktop.icons[path] = std::string(BRINDLE_DEMO_ICONS "/") + application + ".svg";
    }
}

DemoHistory::DemoHistory() {
    installDemoImages(sim);
    history.createList("Work");
    history.createList("Dev");
    for (const Entry& entry : entries) {
        ClipboardItem item;
        item.id = Uuid::generate();
        item.content = entry.text;
        item.date = entry.date;
        if (entry.application)
            item.sourceApp = SharedText(entry.application);
        history.addItem(item);
        if (entry.isPinned)
            history.togglePin(item);
        if (entry.list >= 0)
            history.moveItem(item, history.customLists().value()[static_cast<std::size_t>(entry.list)].id);
    }
}

}  // namespace brindle::test
