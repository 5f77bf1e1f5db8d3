#include "SaveModel.h"

#include "BoltedCantilever.h"
#include "LatticeMesher.h"
#include "ModelArrays.h"
#include "saveChecked.h"

#include <Qel/Mox2/Model.h>

#include <array>
#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace Cantilever {
namespace {

namespace Mox = Qel::Mox2;

using Ids = Mox::Array1d<unsigned int>;
using Floats = std::vector<float>;

const std::string RootName = "Bolted cantilever";
const Mox::Step NoStep;

Mox::SaverOptions saverOptions() {
    Mox::SaverOptions options;
    options.overwrite = true;
    options.sourceName = "cantilever";
    options.sourceVersion = "1.0";
    return options;
}

Mox::Attributes unit(const char* name) {
    Mox::Attributes attributes;
    attributes.set("Unit", name);
    return attributes;
}

Mox::NodeProperties look(const Floats& colour) {
    Mox::NodeProperties properties;
    properties.set(Mox::DiffuseColor, colour);
    properties.set(Mox::SpecularColor, Floats{0.3F, 0.3F, 0.3F});
    properties.set(Mox::Shininess, 0.4F);
    return properties;
}

/// The group that a part belongs to, and the part's colour.
struct Presentation {
    std::string group;
    Floats colour;
};

const Presentation& presentation(const Part& part) {
    static const Presentation bolt{"Bolts", {0.93F, 0.49F, 0.19F}};
    static const std::map<std::string, Presentation> others{
        {"Beam", {"Steelwork", {0.27F, 0.51F, 0.71F}}}, {"End plate", {"Steelwork", {0.62F, 0.68F, 0.74F}}}};
    const auto found = others.find(part.name);
    return found == others.end() ? bolt : found->second;
}

void addRoot(Mox::Model& model, const Material& material) {
    Mox::Attributes attributes;
    attributes.set("Units", "mm, N, tonne, s");
    attributes.set("Young's modulus", static_cast<float>(material.young));
    attributes.set("Poisson's ratio", static_cast<float>(material.poisson));
    attributes.set("Density", static_cast<float>(material.density));
    model.addNode(Mox::RootGroup, RootName, attributes);
}

unsigned int addBoltsGroup(Mox::Model& model) {
    Mox::Attributes attributes;
    attributes.set("Count", static_cast<int>(BoltedCantilever::BoltAxes.size()));
    attributes.set("Side", static_cast<float>(BoltedCantilever::BoltSide));
    return model.addNode(Mox::Group, "Bolts", attributes);
}

// Finds the group "Bolts" and makes the group "Steelwork" on the way to the shapes.
Ids addPartShapes(Mox::Model& model, const std::vector<Part>& parts) {
    std::vector<std::string> paths;
    for (const Part& part : parts) {
        paths.push_back("/" + RootName + "/" + presentation(part).group + "/" + part.name);
    }
    const Ids ids = model.addAssemblyComponents(paths);
    for (std::size_t i = 0; i < parts.size(); ++i) {
        model.setNodeData(ids[i], look(presentation(parts[i]).colour));
    }
    return ids;
}

// The nodes go to all shapes of `ids` at once, and are written once.
void addNodes(Mox::Model& model, const Mesh& mesh, const Ids& ids) {
    const auto count = static_cast<std::size_t>(mesh.nodes.rows());
    model.addArrayProperty(Mox::Coordinates, toArray(mesh.nodes), ids, NoStep, unit("mm"));
    model.addArrayProperty(Mox::NodeIds, consecutive(1, count), ids, NoStep);
}

// `id` is one shape, or several that have the same elements.
template <typename IdT>
void addElements(Mox::Model& model, const Mesh& mesh, const Part& part, const IdT& id) {
    model.addArrayProperty(Mox::Connectivity2, connectivity(mesh, part), id, NoStep);
    model.addArrayProperty(Mox::Polylength2, nodeCounts(part), id, NoStep);
    model.addArrayProperty(Mox::ElementIds, consecutive(part.firstElement + 1, part.elementCount), id,
                           NoStep);
}

Mox::Step describe(const LoadStep& state, std::size_t number) {
    Mox::Step step;
    step.name = "Load step " + std::to_string(number);
    step.attributes.set("Time", static_cast<float>(state.time));
    step.attributes.set("Load", static_cast<float>(state.load));
    return step;
}

Mox::Step describe(const Mode& mode, std::size_t number) {
    Mox::Step step;
    step.name = "Mode " + std::to_string(number);
    step.attributes.set("Frequency", static_cast<float>(mode.frequency));
    return step;
}

void addStresses(Mox::Model& model, const LoadStep& state, const Mox::Step& step, const Part& part,
                 unsigned int id) {
    Mox::Attributes tensor = unit("MPa");
    tensor.set("Components", "xx yy zz xy yz zx");
    model.addArrayProperty("Stress", Mox::ElementSixA, toArray(state.stresses, part), id, step, tensor);
    model.addArrayProperty("Von Mises stress", Mox::ElementScalar, toArray(state.vonMises, part), id, step,
                           unit("MPa"));
}

void addLoadSteps(Mox::Model& model, const Analysis& analysis, const Ids& ids) {
    std::size_t number = 0;
    for (const LoadStep& state : analysis.steps) {
        const Mox::Step step = describe(state, ++number);
        model.addArrayProperty(Mox::DisplacementVector, toArray(state.displacements), ids, step, unit("mm"));
        model.addArrayProperty("Reaction force", Mox::NodeVector, toArray(state.reactions), ids, step,
                               unit("N"));
        for (std::size_t i = 0; i < ids.size(); ++i) {
            addStresses(model, state, step, analysis.mesh.parts[i], ids[i]);
        }
    }
}

void addModes(Mox::Model& model, const Analysis& analysis, const Ids& ids) {
    Mox::Attributes vibration;
    vibration.set("Category", "Vibration");
    std::size_t number = 0;
    for (const Mode& mode : analysis.modes) {
        model.addArrayProperty("Mode shape", Mox::DisplacementVector, toArray(mode.shape), ids,
                               describe(mode, ++number), vibration);
    }
}

Mesh nutMesh() {
    const GridLines thickness = uniformLines(-10.0, 0.0, 1);
    const GridLines across = uniformLines(-15.0, 15.0, 2);
    LatticeMesher mesher(thickness, across, across);
    mesher.addPart("Nut", {{Eigen::Vector3d(-10.0, -15.0, -15.0), Eigen::Vector3d(0.0, 15.0, 15.0)}});
    return mesher.mesh();
}

// A group that puts the nut in its place, and the nut's shape in it.
unsigned int addNutShape(Mox::Model& model, unsigned int parent, const std::string& name,
                         const std::array<double, 2>& axis) {
    Mox::NodeProperties place;
    place.set(Mox::Translation, Floats{static_cast<float>(BoltedCantilever::WallPosition),
                                       static_cast<float>(axis[0]), static_cast<float>(axis[1])});
    model.setCurrentNodeId(parent);
    const unsigned int group = model.addNode(Mox::Group, name);
    model.setNodeData(group, place);
    const unsigned int shape = model.addNode(Mox::Shape, name);
    model.setNodeData(shape, look({0.35F, 0.35F, 0.38F}));
    return shape;
}

void addNuts(Mox::Model& model, unsigned int parent) {
    Ids ids(BoltedCantilever::BoltAxes.size());
    for (std::size_t i = 0; i < ids.size(); ++i) {
        ids[i] = addNutShape(model, parent, "Nut " + std::to_string(i + 1), BoltedCantilever::BoltAxes[i]);
    }
    const Mesh nut = nutMesh();
    addNodes(model, nut, ids);
    addElements(model, nut, nut.parts.front(), ids);
}

void write(const Analysis& analysis, const std::filesystem::path& path) {
    Mox::Model model;
    model.saveTo(path.string(), saverOptions());
    addRoot(model, analysis.material);
    const unsigned int bolts = addBoltsGroup(model);
    const Ids shapes = addPartShapes(model, analysis.mesh.parts);
    addNodes(model, analysis.mesh, shapes);
    for (std::size_t i = 0; i < shapes.size(); ++i) {
        addElements(model, analysis.mesh, analysis.mesh.parts[i], shapes[i]);
    }
    addLoadSteps(model, analysis, shapes);
    addModes(model, analysis, shapes);
    addNuts(model, bolts);
    model.close();
}

} // namespace

void saveModel(const Analysis& analysis, const std::filesystem::path& path) {
    Examples::saveChecked(path, [&](const std::filesystem::path& beside) { write(analysis, beside); });
}

} // namespace Cantilever
