#include <benchmark/benchmark.h>

#include <QApplication>
#include <QScrollBar>

#include "bench/Window.h"
#include "platform/freedesktop/DesktopEntryIndex.h"
#include "views/HistoryView.h"
#include "views/RowText.h"
#include "views/TextField.h"

namespace brindle::bench {

namespace {

void keystrokeInTheSearch(benchmark::State& state) {
    Window window(static_cast<std::size_t>(state.range(0)), static_cast<std::size_t>(state.range(1)));
    auto& field = *window.view.findChild<TextField*>();
    field.setFocus();
    std::size_t round = 0;
    for ([[maybe_unused]] auto turn : state) {
        if (round++ % 4 == 3) {
            state.PauseTiming();
            field.clear();
            window.redraw();
            state.ResumeTiming();
        }
        type(field, QStringLiteral("dog ").at(static_cast<qsizetype>(round % 4)));
        window.redraw();
    }
}

void scrollByAPage(benchmark::State& state) {
    Window window(static_cast<std::size_t>(state.range(0)), 1024);
    QScrollBar& bar = *window.view.findChild<HistoryView*>()->verticalScrollBar();
    for ([[maybe_unused]] auto turn : state) {
        bar.setValue(bar.value() == bar.maximum() ? 0 : bar.value() + bar.pageStep());
        window.view.repaint();
    }
}

/// Of prose in two lines, as a row that comes into sight needs it.
void layOutARow(benchmark::State& state) {
    constexpr double width = 250;  // points
    const std::string prose = text(1, 1024);
    for ([[maybe_unused]] auto turn : state)
        benchmark::DoNotOptimize(RowText(prose, width).lineCount());
}

/// The application of a window by its class, among those that are installed here.
void findADesktopEntry(benchmark::State& state) {
    const DesktopEntryIndex index;
    for ([[maybe_unused]] auto turn : state)
        benchmark::DoNotOptimize(index.identifierFor({"mousepad", "Mousepad", ""}));
}

/// From the poll to the painted list, on the disk meanwhile.
void showACopy(benchmark::State& state) {
    Window window(static_cast<std::size_t>(state.range(0)), 1024, Storing::onDisk);
    std::size_t number = 2'000'000;
    for ([[maybe_unused]] auto turn : state) {
        state.PauseTiming();
        window.desk.platform.clipboard.copy(SharedText(text(number++, 1024)));
        window.desk.platform.queue.run();
        state.ResumeTiming();
        window.desk.monitor.checkClipboard();
        window.redraw();
    }
}

BENCHMARK(keystrokeInTheSearch)
    ->Args({100, 1024})
    ->Args({10'000, 1024})
    ->Args({10'000, 10 * 1024})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(layOutARow)->Unit(benchmark::kMillisecond);
BENCHMARK(findADesktopEntry)->Unit(benchmark::kMillisecond);
BENCHMARK(scrollByAPage)->Arg(100)->Arg(10'000)->Unit(benchmark::kMillisecond);
BENCHMARK(showACopy)->Arg(5)->Arg(100)->Arg(1000)->Arg(10'000)->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace brindle::bench

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
