#include <Qel/Mox2/Adder/Node.h>

#include <Qel/Exception/Throw.h>
#include <Qel/Mox/Geometry.h>
#include <Qel/Mox/Group.h>
#include <Qel/Mox/Shape.h>
#include <Qel/Mox2/Helper/Attributes.h>

#include <memory>

namespace Qel::Mox2::Adder {

using Helper::Attributes::toAttributeList;

namespace {
constexpr unsigned int RootId = 1;
constexpr unsigned char MarkedGroupKind = 1;
} // namespace

Node::Node(NodeType nodeType, const std::string& nodeName, const AttributeMap& nodeAttributes)
    : type(nodeType), name(nodeName), attributes(nodeAttributes) {}

void Node::update(Database& database) {
    database.assertOpenedForWriting();
    database.assertNotEmpty();
    QelMox::Tree& tree = database.getTree();
    if (tree.GetReqNode(RootId).data == nullptr) {
        addRootNode(tree);
    } else {
        addNonRootNode(tree);
    }
    result = tree.GetCurrentId();
}

void Node::addRootNode(QelMox::Tree& tree) {
    switch (type) {
    case RootMarkedGroup:
        tree.SetRootGroup(name, MarkedGroupKind, toAttributeList(attributes));
        break;
    case RootGroup:
    case Group:
        tree.SetRootGroup(name, toAttributeList(attributes));
        break;
    case Shape:
        tree.SetRootShape(name);
        break;
    default:
        QEL_THROW(Exception::InvalidArguments("Invalid node type for root node"));
    }
}

void Node::addNonRootNode(QelMox::Tree& tree) {
    switch (type) {
    case Group:
        tree.AddChildNode(std::make_unique<QelMox::Group>(name, toAttributeList(attributes)));
        break;
    case Shape:
        tree.AddChildNode(std::make_unique<QelMox::Shape>(name));
        tree.AddChildNode(std::make_unique<QelMox::Geometry>(name));
        break;
    default:
        QEL_THROW(Exception::InvalidArguments("Invalid node type"));
    }
}

} // namespace Qel::Mox2::Adder
