// The works as HDF5 users save them: a dataset for each array, in chunks of 1 MiB that are shuffled and deflated; a
// group for each node of a tree, with its properties as attributes.

#include "common/NumberedName.h"
#include "common/Work.h"
#include "common/sampleFields.h"
#include "common/sizes.h"
#include "hdf5/Handle.h"

#include <array>
#include <vector>

namespace Workloads {

namespace {

using Hdf5::checked;

constexpr unsigned int Level = 6;
// A quarter of a field: 1 MiB.
constexpr std::size_t ChunkRows = (FieldRows + 3) / 4;

// Each work has the version of the format in which HDF5 is faster at it: large groups and single chunks gain from
// the newest, contiguous datasets from the oldest, which is HDF5's default.
Hdf5::File create(const std::string& path, H5F_libver_t oldest) {
    const Hdf5::Properties access(H5Pcreate(H5P_FILE_ACCESS));
    checked(H5Pset_libver_bounds(access, oldest, H5F_LIBVER_LATEST));
    return Hdf5::File(H5Fcreate(path.c_str(), H5F_ACC_TRUNC, H5P_DEFAULT, access));
}

Hdf5::Group addGroup(hid_t parent, const std::string& name) {
    return Hdf5::Group(H5Gcreate2(parent, name.c_str(), H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT));
}

Hdf5::Properties deflated(const std::vector<hsize_t>& chunk) {
    Hdf5::Properties properties(H5Pcreate(H5P_DATASET_CREATE));
    checked(H5Pset_chunk(properties, static_cast<int>(chunk.size()), chunk.data()));
    checked(H5Pset_shuffle(properties));
    checked(H5Pset_deflate(properties, Level));
    return properties;
}

void addDataset(hid_t parent, const std::string& name, hid_t space, hid_t properties, const float* values) {
    const Hdf5::Dataset dataset(
        H5Dcreate2(parent, name.c_str(), H5T_NATIVE_FLOAT, space, H5P_DEFAULT, properties, H5P_DEFAULT));
    checked(H5Dwrite(dataset, H5T_NATIVE_FLOAT, H5S_ALL, H5S_ALL, H5P_DEFAULT, values));
}

void addNumbers(hid_t object, const char* name, hid_t space, const float* values) {
    const Hdf5::Attribute attribute(
        H5Acreate2(object, name, H5T_NATIVE_FLOAT, space, H5P_DEFAULT, H5P_DEFAULT));
    checked(H5Awrite(attribute, H5T_NATIVE_FLOAT, values));
}

void saveBulk(std::uint64_t mebibytes, const std::string& path, Stopwatch& watch) {
    const std::vector<std::vector<float>> fields = bulkFields();

    watch.start("add");
    Hdf5::File file = create(path, H5F_LIBVER_EARLIEST);
    const std::array<hsize_t, 2> extent = {FieldRows, FieldColumns};
    const Hdf5::Space space(H5Screate_simple(2, extent.data(), nullptr));
    const Hdf5::Properties properties = deflated({ChunkRows, FieldColumns});
    Hdf5::Group part = addGroup(file, "part");
    NumberedName stepName("Step ");
    for (std::uint64_t i = 0; i < fieldsIn(mebibytes); ++i) {
        const Hdf5::Group step = addGroup(part, stepName(i));
        addDataset(step, "Displacement", space, properties, fields[i % FieldCount].data());
    }
    watch.start("close");
    part.close();
    file.close();
}

void saveArray(std::uint64_t mebibytes, const std::string& path, Stopwatch& watch) {
    const std::size_t rows = fieldsIn(mebibytes) * FieldRows;
    std::vector<float> array(rows * FieldColumns);
    fillLongArray(mebibytes, array.data());

    watch.start("add");
    Hdf5::File file = create(path, H5F_LIBVER_EARLIEST);
    const std::array<hsize_t, 2> extent = {rows, FieldColumns};
    const Hdf5::Space space(H5Screate_simple(2, extent.data(), nullptr));
    addDataset(file, "Displacement", space, deflated({ChunkRows, FieldColumns}), array.data());
    watch.start("close");
    file.close();
}

void saveTree(std::uint64_t shapes, const std::string& path, Stopwatch& watch) {
    constexpr std::array<float, 10> transform = {0, 0, 0, 0, 0, 1, 0, 1, 1, 1};
    constexpr std::array<float, 18> material = {0.8F, 0.8F, 0.8F, 1,     0,     0,     0,    1, 0,
                                                0,    0,    0,    0.16F, 0.16F, 0.16F, 0.2F, 0, 0.2F};
    watch.start("add");
    Hdf5::File file = create(path, H5F_LIBVER_LATEST);
    const hsize_t transformSize = transform.size();
    const hsize_t materialSize = material.size();
    const Hdf5::Space transformSpace(H5Screate_simple(1, &transformSize, nullptr));
    const Hdf5::Space materialSpace(H5Screate_simple(1, &materialSize, nullptr));
    Hdf5::Group root = addGroup(file, "root");
    NumberedName groupName("part ");
    NumberedName shapeName("body ");
    for (std::uint64_t i = 0; i < shapes; ++i) {
        const Hdf5::Group group = addGroup(root, groupName(i));
        addNumbers(group, "Transform", transformSpace, transform.data());
        const Hdf5::Group shape = addGroup(group, shapeName(i));
        addNumbers(shape, "Material", materialSpace, material.data());
        const Hdf5::Group geometry = addGroup(shape, "Geometry");
    }
    watch.start("close");
    root.close();
    file.close();
}

void saveDatasets(std::uint64_t datasets, std::uint64_t shapes, bool isDeflated, const std::string& path,
                  Stopwatch& watch) {
    const std::vector<std::vector<float>> arrays = smallArrays();

    watch.start("add");
    Hdf5::File file = create(path, isDeflated ? H5F_LIBVER_LATEST : H5F_LIBVER_EARLIEST);
    const hsize_t extent = SmallArrayValues;
    const Hdf5::Space space(H5Screate_simple(1, &extent, nullptr));
    const Hdf5::Properties properties =
        isDeflated ? deflated({extent}) : Hdf5::Properties(H5Pcreate(H5P_DATASET_CREATE));
    std::vector<Hdf5::Group> parts;
    NumberedName partName("part ");
    for (std::uint64_t i = 0; i < shapes; ++i) {
        parts.push_back(addGroup(file, partName(i)));
    }
    NumberedName datasetName("Temperature Step ");
    for (std::uint64_t i = 0; i < datasets; ++i) {
        addDataset(parts[i % shapes], datasetName(i / shapes), space, properties,
                   arrays[i % SmallArrayCount].data());
    }
    watch.start("close");
    parts.clear();
    file.close();
}

void saveSmall(std::uint64_t datasets, const std::string& path, Stopwatch& watch) {
    saveDatasets(datasets, SmallShapes, false, path, watch);
}

void saveSmallDeflated(std::uint64_t datasets, const std::string& path, Stopwatch& watch) {
    saveDatasets(datasets, SmallShapes, true, path, watch);
}

void saveKeys(std::uint64_t datasets, const std::string& path, Stopwatch& watch) {
    saveDatasets(datasets, 1, false, path, watch);
}

void saveKeysDeflated(std::uint64_t datasets, const std::string& path, Stopwatch& watch) {
    saveDatasets(datasets, 1, true, path, watch);
}

} // namespace

const std::vector<Work>& works() {
    static const std::vector<Work> all = {
        {"bulk", "MiB of fields", saveBulk},
        {"array", "MiB of one array", saveArray},
        {"tree", "shapes, each with a group and a geometry", saveTree},
        {"small", "contiguous datasets on 100 shapes", saveSmall},
        {"small-deflated", "deflated datasets on 100 shapes", saveSmallDeflated},
        {"keys", "contiguous datasets on one shape", saveKeys},
        {"keys-deflated", "deflated datasets on one shape", saveKeysDeflated},
    };
    return all;
}

} // namespace Workloads
