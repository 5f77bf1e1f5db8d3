#pragma once

#include "../model/ImportTarget.h"
#include "GmshModel.h"
#include "GmshPart.h"
#include "TagIndex.h"

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace MoxTool {

/// Converts a Gmsh model into a model: a root group, and a shape for each type of elements of each set of
/// entities that belong to the same physical groups (or of each entity that is in none).
class GmshImporter {
public:
    /// @param path The path of the Gmsh file.
    /// @param input, output Must outlive the importer.
    GmshImporter(std::string path, const GmshModel& source, ImportTarget& target)
        : path_(std::move(path)), source_(source), target_(target) {}

    /// To be called once.
    /// @throws Failure if the file is damaged or has more than a model can hold; anything that the model
    ///                 throws.
    void run();

private:
    // Entities of one dimension in the same physical groups.
    struct EntityGroup {
        std::string label;
        std::vector<GmshEntity> entities;
    };

    // The elements of one type in such a group.
    struct Collected {
        std::string typeName;
        ElementTable table;
        std::vector<std::size_t> tags;
    };

    void addRoot();
    std::vector<EntityGroup> groupEntities() const;
    std::string labelOf(const GmshEntity& entity) const;
    bool isChosen(const EntityGroup& group);
    void addGroup(const EntityGroup& group);
    std::map<int, Collected> collect(const EntityGroup& group) const;
    void append(const GmshElements& elements, Collected& collected) const;
    std::string uniqueName(const std::string& label, const std::string& typeName, bool hasOneType);
    void addNodes();
    void listSkipped();

    std::string path_;
    const GmshModel& source_;
    ImportTarget& target_;
    GmshNodes nodes_; // by ascending tag
    std::optional<TagIndex> nodeIndex_;
    std::vector<GmshPart> parts_;
    std::set<std::string> names_;
};

} // namespace MoxTool
