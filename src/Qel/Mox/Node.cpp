#include <Qel/Mox/Node.h>

#include <Qel/Mox/Format.h>

#include <utility>

namespace QelMox {

Node::Node(std::string name) : name_(std::move(name)) {}

Node::~Node() = default;

std::string Node::GetTypeName() const {
    return std::string(Format::NodeType);
}

std::string Node::GetVersion() const {
    return std::string(Format::NodeVersion);
}

bool Node::GetFlag() const {
    return flagA_;
}

} // namespace QelMox
