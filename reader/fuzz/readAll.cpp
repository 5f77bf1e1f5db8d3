#include "readAll.h"

#include "MoxReader/HeavyData.h"

namespace MoxFuzz {

namespace {

using namespace MoxReader;

constexpr std::uint64_t MostNumberBytes = 1u << 20;

// The sizes of the datasets don't limit the time alone: a dataset of no bytes costs as much as a short one.
constexpr std::uint64_t CostOfOne = 64;

/// How many bytes of numbers may still be read.
class Allowance {
public:
    bool take(std::uint64_t bytes) {
        used_ += bytes + CostOfOne;
        return used_ <= MostNumberBytes;
    }

private:
    std::uint64_t used_ = 0;
};

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

void readDataset(HeavyData& heavy, const Model& model, const Dataset& dataset, Allowance& allowance) {
    try {
        if (!allowance.take(model.resolve(dataset).sizeInBytes)) {
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

void readSets(HeavyData& heavy, const NodeSets& sets, Allowance& allowance) {
    try {
        if (allowance.take(sets.heavySize)) {
            heavy.readNodeSets(sets);
        }
    } catch (const Error&) {
        // The other sets may still be readable.
    }
}

} // namespace

void readAll(const File& file) {
    readStreams(file);
    const auto model = readModel(file);
    HeavyData heavy(file, model);
    Allowance allowance;
    for (const auto& node : model.nodes()) {
        if (const auto* geometry = node.geometry()) {
            for (const auto& dataset : geometry->datasets) {
                readDataset(heavy, model, dataset, allowance);
            }
        }
        if (const auto* sets = node.nodeSets()) {
            readSets(heavy, *sets, allowance);
        }
    }
}

} // namespace MoxFuzz
