#pragma once

#include "../common/ConversionSummary.h"
#include "../common/WorkLimit.h"
#include "ModelChoice.h"
#include "ModelMesh.h"

#include <MoxReader/HeavyData.h>

#include <array>
#include <map>
#include <set>
#include <tuple>
#include <utility>

namespace MoxTool {

/// Collects the wanted geometries of a model into one mesh.
///
/// Geometries share nodes if they share their coordinates and all results on nodes and are at the same place
/// in the assembly; otherwise each gets its own copy of the nodes. Elements keep their order, except that a
/// geometry with elements of several lengths is split by length. The transforms of groups are applied.
class MeshCollector {
public:
    /// @param path  The model's file, as the user named it. All others must outlive the collector.
    /// @param limit Counts the numbers of the mesh.
    MeshCollector(std::string path, const MoxReader::Model& model, const ModelChoice& choice,
                  MoxReader::HeavyData& heavy, ConversionSummary& summary, WorkLimit& limit);

    /// To be called once.
    /// @throws Failure beyond the limit, if elements refer to nodes that do not exist and the like; MoxReader::Error.
    ModelMesh collect();

private:
    using NodesKey = std::tuple<const MoxReader::Dataset*, std::array<double, 16>,
                                std::set<std::pair<std::string, const MoxReader::Dataset*>>>;

    void addPart(const MoxReader::Node& geometry);
    std::size_t nodesOf(const MoxReader::Node& geometry, const MoxReader::Dataset& coordinates);
    void addPoints(const MeshNodes& nodes);
    void addElements(std::size_t partIndex);
    void checkElements(const MeshPart& part, const std::vector<std::uint32_t>& nodes,
                       const std::vector<std::uint32_t>& lengths) const;
    void splitElements(std::size_t partIndex, const std::vector<std::uint32_t>& nodes,
                       const std::vector<std::uint32_t>& lengths);
    void nameBlocks(const MeshPart& part);
    void numberBlocks();
    [[noreturn]] void fail(const MoxReader::Node& geometry, const std::string& reason) const;

    std::string path_;
    const MoxReader::Model& model_;
    const ModelChoice& choice_;
    MoxReader::HeavyData& heavy_;
    ConversionSummary& summary_;
    WorkLimit& limit_;
    std::vector<Eigen::Affine3d> transforms_;
    std::map<NodesKey, std::size_t> knownNodes_;
    ModelMesh mesh_;
    std::size_t nodeCount_ = 0; ///< Of all groups, whose points are read at the end.
    std::size_t elementCount_ = 0;
};

} // namespace MoxTool
