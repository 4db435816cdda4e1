#include <valgrind/callgrind.h>

#include <QScrollBar>

#include "bench/Window.h"
#include "model/StoredForm.h"
#include "views/HistoryView.h"
#include "views/TextField.h"

// Five pieces of work, each done once to warm up and once under Callgrind's eyes, which leaves a dump with its name.
// See scripts/count-instructions.
namespace brindle::bench {

namespace {

template <typename Work>
void count(const char* name, Work work) {
    work();
    CALLGRIND_START_INSTRUMENTATION;
    work();
    CALLGRIND_DUMP_STATS_AT(name);
    CALLGRIND_STOP_INSTRUMENTATION;
}

void countAll() {
    const auto history = entries(1000, 1024, false);
    const std::string json = encodeHistory(history);
    count("encode", [&] { static_cast<void>(encodeHistory(history)); });
    count("decode", [&] { static_cast<void>(decodeHistory(json)); });
    {
        Desk desk(Storing::onDisk, 1000, 1024, true);
        std::size_t number = 1'000'000;
        count("capture", [&] {
            ClipboardItem item;
            item.id = Uuid::generate();
            item.content = text(number++, 1024);
            desk.history.addItem(item);
        });
    }
    Window window(1000, 1024);
    auto& field = *window.view.findChild<TextField*>();
    field.setFocus();
    count("keystroke", [&] {
        type(field, QStringLiteral("dog ").at(field.text().size()));
        window.redraw();
    });
    QScrollBar& bar = *window.view.findChild<HistoryView*>()->verticalScrollBar();
    count("page", [&] {
        bar.setValue(bar.value() + bar.pageStep());
        window.view.repaint();
    });
}

}  // namespace

}  // namespace brindle::bench

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    brindle::bench::countAll();
}
