#pragma once

#include "MoxReader/ChildTable.h"
#include "MoxReader/File.h"
#include "MoxReader/GlobalInformation.h"
#include "MoxReader/LinkTable.h"
#include "MoxReader/Node.h"

#include <span>
#include <vector>

namespace MoxReader {

/// The tree of a file with everything that belongs to it except the numbers, which HeavyData reads.
///
/// Ids run from 1 (the root) without gaps, and a parent's id is lower than those of its children, so a loop
/// over nodes() meets every parent before its children.
class Model {
public:
    /// Checks the tree and resolves the links between datasets; sets nodeId and index of every dataset. A
    /// link that leads nowhere is an error only in resolve().
    /// @throws Error  BadNodeId, BadTreeLink.
    Model(std::vector<Node> nodes, GlobalInformation global);
    Model(const Model&) = delete;
    Model& operator=(const Model&) = delete;
    /// Takes over the nodes of a model; what refers to that one, as a HeavyData does, is of no use any more.
    Model(Model&&) = default;
    /// Likewise.
    Model& operator=(Model&&) = default;

    /// In order of their ids; at least one.
    const std::vector<Node>& nodes() const { return nodes_; }
    /// The first node, of id 1.
    const Node& root() const { return nodes_.front(); }
    /// Who saved the file.
    const GlobalInformation& globalInformation() const { return global_; }

    /// @throws Error  NoSuchNode
    const Node& node(std::uint32_t id) const;
    /// The ids of a node's children in their order, valid as long as the model. @throws Error  NoSuchNode
    std::span<const std::uint32_t> children(std::uint32_t id) const;

    /// The dataset that holds the numbers: the given one, or the end of its chain of links. Takes constant
    /// time.
    /// @param dataset  One of this model's, or a copy of one.
    /// @throws Error   BadLinkTarget, LinkCycle, NoSuchNode.
    const Dataset& resolve(const Dataset& dataset) const;

private:
    std::vector<Node> nodes_;
    GlobalInformation global_;
    ChildTable children_;
    LinkTable links_;
};

/// Reads the tree, the descriptors, the attributes, the materials and the global information of a file.
///
/// @throws Error  MissingStream, UnknownNodeType, UnsupportedRecordVersion, BadPosition,
///                TrailingStreamBytes, and those of the record readers and of Model's constructor.
/// @par Cost
/// One pass over each stream but "Heavy Data", with one decompressed block in memory at a time.
Model readModel(const File& file);

} // namespace MoxReader
