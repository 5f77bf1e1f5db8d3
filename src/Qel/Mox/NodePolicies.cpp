#include <Qel/Mox/NodePolicies.h>

#include <Qel/Mox/Node.h>

namespace QelMox {

// Kept though nothing calls it; see docs/oddities.md.
bool NodesWithSameName::operator()(const Node* const left, const Node* const right) const {
    return left->GetName() == right->GetName() && left->GetTypeName() == right->GetTypeName() &&
           left->GetVersion() == right->GetVersion();
}

// Kept though nothing calls it; see docs/oddities.md.
bool VirtualNodesWithSameName::operator()(const Node* const left, const Node* const right) const {
    return left->GetName() == right->GetName();
}

} // namespace QelMox
