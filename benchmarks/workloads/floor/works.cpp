// The floor: what the format needs and nothing else, by a program that shares no code with the library. The bytes
// of the records are appended to buffers, and each block is compressed with one call of compress2() and written.
// Nothing is looked up, checked or kept: the works' trees are known beforehand.

#include "common/NumberedName.h"
#include "common/Work.h"
#include "common/sampleFields.h"
#include "common/sizes.h"
#include "floor/ModelFile.h"

#include <charconv>
#include <cstring>
#include <vector>

namespace Workloads {

namespace {

using Floor::keyOf;
using Floor::Links;
using Floor::ModelFile;

constexpr std::uint32_t RootId = 1;

// A root with one shape, up to the geometry.
void putOneShape(ModelFile& file, std::uint32_t datasets) {
    constexpr std::uint32_t shape = 2;
    constexpr std::uint32_t geometry = 3;
    file.putNodeCount(geometry);
    file.putGroup({.id = RootId, .firstChild = shape, .lastChild = shape}, "root");
    file.putShape({.id = shape, .parent = RootId, .firstChild = geometry, .lastChild = geometry}, "part");
    file.putGeometry({.id = geometry, .parent = shape}, "part", datasets);
}

void saveBulk(std::uint64_t mebibytes, const std::string& path, Stopwatch& watch) {
    const std::vector<std::vector<float>> fields = bulkFields();

    watch.start("add");
    ModelFile file(path);
    std::vector<std::uint64_t> positions;
    for (std::uint64_t i = 0; i < fieldsIn(mebibytes); ++i) {
        positions.push_back(file.putArray(fields[i % FieldCount].data(), FieldRows, FieldColumns));
    }
    watch.start("close");
    putOneShape(file, static_cast<std::uint32_t>(positions.size()));
    NumberedName stepName("Step ");
    for (std::size_t i = 0; i < positions.size(); ++i) {
        file.putDataset(keyOf("Displacement", stepName(i)), Floor::NodeVectorType, FieldRows, FieldColumns,
                        positions[i]);
    }
    file.close();
}

void saveArray(std::uint64_t mebibytes, const std::string& path, Stopwatch& watch) {
    const std::size_t rows = fieldsIn(mebibytes) * FieldRows;
    std::vector<float> array(rows * FieldColumns);
    fillLongArray(mebibytes, array.data());

    watch.start("add");
    ModelFile file(path);
    const std::uint64_t position = file.putArray(array.data(), rows, FieldColumns);
    watch.start("close");
    putOneShape(file, 1);
    file.putDataset("Displacement", Floor::NodeVectorType, rows, FieldColumns, position);
    file.close();
}

void saveTree(std::uint64_t shapes, const std::string& path, Stopwatch& watch) {
    constexpr std::uint32_t nodesOfEach = 3;
    watch.start("save");
    ModelFile file(path);
    const auto lastGroup = static_cast<std::uint32_t>(2 + nodesOfEach * (shapes - 1));
    file.putNodeCount(lastGroup + nodesOfEach - 1);
    file.putGroup({.id = RootId, .firstChild = 2, .lastChild = lastGroup}, "root");
    NumberedName groupName("part ");
    NumberedName shapeName("body ");
    for (std::uint64_t i = 0; i < shapes; ++i) {
        const auto group = static_cast<std::uint32_t>(2 + nodesOfEach * i);
        const std::uint32_t shape = group + 1;
        const std::uint32_t geometry = group + 2;
        file.putGroup({.id = group,
                       .parent = RootId,
                       .previous = i == 0 ? 0 : group - nodesOfEach,
                       .next = group == lastGroup ? 0 : group + nodesOfEach,
                       .firstChild = shape,
                       .lastChild = shape},
                      groupName(i));
        const std::string& name = shapeName(i);
        file.putShape({.id = shape, .parent = group, .firstChild = geometry, .lastChild = geometry}, name);
        file.putGeometry({.id = geometry, .parent = shape}, name, 0);
    }
    file.close();
}

void saveDatasets(std::uint64_t datasets, std::uint64_t shapes, bool timed, const std::string& path,
                  Stopwatch& watch) {
    constexpr std::uint32_t nodesOfEach = 2;
    const std::vector<std::vector<float>> arrays = smallArrays();

    watch.start("add");
    ModelFile file(path);
    std::vector<std::uint64_t> positions;
    for (std::uint64_t i = 0; i < datasets; ++i) {
        positions.push_back(file.putArray(arrays[i % SmallArrayCount].data(), SmallArrayValues, 1));
    }
    watch.start("close");
    const auto lastShape = static_cast<std::uint32_t>(2 + nodesOfEach * (shapes - 1));
    file.putNodeCount(lastShape + 1);
    file.putGroup({.id = RootId, .firstChild = 2, .lastChild = lastShape}, "root");
    NumberedName partName("part ");
    NumberedName key("Temperature\x1eStep ");
    for (std::uint64_t i = 0; i < shapes; ++i) {
        const auto shape = static_cast<std::uint32_t>(2 + nodesOfEach * i);
        const std::uint32_t geometry = shape + 1;
        const std::string& name = partName(i);
        file.putShape({.id = shape,
                       .parent = RootId,
                       .previous = i == 0 ? 0 : shape - nodesOfEach,
                       .next = shape == lastShape ? 0 : shape + nodesOfEach,
                       .firstChild = geometry,
                       .lastChild = geometry},
                      name);
        file.putGeometry({.id = geometry, .parent = shape}, name,
                         static_cast<std::uint32_t>((datasets - i + shapes - 1) / shapes));
        for (std::uint64_t dataset = i; dataset < datasets; dataset += shapes) {
            const std::uint64_t step = dataset / shapes;
            if (timed) {
                file.putTimedDataset(key(step), Floor::NodeScalarType, SmallArrayValues, 1,
                                     positions[dataset], 0.1F * static_cast<float>(step));
            } else {
                file.putDataset(key(step), Floor::NodeScalarType, SmallArrayValues, 1, positions[dataset]);
            }
        }
    }
    file.close();
}

void saveSmall(std::uint64_t datasets, const std::string& path, Stopwatch& watch) {
    saveDatasets(datasets, SmallShapes, false, path, watch);
}

void saveSmallTimed(std::uint64_t datasets, const std::string& path, Stopwatch& watch) {
    saveDatasets(datasets, SmallShapes, true, path, watch);
}

void saveKeys(std::uint64_t datasets, const std::string& path, Stopwatch& watch) {
    saveDatasets(datasets, 1, false, path, watch);
}

void saveBlocks(std::uint64_t blocks, const std::string& path, Stopwatch& watch) {
    std::vector<std::vector<float>> arrays;
    for (std::size_t i = 0; i < SmallArrayCount; ++i) {
        arrays.push_back(sampleField(ValuesOfTinyArray, 1, i));
    }
    std::size_t blockSize = 0;
    std::from_chars(TinyBlockSize, TinyBlockSize + std::strlen(TinyBlockSize), blockSize);

    watch.start("add");
    ModelFile file(path, blockSize);
    std::uint64_t position = 0;
    for (std::uint64_t i = 0; i < blocks * ArraysInTinyBlock; ++i) {
        position = file.putArray(arrays[i % SmallArrayCount].data(), ValuesOfTinyArray, 1);
    }
    watch.start("close");
    putOneShape(file, 1);
    file.putDataset("Temperature", Floor::NodeScalarType, ValuesOfTinyArray, 1, position);
    file.close();
}

} // namespace

const std::vector<Work>& works() {
    static const std::vector<Work> all = {
        {"bulk", "MiB of fields", saveBulk},
        {"array", "MiB of one array", saveArray},
        {"tree", "shapes, each with a group and a geometry", saveTree},
        {"small", "datasets on 100 shapes", saveSmall},
        {"small-timed", "datasets on 100 shapes, whose steps have a time", saveSmallTimed},
        {"keys", "datasets on one shape", saveKeys},
        {"blocks", "blocks of 4,000 bytes", saveBlocks},
    };
    return all;
}

} // namespace Workloads
