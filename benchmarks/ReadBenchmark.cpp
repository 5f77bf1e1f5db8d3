// How fast the reader gives the numbers of a file back, compared with uncompressing them alone.

#include "TemporaryFile.h"
#include "workloads/common/sampleFields.h"

#include <MoxReader/HeavyData.h>
#include <MoxReader/Model.h>
#include <Qel/Mox2/Model.h>

#include <benchmark/benchmark.h>
#include <zlib.h>

#include <cstdint>
#include <string>
#include <vector>

namespace {

using namespace Qel::Mox2;
using Workloads::FieldColumns;
using Workloads::FieldRows;

constexpr std::size_t Fields = 8;
constexpr std::int64_t NumbersSize = Fields * FieldRows * FieldColumns * sizeof(float);

void save(const std::string& path) {
    Model model;
    model.saveTo(path, {.overwrite = true});
    model.addNode(Group, "root");
    const unsigned int geometry = model.addNode(Shape, "part");
    for (std::size_t i = 0; i < Fields; ++i) {
        const std::vector<float> values = Workloads::sampleField(FieldRows, FieldColumns, i);
        model.addArrayProperty(DisplacementVector, Array2d<float>(FieldRows, FieldColumns, values), geometry,
                               Step{"Step " + std::to_string(i), {}});
    }
    model.close();
}

void uncompressAlone(benchmark::State& state) {
    const TemporaryFile path;
    save(path.path);
    const MoxReader::File file(path.path);
    std::vector<unsigned char> content;
    for (const std::uint8_t byte : file.readBlock(0)) {
        content.push_back(byte);
    }
    std::vector<unsigned char> compressed(compressBound(static_cast<uLong>(content.size())));
    auto size = static_cast<uLongf>(compressed.size());
    compress2(compressed.data(), &size, content.data(), static_cast<uLong>(content.size()), 6);
    for (auto _ : state) {
        auto length = static_cast<uLongf>(content.size());
        if (uncompress(content.data(), &length, compressed.data(), size) != Z_OK) {
            state.SkipWithError("zlib failed");
        }
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(content.size()));
}

void readFloats(benchmark::State& state) {
    const TemporaryFile path;
    save(path.path);
    for (auto _ : state) {
        const MoxReader::File file(path.path);
        const MoxReader::Model model = MoxReader::readModel(file);
        MoxReader::HeavyData heavy(file, model);
        for (const MoxReader::Node& node : model.nodes()) {
            if (node.geometry() == nullptr) {
                continue;
            }
            for (const MoxReader::Dataset& dataset : node.geometry()->datasets) {
                benchmark::DoNotOptimize(heavy.readFloats(dataset).data());
            }
        }
    }
    state.SetBytesProcessed(state.iterations() * NumbersSize);
}

BENCHMARK(uncompressAlone)->Unit(benchmark::kMillisecond);
BENCHMARK(readFloats)->Unit(benchmark::kMillisecond);

} // namespace
