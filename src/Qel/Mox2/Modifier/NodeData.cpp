#include <Qel/Mox2/Modifier/NodeData.h>

#include <Qel/Mox/Geometry.h>
#include <Qel/Mox/Group.h>
#include <Qel/Mox/Shape.h>
#include <Qel/Mox2/Helper/Attributes.h>
#include <Qel/Variant/Visitor/ValueGetter.h>

#include <array>
#include <cstddef>
#include <utility>
#include <vector>

namespace Qel::Mox2::Modifier {

namespace {

using Floats = std::vector<float>;
using QelMox::Group;
using QelMox::Material;
using Variant::Visitor::getValue;

// A node as a group or a shape; at most one of the two is not null.
struct NodeView {
    Group* group = nullptr;
    QelMox::Shape* shape = nullptr;
};

NodeView viewOf(QelMox::Node* const payload) {
    return {dynamic_cast<Group*>(payload), dynamic_cast<QelMox::Shape*>(payload)};
}

using Setter = void (*)(const NodeView&, const PropertyValue&);

template <void (Group::*set)(const Floats&)>
void setOnGroup(const NodeView& view, const PropertyValue& value) {
    Group* const group = NodeData::notNull(view.group);
    (group->*set)(getValue<Floats>(value));
}

template <typename T, auto set>
void setOnMaterial(const NodeView& view, const PropertyValue& value) {
    Material& material = NodeData::notNull(view.shape)->GetMaterial();
    (material.*set)(getValue<T>(value));
}

// No property value is a `bool`, so reading one always fails: the switch can't be set.
void setShapeSwitch(const NodeView& view, const PropertyValue& value) {
    NodeData::notNull(view.shape);
    getValue<bool>(value);
}

// Indexed by PropertyType.
constexpr std::array<Setter, 11> Setters = {
    setOnGroup<&Group::SetTranslation>,
    setOnGroup<&Group::SetRotation>,
    setOnGroup<&Group::SetScale>,
    setOnMaterial<Floats, &Material::SetDiffuseColor>,
    setOnMaterial<Floats, &Material::SetSpecularColor>,
    setOnMaterial<Floats, &Material::SetEmissiveColor>,
    setOnMaterial<Floats, &Material::SetAmbientColor>,
    setOnMaterial<float, &Material::SetTransparency>,
    setOnMaterial<float, &Material::SetAmbientIntensity>,
    setOnMaterial<float, &Material::SetShininess>,
    setShapeSwitch,
};

} // namespace

NodeData::NodeData(unsigned int id, const PropertyMap& properties, const AttributeMap& attributes)
    : id_(id), properties_(properties), attributes_(attributes) {}

void NodeData::update(Database& database) {
    database.assertOpenedForWriting();
    database.assertNotEmpty();
    QelMox::Tree& tree = database.tree();
    if (id_ == 0 || id_ > tree.GetNodes().size()) {
        QEL_THROW(Exception::OutOfBounds());
    }
    tree.SetCurrentId(id_);

    NodeView view = viewOf(tree.GetCurrentNode().data);
    const unsigned int parent = tree.GetCurrentNode().parent;
    const bool isGeometry = dynamic_cast<QelMox::Geometry*>(tree.GetCurrentNode().data) != nullptr;
    if (isGeometry && parent != 0) {
        tree.PutCurrentId(parent);
        view.shape = viewOf(tree.GetCurrentNode().data).shape;
    }
    for (const auto& [key, value] : properties_) {
        const auto number = static_cast<std::size_t>(key);
        if (number >= Setters.size()) {
            QEL_THROW(Exception::InvalidArguments("Invalid properties"));
        }
        Setters[number](view, value);
    }
    if (!attributes_.empty() && view.group != nullptr) {
        for (const auto& [key, value] : Helper::Attributes::toAttributeList(attributes_)) {
            view.group->GetAttributes().insert_or_assign(key, value);
        }
    }
}

} // namespace Qel::Mox2::Modifier
