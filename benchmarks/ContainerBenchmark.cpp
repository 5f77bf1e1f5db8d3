// What the single steps of a save cost: rearranging the numbers of an array, and putting one value or one record into
// a block.

#include <Qel/Mox/Format.h>
#include <Qel/Mox/Material.h>
#include <Qel/Tnf/Index.h>
#include <Qel/Tnf/Shuffle.h>

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace {

constexpr std::size_t ArrayBytes = 4 * 1024 * 1024;
constexpr int PutsOfEach = 10'000;

void copyAlone(benchmark::State& state) {
    const std::vector<float> values(ArrayBytes / sizeof(float), 1.5F);
    std::vector<unsigned char> planes(ArrayBytes);
    for (auto _ : state) {
        std::memcpy(planes.data(), values.data(), ArrayBytes);
        benchmark::DoNotOptimize(planes.data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(ArrayBytes));
}

// By the number of columns.
void shuffle(benchmark::State& state) {
    const std::vector<float> values(ArrayBytes / sizeof(float), 1.5F);
    std::vector<unsigned char> planes(ArrayBytes);
    for (auto _ : state) {
        QelTnf::shuffleComponents(values.data(), values.size(), static_cast<std::size_t>(state.range(0)),
                                  planes.data());
        benchmark::DoNotOptimize(planes.data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(ArrayBytes));
}

// The first value makes the block, of which each of many others has a small part.
template <typename T>
void put(benchmark::State& state, const T& value) {
    for (auto _ : state) {
        QelTnf::Index index;
        for (int i = 0; i < PutsOfEach; ++i) {
            index.Put(QelMox::Format::MoxTree, value);
        }
        benchmark::DoNotOptimize(index.GetStreamSize(QelMox::Format::MoxTree));
    }
    state.counters["each"] = benchmark::Counter(PutsOfEach, benchmark::Counter::kIsIterationInvariantRate |
                                                                benchmark::Counter::kInvert);
}

// As many names as a file has.
void putUnderManyNames(benchmark::State& state) {
    const std::vector<std::string> names = {QelMox::Format::HeavyData, QelMox::Format::MoxTree,
                                            QelMox::Format::LightData, QelMox::Format::Attributes,
                                            QelMox::Format::Resources};
    for (auto _ : state) {
        QelTnf::Index index;
        for (int i = 0; i < PutsOfEach; ++i) {
            index.Put(names[static_cast<std::size_t>(i) % names.size()], 17U);
        }
        benchmark::DoNotOptimize(index.GetStreamSize(QelMox::Format::MoxTree));
    }
    state.counters["each"] = benchmark::Counter(PutsOfEach, benchmark::Counter::kIsIterationInvariantRate |
                                                                benchmark::Counter::kInvert);
}

BENCHMARK(copyAlone);
BENCHMARK(shuffle)->Arg(1)->Arg(3)->Arg(6);
BENCHMARK_CAPTURE(put, number, 17U);
BENCHMARK_CAPTURE(put, text, std::string("part 123456"));
BENCHMARK_CAPTURE(put, texts, std::vector<std::string>{"Time", "Category"});
BENCHMARK_CAPTURE(put, material, QelMox::Material(std::string()));
BENCHMARK(putUnderManyNames);

} // namespace
