#include "common/NumberedName.h"
#include "common/sampleFields.h"
#include "common/sizes.h"
#include "library/open.h"
#include "library/works.h"

#include <vector>

namespace Workloads::Library {

using namespace Qel::Mox2;

namespace {

void saveDatasets(std::uint64_t datasets, std::uint64_t shapes, bool timed, const std::string& path,
                  Stopwatch& watch) {
    std::vector<Array1d<float>> arrays;
    arrays.reserve(SmallArrayCount);
    for (const std::vector<float>& values : smallArrays()) {
        arrays.emplace_back(values);
    }

    watch.start("add");
    Model model;
    open(model, path);
    const unsigned int root = model.addNode(Group, "root");
    std::vector<unsigned int> geometries;
    NumberedName partName("part ");
    for (std::uint64_t i = 0; i < shapes; ++i) {
        model.setCurrentNodeId(root);
        geometries.push_back(model.addNode(Shape, partName(i)));
    }
    NumberedName stepName("Step ");
    Step step;
    const std::string dataset = "Temperature";
    for (std::uint64_t i = 0; i < datasets; ++i) {
        if (i % shapes == 0) {
            step.name = stepName(i / shapes);
            if (timed) {
                step.attributes.set("Time", 0.1F * static_cast<float>(i / shapes));
            }
        }
        model.addArrayProperty(dataset, NodeScalar, arrays[i % SmallArrayCount], geometries[i % shapes],
                               step);
    }
    watch.start("close");
    model.close();
}

} // namespace

void saveSmall(std::uint64_t datasets, const std::string& path, Stopwatch& watch) {
    saveDatasets(datasets, SmallShapes, false, path, watch);
}

void saveSmallTimed(std::uint64_t datasets, const std::string& path, Stopwatch& watch) {
    saveDatasets(datasets, SmallShapes, true, path, watch);
}

void saveKeys(std::uint64_t datasets, const std::string& path, Stopwatch& watch) {
    saveDatasets(datasets, 1, false, path, watch);
}

} // namespace Workloads::Library
