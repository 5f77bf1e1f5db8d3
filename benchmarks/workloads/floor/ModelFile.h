#pragma once

#include "floor/BlockFile.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace Workloads::Floor {

/// The ids of a node and of its neighbours, as they stand in the file.
struct Links {
    std::uint32_t id = 1;
    std::uint32_t parent = 0;
    std::uint32_t previous = 0;
    std::uint32_t next = 0;
    std::uint32_t firstChild = 0;
    std::uint32_t lastChild = 0;
};

/// Appends the records of a model to the blocks of a file. The caller gives the nodes in the order of their
/// ids, and a geometry's datasets right after the geometry.
class ModelFile {
public:
    explicit ModelFile(const std::string& path, std::size_t blockSize = BlockFile::DefaultBlockSize)
        : file_(path, blockSize) {}

    /// @return the array's position, for putDataset().
    std::uint64_t putArray(const float* values, std::size_t rows, std::size_t columns) {
        return file_.putArray(heavy_, values, rows, columns);
    }

    void putNodeCount(std::uint32_t count) { file_.blockOf(tree_).put(count); }
    void putGroup(const Links& links, const std::string& name);
    void putShape(const Links& links, const std::string& name);
    void putGeometry(const Links& links, const std::string& name, std::uint32_t datasets);
    void putDataset(const std::string& key, std::uint32_t type, std::size_t rows, std::size_t columns,
                    std::uint64_t position);
    void putTimedDataset(const std::string& key, std::uint32_t type, std::size_t rows, std::size_t columns,
                         std::uint64_t position, float time);

    /// Completes the file.
    void close();

private:
    void putNode(const Links& links, const std::string& name, const std::string& type,
                 const std::string& version);
    void putDescription(const std::string& key, std::uint32_t type, std::size_t rows, std::size_t columns,
                        std::uint64_t position);
    void putNoAttributes();

    BlockFile file_;
    BlockFile::Stream heavy_{"Heavy Data"};
    BlockFile::Stream tree_{"Mox Tree"};
    BlockFile::Stream light_{"Light Data"};
    BlockFile::Stream attributes_{"Attributes"};
    BlockFile::Stream resources_{"Resources"};
    BlockFile::Stream information_{"Global Information"};
};

/// The types of the datasets that the works save, with the mark of floats.
inline constexpr std::uint32_t NodeScalarType = 0x0100'000C;
inline constexpr std::uint32_t NodeVectorType = 0x0100'000D;

/// The key of a dataset of a step.
inline std::string keyOf(const std::string& dataset, const std::string& step) {
    return dataset + '\x1e' + step;
}

} // namespace Workloads::Floor
