#include "GoldenModel.h"

#include <Qel/Mox2/Model.h>

#include <vector>

namespace Golden {

using namespace Qel::Mox2;

namespace {

constexpr unsigned NodeCount = 8;

Array2d<float> unitCube() {
    return {NodeCount, 3, {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 0, 0, 1, 1, 0, 1, 1, 1, 1, 0, 1, 1}};
}

void addGroups(Model& model) {
    Attributes attributes;
    attributes.set("author", "moxwriter");
    attributes.set("parts", 2);
    attributes.set("scale", 0.5F);
    model.addNode(RootMarkedGroup, "assembly", attributes);

    NodeProperties placed;
    placed.set(Translation, std::vector<float>{1.0F, 2.0F, 3.0F});
    placed.set(Rotation, std::vector<float>{1.0F, 0.0F, 0.0F, 0.5F});
    model.setNodeData(model.addNode(Group, "moved"), placed);
}

Array1d<unsigned int> addShapes(Model& model) {
    const Array1d<unsigned int> ids =
        model.addAssemblyComponents(std::vector<std::string>{"/assembly/moved/cube", "/assembly/skin"});
    NodeProperties looks;
    looks.set(DiffuseColor, std::vector<float>{1.0F, 0.5F, 0.25F});
    looks.set(AmbientIntensity, 0.5F);
    looks.set(Transparency, 0.75F);
    model.setNodeData(ids[1], looks);
    return ids;
}

void addMesh(Model& model, const Array1d<unsigned int>& ids) {
    model.addArrayProperty(Coordinates, unitCube(), ids, Step());
    model.addArrayProperty(NodeIds, Array1d<unsigned int>{11, 12, 13, 14, 15, 16, 17, 18}, ids, Step());
    model.addArrayProperty(Connectivity2, Array1d<unsigned int>{0, 1, 2, 3, 4, 5, 6, 7}, ids[0], Step());
    model.addArrayProperty(Polylength2, Array1d<unsigned int>{8}, ids[0], Step());
    model.addArrayProperty(Connectivity1, Array1d<unsigned int>{0, 1, 2, 3, 4, 5, 6, 7}, ids[1], Step());
    model.addArrayProperty(Polylength1, Array1d<unsigned int>{4, 4}, ids[1], Step());
}

Step stepOf(const std::string& name, const std::string& key, float value) {
    Step step{name, {}};
    step.attributes.set(key, value);
    return step;
}

void addResults(Model& model, const Array1d<unsigned int>& ids) {
    Array2d<float> field(NodeCount, 3, 0.0F);
    for (unsigned node = 0; node < NodeCount; ++node) {
        field(node, 2) = -0.125F * static_cast<float>(node);
    }
    StepList steps(2);
    steps.set(0, stepOf("Load 1", "Time", 0.0F));
    steps.set(1, stepOf("Load 2", "Time", 0.1F));
    Attributes unit;
    unit.set("Unit", "mm");
    model.addArrayProperty(DisplacementVector, field, ids, steps, unit);

    Attributes mode;
    mode.set("Category", "Vibration");
    model.addArrayProperty("Mode shape", NodeVector, field, ids[0], stepOf("Mode 1", "Frequency", 12.5F),
                           mode);
}

} // namespace

void saveGoldenModel(const std::string& path) {
    Model model;
    model.saveTo(path, {.overwrite = true, .sourceName = "golden", .sourceVersion = "1"});
    addGroups(model);
    const Array1d<unsigned int> ids = addShapes(model);
    addMesh(model, ids);
    addResults(model, ids);
    model.close();
}

} // namespace Golden
