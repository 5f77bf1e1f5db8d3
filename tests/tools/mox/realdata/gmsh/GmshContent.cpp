#include "GmshContent.h"

#include "../cellKinds.h"

#include <gmsh.h>

#include <algorithm>
#include <filesystem>
#include <limits>
#include <numeric>

namespace {

using Tags = std::vector<std::size_t>;

const std::map<int, int> VtkCells = {
    {15, 1},  {1, 3},  {8, 21},  {2, 5},  {9, 22},  {3, 9},  {16, 23}, {10, 28}, {4, 10},
    {11, 24}, {7, 14}, {19, 27}, {6, 13}, {18, 26}, {5, 12}, {17, 25}, {12, 29},
};

// The suffixes of the names of a view's values, and the places of the values.
const std::map<int, std::vector<std::pair<std::string, std::size_t>>> ComponentEnds = {
    {1, {{"", 0}}},
    {3, {{"_x", 0}, {"_y", 1}, {"_z", 2}}},
    {9, {{"_xx", 0}, {"_xy", 1}, {"_yy", 4}, {"_yz", 5}, {"_zx", 6}, {"_zz", 8}}},
};

class GmshReading {
public:
    GmshReading() {
        gmsh::initialize(0, nullptr, false);
        gmsh::option::setNumber("General.Terminal", 0);
    }
    GmshReading(const GmshReading&) = delete;
    GmshReading& operator=(const GmshReading&) = delete;
    ~GmshReading() { gmsh::finalize(); }

    ModelContent read(const std::string& path) {
        gmsh::merge(path);
        content_.ordering = NodeOrdering::Gmsh;
        content_.title = std::filesystem::path(path).stem().string();
        readNodes();
        readBlocks();
        readSteps();
        return content_;
    }

private:
    struct Group {
        std::string name;
        std::vector<int> entities;
    };

    // By ascending tag.
    void readNodes() {
        Tags tags;
        Numbers coordinates;
        Numbers parameters;
        gmsh::model::mesh::getNodes(tags, coordinates, parameters);
        for (std::size_t node = 0; node < tags.size(); ++node) {
            places_[tags[node]] = node;
        }
        for (auto& [tag, place] : places_) {
            content_.nodeIds.push_back(static_cast<std::int64_t>(tag));
            content_.points.insert(content_.points.end(), coordinates.begin() + 3 * static_cast<int>(place),
                                   coordinates.begin() + 3 * static_cast<int>(place) + 3);
            place = content_.nodeIds.size() - 1;
        }
        content_.zones = {places_.size()};
    }

    // Entities of one dimension that are in the same physical groups belong together.
    void readBlocks() {
        gmsh::vectorpair entities;
        gmsh::model::getEntities(entities);
        std::vector<std::pair<int, Group>> groups;
        std::map<std::pair<int, std::vector<int>>, std::size_t> known;
        for (const auto& [dimension, tag] : entities) {
            std::vector<int> physical;
            gmsh::model::getPhysicalGroupsForEntity(dimension, tag, physical);
            std::sort(physical.begin(), physical.end());
            const bool isNew =
                physical.empty() || known.emplace(std::pair(dimension, physical), groups.size()).second;
            if (isNew) {
                groups.push_back({dimension, {nameOf(dimension, tag, physical), {}}});
            }
            auto& group = isNew ? groups.back() : groups[known.at({dimension, physical})];
            group.second.entities.push_back(tag);
        }
        for (const auto& [dimension, group] : groups) {
            addGroup(dimension, group);
        }
    }

    static std::string nameOf(int dimension, int tag, const std::vector<int>& physical) {
        const Names kinds = {"Point", "Curve", "Surface", "Volume"};
        const auto& kind = kinds.at(static_cast<std::size_t>(dimension));
        std::string name;
        for (const auto group : physical) {
            std::string groupName;
            gmsh::model::getPhysicalName(dimension, group, groupName);
            name += (name.empty() ? "" : " + ") +
                    (groupName.empty() ? "Physical " + kind + " " + std::to_string(group) : groupName);
        }
        return name.empty() ? kind + " " + std::to_string(tag) : name;
    }

