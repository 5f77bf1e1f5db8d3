#include "GmshLibrary.h"

#include "../../../common/Failure.h"
#include "../../../common/visibleText.h"

#include <boost/config.hpp>
#include <fmt/core.h>
#include <gmsh.h>

#include <algorithm>
#include <exception>
#include <map>
#include <utility>

namespace MoxTool {

namespace {

struct ElementProperties {
    std::string name;
    int nodes = 0;
};

ElementProperties propertiesOf(int type) {
    ElementProperties properties;
    int dimension = 0;
    int order = 0;
    int cornerNodes = 0;
    std::vector<double> places;
    gmsh::model::mesh::getElementProperties(type, properties.name, dimension, order, properties.nodes, places,
                                            cornerNodes);
    return properties;
}

int nodesOfType(int type) {
    static std::map<int, int> known;
    if (const auto found = known.find(type); found != known.end()) {
        return found->second;
    }
    try {
        return known[type] = propertiesOf(type).nodes;
    } catch (const std::string&) {
        return 0;
    }
}

Failure failureOf(const std::string& path, std::string reason) {
    std::replace(reason.begin(), reason.end(), '\n', ' ');
    return {path, fmt::format("damaged, or not as Gmsh wants it ({})", visibleText(reason))};
}

std::string optionName(const GmshView& view, const char* option) {
    return fmt::format("View[{}].{}", gmsh::view::getIndex(view.tag), option);
}

} // namespace

GmshLibrary::LibraryState::LibraryState() {
    gmsh::initialize(0, nullptr, false);
    gmsh::option::setNumber("General.Terminal", 0);
}

GmshLibrary::LibraryState::~LibraryState() {
    gmsh::finalize();
}

GmshLibrary::GmshLibrary(const std::string& path) : path_(path), mesh_(path, nodesOfType) {
    mesh_.run();
    call([&] { gmsh::merge(path_); });
}

// The library throws its errors as strings.
template <typename Function>
void GmshLibrary::call(Function function) const {
    try {
        function();
    } catch (const std::string& error) {
        throw failureOf(path_, error);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& error) {
        throw failureOf(path_, error.what());
    }
}

GmshNodes GmshLibrary::nodes() const {
    GmshNodes result;
    std::vector<double> parameters;
    call([&] {
        gmsh::model::mesh::getNodes(result.tags, result.coordinates, parameters, -1, -1, false, false);
    });
    return result;
}

std::vector<GmshEntity> GmshLibrary::entities() const {
    std::vector<GmshEntity> result;
    call([&] {
        gmsh::vectorpair found;
        gmsh::model::getEntities(found);
        for (const auto& [dimension, tag] : found) {
            auto& entity = result.emplace_back();
            entity.dimension = dimension;
            entity.tag = tag;
            gmsh::model::getEntityName(dimension, tag, entity.name);
            gmsh::model::getPhysicalGroupsForEntity(dimension, tag, entity.physicalTags);
            std::sort(entity.physicalTags.begin(), entity.physicalTags.end());
        }
    });
    return result;
}

std::string GmshLibrary::physicalName(int dimension, int tag) const {
    std::string name;
    call([&] { gmsh::model::getPhysicalName(dimension, tag, name); });
    return name;
}

std::vector<GmshElements> GmshLibrary::elements(const GmshEntity& entity) const {
    std::vector<int> types;
    std::vector<std::vector<std::size_t>> tags;
    std::vector<std::vector<std::size_t>> nodeTags;
    std::vector<GmshElements> result;
    call([&] {
        gmsh::model::mesh::getElements(types, tags, nodeTags, entity.dimension, entity.tag);
        for (std::size_t i = 0; i < types.size(); ++i) {
            const auto properties = propertiesOf(types[i]);
            result.push_back({types[i], properties.name, static_cast<std::size_t>(properties.nodes),
                              std::move(tags[i]), std::move(nodeTags[i])});
        }
    });
    return result;
}

std::vector<GmshView> GmshLibrary::views() const {
    std::vector<GmshView> result;
    call([&] {
        std::vector<int> tags;
        gmsh::view::getTags(tags);
        for (const auto tag : tags) {
            auto& view = result.emplace_back();
            view.tag = tag;
            double steps = 0;
            gmsh::option::getNumber(optionName(view, "NbTimeStep"), steps);
            gmsh::option::getString(optionName(view, "Name"), view.name);
            view.steps = static_cast<int>(steps);
        }
    });
    return result;
}

std::optional<GmshViewStep> GmshLibrary::viewStep(const GmshView& view, int step) const {
    GmshViewStep result;
    int components = 0;
    call([&] {
        gmsh::view::getHomogeneousModelData(view.tag, step, result.kind, result.tags, result.values,
                                            result.time, components);
    });
    if (result.tags.empty()) {
        return std::nullopt;
    }
    result.components = static_cast<std::size_t>(components);
    return result;
}

} // namespace MoxTool

/// @see MoxTool::OpenGmshModel
extern "C" BOOST_SYMBOL_EXPORT MoxTool::GmshModel* moxOpenGmshModel(const char* path) {
    return new MoxTool::GmshLibrary(path);
}
