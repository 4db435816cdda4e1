#include <benchmark/benchmark.h>

#include "bench/Desk.h"

namespace brindle::bench {

namespace {

ClipboardItem copyOf(std::size_t number) {
    ClipboardItem item;
    item.id = Uuid::generate();
    item.content = text(1'000'000 + number, 1024);
    return item;
}

/// What a capture compares and moves, without the save: all entries are pinned, so all of them stay.
void addItemToPinned(benchmark::State& state) {
    Desk desk(Storing::nowhere, static_cast<std::size_t>(state.range(0)), 1024, true);
    std::size_t number = 0;
    for ([[maybe_unused]] auto round : state) {
        state.PauseTiming();
        const ClipboardItem item = copyOf(number++);
        state.ResumeTiming();
        desk.history.addItem(item);
    }
}

/// The encoding that addItemToPinned includes.
void encodeThePinned(benchmark::State& state) {
    Desk desk(Storing::nowhere, static_cast<std::size_t>(state.range(0)), 1024, true);
    for ([[maybe_unused]] auto round : state)
        desk.history.saveHistory();
}

/// One captured copy, on the disk when it returns.
void captureDurably(benchmark::State& state) {
    Desk desk(Storing::onDisk, static_cast<std::size_t>(state.range(0)), 1024);
    std::size_t number = 0;
    for ([[maybe_unused]] auto round : state)
        desk.history.addItem(copyOf(number++));
}

BENCHMARK(addItemToPinned)->Arg(100)->Arg(10'000)->Unit(benchmark::kMicrosecond);
BENCHMARK(encodeThePinned)->Arg(100)->Arg(10'000)->Unit(benchmark::kMicrosecond);
BENCHMARK(captureDurably)->Arg(5)->Arg(1000)->Unit(benchmark::kMicrosecond);

}  // namespace

}  // namespace brindle::bench
