#include <benchmark/benchmark.h>

#include <cstring>
#include <utility>

#include "bench/Desk.h"
#include "model/StoredForm.h"

namespace brindle::bench {

namespace {

constexpr std::size_t texts = 1024;
constexpr std::size_t textSize = std::size_t{64} << 10;

void setSpeed(benchmark::State& state, std::size_t bytes) {
    state.SetBytesProcessed(static_cast<std::int64_t>(bytes) * state.iterations());
}

void copyOfTheSameBytes(benchmark::State& state) {
    const std::string json = encodeHistory(entries(texts, textSize, false));
    std::string copy(json.size(), ' ');
    for ([[maybe_unused]] auto round : state) {
        std::memcpy(copy.data(), json.data(), json.size());
        benchmark::ClobberMemory();
    }
    setSpeed(state, json.size());
}

/// The floor of encoding and decoding, which fill fresh memory: here the kernel's part takes longer than the copying.
void copyIntoFreshMemory(benchmark::State& state) {
    const std::string json = encodeHistory(entries(texts, textSize, false));
    for ([[maybe_unused]] auto round : state) {
        const std::string copy = json;
        benchmark::DoNotOptimize(copy.data());
    }
    setSpeed(state, json.size());
}

void encode(benchmark::State& state) {
    const auto history = entries(texts, textSize, false);
    std::size_t bytes = 0;
    for ([[maybe_unused]] auto round : state) {
        const std::string json = encodeHistory(history);
        benchmark::DoNotOptimize(json.data());
        bytes = json.size();
    }
    setSpeed(state, bytes);
}

void decode(benchmark::State& state) {
    const std::string json = encodeHistory(entries(texts, textSize, false));
    for ([[maybe_unused]] auto round : state) {
        state.PauseTiming();
        std::string stored = json;
        state.ResumeTiming();
        const auto history = decodeHistory(std::move(stored));
        benchmark::DoNotOptimize(history->data());
    }
    setSpeed(state, json.size());
}

BENCHMARK(copyOfTheSameBytes)->Unit(benchmark::kMillisecond);
BENCHMARK(copyIntoFreshMemory)->Unit(benchmark::kMillisecond);
BENCHMARK(encode)->Unit(benchmark::kMillisecond);
BENCHMARK(decode)->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace brindle::bench
