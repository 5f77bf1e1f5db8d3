#pragma once

#include <Qel/Base/Modifier.h>
#include <Qel/Exception/Throw.h>
#include <Qel/Mox2/AttributeMap.h>
#include <Qel/Mox2/Database.h>
#include <Qel/Mox2/PropertyMap.h>

namespace QelMox {
class Group;
class Shape;
} // namespace QelMox

namespace Qel::Mox2::Modifier {

/// Sets properties and attributes of a node; see Model::setNodeData().
class NodeData final : public Base::Modifier<Database> {
public:
    /// The properties and the attributes must live as long as the operation.
    NodeData(unsigned int id, const PropertyMap& properties, const AttributeMap& attributes);

    void update(Database& database) override;

    /// @return its argument.
    /// @throws Exception::InvalidArguments "Invalid property type" if it is null.
    template <typename NodePointer>
    static NodePointer notNull(NodePointer node) {
        if (node == nullptr) {
            QEL_THROW(Exception::InvalidArguments("Invalid property type"));
        }
        return node;
    }

private:
    unsigned int id_;
    const PropertyMap& properties_;
    const AttributeMap& attributes_;
};

} // namespace Qel::Mox2::Modifier
