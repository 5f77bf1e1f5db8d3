#pragma once

#include "../../common/ConversionSummary.h"
#include "../model/DatasetWriter.h"
#include "../model/FloatNarrowing.h"
#include "../model/ShapeWriter.h"
#include "GmshModel.h"
#include "GmshPart.h"
#include "TagIndex.h"

#include <Qel/Mox2/Model.h>

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace MoxTool {

class Terminal;

/// Carries a Gmsh model into a model: a root group, and a shape for each set of entities that belong to the
/// same physical groups (or for an entity that is in none) and for each type of elements.
class GmshImporter {
public:
    /// @param filePath Of the Gmsh file.
    /// @param model Open and without a node. All arguments must outlive the importer.
    GmshImporter(std::string filePath, const GmshModel& source, Qel::Mox2::Model& model, Terminal& terminal,
                 ConversionSummary& results);

    /// To be called once.
    /// @throws Failure if the file is damaged or has more than a model can hold; what the model throws.
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
    void addGroup(const EntityGroup& group);
    std::map<int, Collected> collect(const EntityGroup& group) const;
    void append(const GmshElements& elements, Collected& target) const;
    std::string uniqueName(const std::string& label, const std::string& typeName, bool hasOneType);
    void addNodes();
    void leaveTheRest();

    std::string path;
    const GmshModel& source;
    Qel::Mox2::Model& model;
    Terminal& terminal;
    ConversionSummary& summary;
    DatasetWriter writer;
    ShapeWriter shapes;
    FloatNarrowing narrowing;
    GmshNodes nodes; // by ascending tag
    std::optional<TagIndex> nodeIndex;
    std::vector<GmshPart> parts;
    std::set<std::string> names;
};

} // namespace MoxTool
