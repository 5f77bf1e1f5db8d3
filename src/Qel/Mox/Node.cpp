#include <Qel/Mox/Node.h>

#include <Qel/Mox/Format.h>

#include <utility>

namespace QelMox {

Node::Node(std::string name) : name_(std::move(name)) {}

Node::~Node() = default;

// Kept though nothing calls it; see docs/oddities.md.
std::string Node::GetTypeName() const {
    return std::string(Format::NodeType);
}

// Kept though nothing calls it; see docs/oddities.md.
std::string Node::GetVersion() const {
    return std::string(Format::NodeVersion);
}

// Kept though nothing calls it; see docs/oddities.md.
bool Node::GetFlag() const {
    return false;
}

} // namespace QelMox
