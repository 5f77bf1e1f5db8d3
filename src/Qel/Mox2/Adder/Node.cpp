#include <Qel/Mox2/Adder/Node.h>

#include <Qel/Exception/Throw.h>
#include <Qel/Mox/Geometry.h>
#include <Qel/Mox/Group.h>
#include <Qel/Mox/Shape.h>
#include <Qel/Mox2/Helper/Attributes.h>

#include <memory>

namespace Qel::Mox2::Adder {

namespace {
constexpr unsigned char MarkedGroupKind = 1;
} // namespace

Node::Node(NodeType type, const std::string& name, const AttributeMap& attributes)
    : type_(type), name_(name), attributes_(&attributes) {}

void Node::update(Database& database) {
    database.assertOpenedForWriting();
    database.assertNotEmpty();
    QelMox::Tree& tree = database.tree();
    if (tree.GetReqNode(QelMox::Tree::RootId).data == nullptr) {
        addRootNode(tree);
    } else {
        addNonRootNode(tree);
    }
    result_ = tree.GetCurrentId();
}

void Node::addRootNode(QelMox::Tree& tree) {
    switch (type_) {
    case RootMarkedGroup:
        tree.SetRootGroup(name(), MarkedGroupKind, attributes());
        break;
    case RootGroup:
    case Group:
        tree.SetRootGroup(name(), attributes());
        break;
    case Shape:
        tree.SetRootShape(name());
        break;
    default:
        QEL_THROW(Exception::InvalidArguments("Invalid node type for root node"));
    }
}

void Node::addNonRootNode(QelMox::Tree& tree) {
    switch (type_) {
    case Group:
        tree.AddChildNode(std::make_unique<QelMox::Group>(name(), attributes()));
        break;
    case Shape:
        tree.AddChildNode(std::make_unique<QelMox::Shape>(name()));
        tree.AddChildNode(std::make_unique<QelMox::Geometry>(name()));
        break;
    default:
        QEL_THROW(Exception::InvalidArguments("Invalid node type"));
    }
}

QelUtil::AttributeList Node::attributes() const {
    return attributes_ != nullptr ? Helper::Attributes::toAttributeList(*attributes_)
                                  : QelUtil::AttributeList();
}

} // namespace Qel::Mox2::Adder
