// What a save costs compared with zlib alone, and how the calls of a model scale with its size.
//
// Bulk: "bytes_per_second" of saving against that of compressing the same numbers, shuffled, with zlib alone.
// Tree: the time for each item, which has to stay flat as the number of items grows.

#include "TemporaryFile.h"

#include <Qel/Mox2/Model.h>

#include <benchmark/benchmark.h>
#include <zlib.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace {

using namespace Qel::Mox2;

void open(Model& model, const TemporaryFile& file) {
    SaverOptions options;
    options.overwrite = true;
    model.saveTo(file.path, options);
}

// A displacement field of a smooth shape with some noise in its last bits, as solvers produce it.
std::vector<float> smoothField(std::size_t rows) {
    std::vector<float> values(rows * 3);
    for (std::size_t i = 0; i < values.size(); ++i) {
        const double place = static_cast<double>(i) / static_cast<double>(values.size());
        values[i] = static_cast<float>(std::sin(40.0 * place) + 1e-6 * static_cast<double>(i * 7919 % 1000));
    }
    return values;
}

std::vector<unsigned char> shuffled(const std::vector<float>& values) {
    const std::size_t rows = values.size() / 3;
    std::vector<unsigned char> planes(values.size() * 4);
    for (std::size_t i = 0; i < values.size(); ++i) {
        std::uint32_t bits = 0;
        std::memcpy(&bits, &values[i], sizeof(bits));
        for (std::size_t byte = 0; byte < 4; ++byte) {
            planes[(i % 3 * 4 + byte) * rows + i / 3] = static_cast<unsigned char>(bits >> (8 * byte));
        }
    }
    return planes;
}

void zlibAlone(benchmark::State& state) {
    const std::vector<unsigned char> planes = shuffled(smoothField(static_cast<std::size_t>(state.range(0))));
    std::vector<unsigned char> compressed(compressBound(static_cast<uLong>(planes.size())));
    for (auto _ : state) {
        uLongf size = static_cast<uLongf>(compressed.size());
        if (compress2(compressed.data(), &size, planes.data(), static_cast<uLong>(planes.size()), 6) !=
            Z_OK) {
            state.SkipWithError("zlib failed");
        }
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(planes.size()));
}

void saveField(benchmark::State& state) {
    const auto rows = static_cast<std::size_t>(state.range(0));
    const std::vector<float> values = smoothField(rows);
    Array2d<float> field(rows, 3);
    field.copy_from(values.data());
    const TemporaryFile file;
    for (auto _ : state) {
        Model model;
        open(model, file);
        model.addNode(Group, "root");
        model.addArrayProperty(DisplacementVector, field, model.addNode(Shape, "part"), Step());
        model.close();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(values.size() * sizeof(float)));
}

// A root with `state.range(0)` shapes below it, merged once and found again once.
void mergeFlatLevel(benchmark::State& state) {
    std::vector<std::string> paths;
    for (std::int64_t i = 0; i < state.range(0); ++i) {
        paths.push_back("/root/part " + std::to_string(i));
    }
    const TemporaryFile file;
    for (auto _ : state) {
        Model model;
        open(model, file);
        model.addAssemblyComponents(paths);
        model.addAssemblyComponents(paths);
        state.PauseTiming();
        model.close();
        state.ResumeTiming();
    }
    state.counters["per item"] =
        benchmark::Counter(static_cast<double>(2 * state.range(0)),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void addSteps(benchmark::State& state) {
    const Array1d<float> values(10, 1.0F);
    const TemporaryFile file;
    for (auto _ : state) {
        Model model;
        open(model, file);
        model.addNode(Group, "root");
        const unsigned int part = model.addNode(Shape, "part");
        Step step;
        for (std::int64_t i = 0; i < state.range(0); ++i) {
            step.name = std::to_string(i);
            model.addArrayProperty("Result", NodeScalar, values, part, step);
        }
        state.PauseTiming();
        model.close();
        state.ResumeTiming();
    }
    state.counters["per item"] =
        benchmark::Counter(static_cast<double>(state.range(0)),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

BENCHMARK(zlibAlone)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK(saveField)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK(mergeFlatLevel)->RangeMultiplier(10)->Range(1'000, 1'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK(addSteps)->RangeMultiplier(10)->Range(100, 100'000)->Unit(benchmark::kMillisecond);

} // namespace
