#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <memory>

#include "bench/Desk.h"

namespace brindle::bench {

namespace {

ClipboardItem copyOf(std::size_t number) {
    ClipboardItem item;
    item.id = Uuid::generate();
    item.content = text(1'000'000 + number, 1024);
    return item;
}

double secondsOf(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// What a capture compares and moves, without the save: all entries are pinned, so all of them stay.
void addItemToPinned(benchmark::State& state) {
    Desk desk(Storing::nowhere, static_cast<std::size_t>(state.range(0)), 1024, true);
    std::size_t number = 0;
    for ([[maybe_unused]] auto round : state) {
        const ClipboardItem item = copyOf(number++);
        const double whole = secondsOf([&] { desk.history.addItem(item); });
        const double saving = secondsOf([&] { desk.history.saveHistory(); });
        state.SetIterationTime(std::max(whole - saving, 0.0));
    }
}

/// A lower limit that half of the history goes by, without the save.
void trimToHalf(benchmark::State& state) {
    const auto count = static_cast<std::size_t>(state.range(0));
    for ([[maybe_unused]] auto round : state) {
        state.PauseTiming();
        auto desk = std::make_unique<Desk>(Storing::nowhere, count, 100);
        state.ResumeTiming();
        desk->history.trimHistory(state.range(0) / 2);
        state.PauseTiming();
        desk.reset();
        state.ResumeTiming();
    }
}

/// One captured copy, on the disk when it returns.
void captureDurably(benchmark::State& state) {
    Desk desk(Storing::onDisk, static_cast<std::size_t>(state.range(0)), 1024);
    std::size_t number = 0;
    for ([[maybe_unused]] auto round : state)
        desk.history.addItem(copyOf(number++));
}

// Not as many rounds as it takes to fill a time: each makes the history longer.
BENCHMARK(addItemToPinned)->Arg(100)->Arg(10'000)->Unit(benchmark::kMicrosecond)->UseManualTime()->Iterations(50);
BENCHMARK(trimToHalf)->Arg(100)->Arg(10'000)->Unit(benchmark::kMicrosecond)->Iterations(20);
BENCHMARK(captureDurably)->Arg(5)->Arg(100)->Arg(1000)->Arg(10'000)->Unit(benchmark::kMicrosecond);

}  // namespace

}  // namespace brindle::bench
