#include "memory/readWhole.h"

#include "Support/Bytes.h"

#include <MoxReader/File.h>
#include <MoxReader/FileSource.h>
#include <MoxReader/Format.h>
#include <MoxReader/HeavyData.h>
#include <MoxReader/MemorySource.h>
#include <MoxReader/Model.h>

#include <bit>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace Memory {

namespace {

// Allocates nothing, so that what fails is always the reader's.
class Sum {
public:
    void add(std::uint64_t number) { value_ = (value_ ^ number) * Prime; }

    void add(std::string_view text) {
        for (const char one : text) {
            add(static_cast<std::uint8_t>(one));
        }
    }

    void add(const std::vector<float>& numbers) {
        for (const float one : numbers) {
            add(std::bit_cast<std::uint32_t>(one));
        }
    }

    template <typename T>
    void add(const std::vector<T>& numbers) {
        for (const T one : numbers) {
            add(std::uint64_t{one});
        }
    }

    std::uint64_t value() const { return value_; }

private:
    // Of the hash function FNV-1a.
    static constexpr std::uint64_t Prime = 0x100000001B3;
    std::uint64_t value_ = 0xCBF29CE484222325;
};

void addBlocks(Sum& sum, const MoxReader::File& file) {
    for (std::uint64_t id = 0; id < file.blocks().size(); ++id) {
        if (file.blocks()[id].length > 0) {
            sum.add(file.readBlock(id));
        }
    }
    for (const std::string& name : file.streamNames()) {
        MoxReader::StreamReader stream = file.stream(name);
        sum.add(stream.readBytes(stream.remaining()));
    }
}

void addNumbers(Sum& sum, const MoxReader::Model& model, MoxReader::HeavyData& heavy,
                const MoxReader::Dataset& dataset) {
    sum.add(dataset.key);
    if (model.resolve(dataset).elementTag == MoxReader::Format::FloatTag) {
        sum.add(heavy.readFloats(dataset));
    } else {
        sum.add(heavy.readUnsigned(dataset));
    }
    sum.add(heavy.readBytes(dataset));
}

void addSets(Sum& sum, const std::vector<MoxReader::NodeSet>& sets) {
    for (const MoxReader::NodeSet& set : sets) {
        sum.add(set.name);
        for (const auto& [first, second] : set.members) {
            sum.add(first);
            sum.add(second);
        }
    }
}

void addModel(Sum& sum, const MoxReader::File& file) {
    const MoxReader::Model model = MoxReader::readModel(file);
    MoxReader::HeavyData heavy(MoxReader::openHeavyStream(file, model.nodes()), model);
    for (const MoxReader::Node& node : model.nodes()) {
        sum.add(node.name);
        if (node.geometry() != nullptr) {
            for (const MoxReader::Dataset& dataset : node.geometry()->datasets) {
                addNumbers(sum, model, heavy, dataset);
            }
        }
        if (node.nodeSets() != nullptr) {
            addSets(sum, heavy.readNodeSets(*node.nodeSets()));
        }
    }
}

} // namespace

std::uint64_t readWhole(const std::string& path) {
    Sum sum;
    {
        const MoxReader::File onDisk(path);
        addBlocks(sum, onDisk);
        addModel(sum, onDisk);
    }
    const MoxReader::File inMemory(std::make_shared<MoxReader::MemorySource>(Support::bytesOf(path)));
    addModel(sum, inMemory);
    return sum.value();
}

} // namespace Memory
