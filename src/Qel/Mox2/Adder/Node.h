#pragma once

#include <Qel/Base/Modifier.h>
#include <Qel/Mox2/AttributeMap.h>
#include <Qel/Mox2/Database.h>
#include <Qel/Mox2/NodeType.h>
#include <Qel/Util/AttributeList.h>

#include <string>
#include <string_view>

namespace Qel::Mox2::Adder {

/// Adds the first node, or one below the current node; see Model::addNode().
class Node final : public Base::Modifier<Database> {
public:
    // Kept though nothing calls it; see docs/oddities.md.
    Node() = default;
    /// The name and the attributes must live as long as the operation.
    Node(NodeType type, const std::string& name, const AttributeMap& attributes);

    void update(Database& database) override;

    /// The node that is current after update().
    unsigned int result() const { return result_; }

private:
    void addRootNode(QelMox::Tree& tree);
    void addNonRootNode(QelMox::Tree& tree);
    std::string name() const { return std::string(name_); }
    QelUtil::AttributeList attributes() const;

    NodeType type_ = RootGroup;
    std::string_view name_;
    const AttributeMap* attributes_ = nullptr; // Null means none.
    unsigned int result_ = 0;
};

} // namespace Qel::Mox2::Adder