    // A block for each type of elements, in the order of the library's numbers for them.
    void addGroup(int dimension, const Group& group) {
        std::map<int, BlockContent> blocks;
        for (const auto entity : group.entities) {
            std::vector<int> types;
            std::vector<Tags> elements;
            std::vector<Tags> nodes;
            gmsh::model::mesh::getElements(types, elements, nodes, dimension, entity);
            for (std::size_t i = 0; i < types.size(); ++i) {
                addElements(elements[i], nodes[i], blocks[types[i]]);
            }
        }
        for (auto& [type, block] : blocks) {
            block.id = static_cast<std::int64_t>(content_.blocks.size()) + 1;
            block.name = blocks.size() == 1 ? group.name : group.name + " (" + typeName(type) + ")";
            block.vtkCell = VtkCells.at(type);
            block.type = cellKind(block.vtkCell).exodusType;
            content_.blocks.push_back(block);
        }
    }

    void addElements(const Tags& elements, const Tags& nodes, BlockContent& block) const {
        block.elementIds.insert(block.elementIds.end(), elements.begin(), elements.end());
        block.lengths.insert(block.lengths.end(), elements.size(),
                             static_cast<std::int64_t>(nodes.size() / elements.size()));
        for (const auto node : nodes) {
            block.nodes.push_back(static_cast<std::int64_t>(places_.at(node)));
        }
    }

    static std::string typeName(int type) {
        std::string name;
        int number = 0;
        Numbers coordinates;
        gmsh::model::mesh::getElementProperties(type, name, number, number, number, coordinates, number);
        return name;
    }

    // A step is a number and a time.
    void readSteps() {
        std::map<std::pair<int, double>, std::vector<int>> views;
        std::vector<int> tags;
        gmsh::view::getTags(tags);
        for (const auto tag : tags) {
            for (int step = 0; step < stepsOf(tag); ++step) {
                const auto data = readStep(tag, step);
                if (!data.tags.empty()) {
                    views[{step, data.time}].push_back(tag);
                }
            }
        }
        for (const auto& [step, viewsOfStep] : views) {
            content_.steps.push_back({"Step " + std::to_string(content_.steps.size() + 1), step.second});
            for (const auto view : viewsOfStep) {
                addView(view, step.first);
            }
        }
    }

    struct ViewStep {
        std::string kind;
        Tags tags;
        std::vector<Numbers> values;
        double time = 0;
        int components = 0;
    };

    static ViewStep readStep(int view, int step) {
        ViewStep data;
        gmsh::view::getModelData(view, step, data.kind, data.tags, data.values, data.time, data.components);
        return data;
    }

    static std::string option(int view, const std::string& name) {
        return "View[" + std::to_string(gmsh::view::getIndex(view)) + "]." + name;
    }

    static int stepsOf(int view) {
        double steps = 0;
        gmsh::option::getNumber(option(view, "NbTimeStep"), steps);
        return static_cast<int>(steps);
    }

    void addView(int view, int step) {
        std::string name;
        gmsh::option::getString(option(view, "Name"), name);
        const auto data = readStep(view, step);
        for (const auto& [end, place] : ComponentEnds.at(data.components)) {
            std::map<std::size_t, double> valueOf;
            for (std::size_t i = 0; i < data.tags.size(); ++i) {
                valueOf[data.tags[i]] = data.values[i].at(place);
            }
            auto& variable = variableOf(data.kind == "NodeData", name + end);
            if (variable.isNodal) {
                addValues(variable, 0, content_.nodeIds, valueOf);
            }
            for (std::size_t block = 0; !variable.isNodal && block < content_.blocks.size(); ++block) {
                addValues(variable, block, content_.blocks[block].elementIds, valueOf);
            }
        }
    }

    VariableContent& variableOf(bool isNodal, const std::string& name) {
        for (auto& variable : content_.variables) {
            if (variable.isNodal == isNodal && variable.name == name) {
                return variable;
            }
        }
        content_.variables.push_back({isNodal, name, false, {}});
        return content_.variables.back();
    }

    // NaN for what has no value, unless all have none.
    void addValues(VariableContent& variable, std::size_t target, const std::vector<std::int64_t>& ids,
                   const std::map<std::size_t, double>& valueOf) const {
        Numbers values(ids.size(), std::numeric_limits<double>::quiet_NaN());
        bool hasAny = false;
        for (std::size_t i = 0; i < ids.size(); ++i) {
            const auto found = valueOf.find(static_cast<std::size_t>(ids[i]));
            if (found == valueOf.end()) {
                continue;
            }
            values[i] = found->second;
            hasAny = true;
        }
        if (hasAny) {
            variable.values[{content_.steps.size() - 1, target}] = values;
        }
    }

    std::map<std::size_t, std::size_t> places_; // of nodes by their tags
    ModelContent content_;
};

} // namespace

ModelContent readGmsh(const std::string& path) {
    return GmshReading().read(path);
}
