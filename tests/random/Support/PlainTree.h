#pragma once

#include "random/Support/Call.h"
#include "random/Support/Outcome.h"
#include "random/Support/PlainNode.h"

#include <optional>
#include <string>
#include <vector>

namespace RandomUse {

/// The tree of an open model: what each call does to it, put down as plainly as can be. Searches look at every
/// node, and nothing is kept that can be found again.
class PlainTree {
public:
    PlainTree() : nodes_(1) {}

    Outcome addNode(const AddNode& call);
    Outcome setCurrentNodeId(unsigned int id);
    Outcome moveToParentNode();
    Outcome find(const std::string& path, const std::string& separator);
    Outcome setNodeData(const SetNodeData& call);
    Outcome addPaths(const std::vector<std::pair<std::string, AttributePairs>>& paths,
                     const std::string& separator);
    /// @param array Whose key, attributes and link are still to be set.
    Outcome record(const AddArray& call, const std::string& name, const PlainDataset& array);

    const std::vector<PlainNode>& nodes() const { return nodes_; }
    unsigned int current() const { return current_; }

private:
    PlainNode& node(unsigned int id) { return nodes_.at(id - 1); }
    PlainNode& root() { return nodes_.front(); }
    bool exists(unsigned int id) const { return id >= 1 && id <= nodes_.size(); }

    Outcome addRoot(const AddNode& call);
    void addChild(NodeKind kind, const std::string& name, const StoredAttributes& attributes = {});
    unsigned int childNamed(const std::string& name) const;
    unsigned int childNamed(const std::string& name, NodeKind kind) const;
    void enter(NodeKind kind, const std::string& name);
    void moveAlong(const std::vector<std::string>& names, bool isGroup);
    Outcome setProperty(int key, const PropertyValue& value, PlainNode* group, PlainNode* shape);
    void put(PlainDataset entry, const StoredAttributes& attributes, std::optional<PlainDataset>& first);

    std::vector<PlainNode> nodes_;
    unsigned int current_ = 1;
};

} // namespace RandomUse
