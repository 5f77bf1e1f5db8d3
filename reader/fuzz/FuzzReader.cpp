// Reads arbitrary bytes as a file, using everything that the library offers. Any outcome but a value or an
// Error is a bug.
//
//     moxreader_fuzz -max_len=16384 CORPUS_FOLDER

#include "MoxReader/HeavyData.h"
#include "MoxReader/MemorySource.h"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace {

using namespace MoxReader;

/// Limits the bytes read in all, since many datasets may share one range.
constexpr std::uint64_t NumbersLimit = 16u << 20;

void readStreams(const File& file) {
    for (const auto& name : file.streamNames()) {
        auto stream = file.stream(name);
        try {
            stream.skip(stream.size() / 2);
            stream.readBytes(stream.remaining());
        } catch (const Error&) {
            // The other streams may still be readable.
        }
    }
}

void readDataset(HeavyData& heavy, const Model& model, const Dataset& dataset, std::uint64_t& numbers) {
    try {
        numbers += model.resolve(dataset).sizeInBytes;
        if (numbers > NumbersLimit) {
            return;
        }
        if (dataset.elementTag == Format::FloatTag) {
            heavy.readFloats(dataset);
        } else {
            heavy.readUnsigned(dataset);
        }
    } catch (const Error&) {
        // The other datasets may still be readable.
    }
}

void readNumbers(const File& file) {
    const auto model = readModel(file);
    HeavyData heavy(file, model);
    std::uint64_t numbers = 0;
    for (const auto& node : model.nodes()) {
        if (const auto* geometry = node.geometry()) {
            for (const auto& dataset : geometry->datasets) {
                readDataset(heavy, model, dataset, numbers);
            }
        }
        if (const auto* sets = node.nodeSets()) {
            heavy.readNodeSets(*sets);
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto source = std::make_shared<MemorySource>(std::vector<std::uint8_t>(data, data + size));
    try {
        // First by the damaged index, so that the blocks of a file with a wrong header are read too.
        const File file(source, scanIndex(*source));
        readStreams(file);
        readNumbers(file);
    } catch (const Error&) {
        return 0;
    }
    return 0;
}
