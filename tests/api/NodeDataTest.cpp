#include "api/Support/Failures.h"
#include "api/Support/OpenModel.h"
#include "api/Support/PublicNames.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

namespace Api {

namespace {

using Floats = std::vector<float>;
using Color = std::array<float, 4>;
using Vector3 = std::array<float, 3>;

constexpr unsigned int RootId = 1;
constexpr unsigned int ShapeId = 2;
constexpr unsigned int GeometryId = 3;

Failure noNodeForData() {
    return failure<Qel::Exception::OutOfBounds>(11, "Out of bounds error", "Qel/Mox2/Modifier/NodeData",
                                                "Qel::Mox2::Modifier::NodeData::update");
}

Failure invalidProperties() {
    return failure<Qel::Exception::InvalidArguments>(3, "Invalid properties", "Qel/Mox2/Modifier/NodeData",
                                                     "Qel::Mox2::Modifier::NodeData::update");
}

Failure invalidPropertyType() {
    return failure<Qel::Exception::InvalidArguments>(3, "Invalid property type", "Qel/Mox2/Modifier/NodeData",
                                                     "Qel::Mox2::Modifier::NodeData::notNull");
}

Failure wrongAlternative() {
    return failure<Qel::Exception::TemplateSpecializationNotDefined>(
        19, "Template specialization not defined", "Qel/Variant/Visitor/ValueGetter",
        "Qel::Variant::Visitor::ValueGetter");
}

Failure invalidArraySize(std::string_view file, std::string_view function) {
    return failure<Qel::Exception::InvalidArguments>(3, "invalid array size", file, function);
}

template <typename T>
NodeProperties only(PropertyType key, const T& value) {
    NodeProperties properties;
    properties.set(key, value);
    return properties;
}

// A root group (1), a shape (2) and its geometry (3).
class NodeData : public OpenModel {
protected:
    NodeData() { addRootAndShape(); }

    template <typename T>
    void set(unsigned int id, PropertyType key, const T& value) {
        model.setNodeData(id, only(key, value));
    }

    // The parent that a node added now would get.
    unsigned int currentNode() {
        const unsigned int added = model.addNode(Group, "probe");
        return saved().node(added).parent;
    }
};

using NodeDataWithoutRoot = OpenModel;

} // namespace

// --- The cursor

TEST_F(NodeData, EmptyPropertiesAndAttributesCheckTheIdAndMoveTheCurrentNode) {
    EXPECT_TRUE(fails([&] { model.setNodeData(4, NodeProperties()); }, noNodeForData()));
    model.setNodeData(RootId, NodeProperties());
    EXPECT_EQ(currentNode(), RootId);
}

TEST_F(NodeData, EmptyPropertiesAndAttributesLeaveTheDataOfEveryNode) {
    Attributes attributes;
    attributes.set("unit", "mm");
    model.setNodeData(RootId, only(Translation, Floats{1, 2, 3}), attributes);
    model.setNodeData(ShapeId, only(AmbientIntensity, 0.5F));
    for (const unsigned int id : {RootId, ShapeId, GeometryId}) {
        model.setNodeData(id, NodeProperties());
        model.setNodeData(id, NodeProperties(), Attributes());
    }
    const SavedModel file = saved();
    EXPECT_EQ(file.nodeCount(), 3U);
    EXPECT_EQ(file.group(RootId).translation, (Vector3{1, 2, 3}));
    EXPECT_EQ(file.group(RootId).rotation, (Color{0, 0, 1, 0}));
    EXPECT_EQ(file.group(RootId).scale, (Vector3{1, 1, 1}));
    EXPECT_EQ(file.group(RootId).attributes, (MoxReader::Attributes{{"unit", "mm"}}));
    const MoxReader::Material& material = file.material(ShapeId);
    EXPECT_EQ(material.diffuse, (Color{0.8F, 0.8F, 0.8F, 1}));
    EXPECT_EQ(material.specular, (Color{0, 0, 0, 1}));
    EXPECT_EQ(material.emissive, (Color{0, 0, 0, 0}));
    EXPECT_EQ(material.ambient, (Color{0.4F, 0.4F, 0.4F, 0.5F}));
    EXPECT_EQ(material.transparency, 0.0F);
    EXPECT_EQ(material.shininess, 0.2F);
    EXPECT_TRUE(file.datasets(GeometryId).empty());
}

TEST_F(NodeData, ShapeIsCurrentAfterACallForTheShape) {
    model.setNodeData(ShapeId, NodeProperties());
    EXPECT_EQ(currentNode(), ShapeId);
}

TEST_F(NodeData, ShapeIsCurrentAfterACallForItsGeometry) {
    model.setNodeData(GeometryId, NodeProperties());
    EXPECT_EQ(currentNode(), ShapeId);
}

TEST_F(NodeData, IdZeroOrBeyondTheNodesIsOutOfBoundsAndLeavesTheCurrentNode) {
    model.setCurrentNodeId(ShapeId);
    EXPECT_TRUE(fails([&] { model.setNodeData(0, NodeProperties()); }, noNodeForData()));
    EXPECT_TRUE(fails([&] { model.setNodeData(4, NodeProperties()); }, noNodeForData()));
    EXPECT_TRUE(fails([&] { model.setNodeData(Model::INVALID_ID, NodeProperties()); }, noNodeForData()));
    EXPECT_EQ(currentNode(), ShapeId);
}

TEST_F(NodeData, CurrentNodeStaysMovedAfterAFailure) {
    EXPECT_TRUE(fails([&] { set(GeometryId, Translation, Floats{1, 2, 3}); }, invalidPropertyType()));
    EXPECT_EQ(currentNode(), ShapeId);
}

// --- Groups

TEST_F(NodeData, TransformOfAGroupIsSet) {
    NodeProperties properties;
    properties.set(Translation, Floats{1, 2, 3});
    properties.set(Rotation, Floats{0, 1, 0, 90});
    properties.set(Scale, Floats{2, 3, 4});
    model.setNodeData(RootId, properties);
    const SavedModel file = saved();
    EXPECT_EQ(file.group(RootId).translation, (Vector3{1, 2, 3}));
    EXPECT_EQ(file.group(RootId).rotation, (Color{0, 1, 0, 90}));
    EXPECT_EQ(file.group(RootId).scale, (Vector3{2, 3, 4}));
}

TEST_F(NodeData, TranslationSetTwiceAppliesTheLaterValue) {
    NodeProperties properties;
    properties.set(Translation, Floats{1, 2, 3});
    properties.set(Translation, Floats{4, 5, 6});
    model.setNodeData(RootId, properties);
    EXPECT_EQ(saved().group(RootId).translation, (Vector3{4, 5, 6}));
}

TEST_F(NodeData, PropertySetAgainWithAnotherTypeHoldsTheLaterValue) {
    NodeProperties properties;
    properties.set(Translation, Floats{1, 2, 3});
    properties.set(Translation, "text");
    EXPECT_TRUE(fails([&] { model.setNodeData(RootId, properties); }, wrongAlternative()));
    properties.set(Translation, Floats{4, 5, 6});
    model.setNodeData(RootId, properties);
    EXPECT_EQ(saved().group(RootId).translation, (Vector3{4, 5, 6}));
}

TEST_F(NodeData, GroupPropertyOnAGeometryOrShapeFails) {
    for (const unsigned int id : {ShapeId, GeometryId}) {
        EXPECT_TRUE(fails([&] { set(id, Translation, Floats{1, 2, 3}); }, invalidPropertyType()));
        EXPECT_TRUE(fails([&] { set(id, Rotation, Floats{1, 2, 3, 4}); }, invalidPropertyType()));
        EXPECT_TRUE(fails([&] { set(id, Scale, Floats{1, 2, 3}); }, invalidPropertyType()));
    }
}

TEST_F(NodeData, ArrayOfTheWrongLengthFailsForEachGroupProperty) {
    const auto failureOf = [](std::string_view setter) { return invalidArraySize("Qel/Mox/Group", setter); };
    for (const Floats& values : {Floats(), Floats(2), Floats(4)}) {
        EXPECT_TRUE(
            fails([&] { set(RootId, Translation, values); }, failureOf("QelMox::Group::SetTranslation")));
        EXPECT_TRUE(fails([&] { set(RootId, Scale, values); }, failureOf("QelMox::Group::SetScale")));
    }
    for (const Floats& values : {Floats(), Floats(3), Floats(5)}) {
        EXPECT_TRUE(fails([&] { set(RootId, Rotation, values); }, failureOf("QelMox::Group::SetRotation")));
    }
    const SavedModel file = saved();
    EXPECT_EQ(file.group(RootId).translation, (Vector3{0, 0, 0}));
    EXPECT_EQ(file.group(RootId).rotation, (Color{0, 0, 1, 0}));
    EXPECT_EQ(file.group(RootId).scale, (Vector3{1, 1, 1}));
}

// --- Materials

TEST_F(NodeData, NewShapeHasTheDefaultMaterial) {
    const SavedModel file = saved();
    const MoxReader::Material& material = file.material(ShapeId);
    EXPECT_EQ(material.version, "0.3");
    EXPECT_EQ(material.diffuse, (Color{0.8F, 0.8F, 0.8F, 1.0F}));
    EXPECT_EQ(material.specular, (Color{0, 0, 0, 1}));
    EXPECT_EQ(material.emissive, (Color{0, 0, 0, 0}));
    EXPECT_EQ(material.ambient, (Color{0.8F * 0.2F, 0.8F * 0.2F, 0.8F * 0.2F, 0.2F}));
    EXPECT_EQ(material.transparency, 0.0F);
    EXPECT_EQ(material.shininess, 0.2F);
    EXPECT_EQ(material.flag, 1);
}

TEST_F(NodeData, ShapesIdAndItsGeometrysIdSetTheSameMaterial) {
    set(ShapeId, Transparency, 0.5F);
    set(GeometryId, Shininess, 0.75F);
    const SavedModel file = saved();
    EXPECT_EQ(file.material(ShapeId).transparency, 0.5F);
    EXPECT_EQ(file.material(ShapeId).shininess, 0.75F);
}

TEST_F(NodeData, ColorsTransparencyAndShininessAreStored) {
    NodeProperties properties;
    properties.set(DiffuseColor, Floats{0.1F, 0.2F, 0.3F});
    properties.set(SpecularColor, Floats{0.4F, 0.5F, 0.6F});
    properties.set(EmissiveColor, Floats{0.7F, 0.8F, 0.9F});
    properties.set(AmbientColor, Floats{1, 2, 3});
    properties.set(Transparency, 0.25F);
    properties.set(Shininess, 0.5F);
    model.setNodeData(ShapeId, properties);
    const SavedModel file = saved();
    const MoxReader::Material& material = file.material(ShapeId);
    EXPECT_EQ(material.diffuse, (Color{0.1F, 0.2F, 0.3F, 1}));
    EXPECT_EQ(material.specular, (Color{0.4F, 0.5F, 0.6F, 1}));
    EXPECT_EQ(material.emissive, (Color{0.7F, 0.8F, 0.9F, 0}));
    EXPECT_EQ(material.ambient, (Color{1, 2, 3, 0.2F}));
    EXPECT_EQ(material.transparency, 0.25F);
    EXPECT_EQ(material.shininess, 0.5F);
}

TEST_F(NodeData, DiffuseAndSpecularColorTakeAFourthFloatAndIgnoreIt) {
    set(ShapeId, DiffuseColor, Floats{0.1F, 0.2F, 0.3F, 0.5F});
    set(ShapeId, SpecularColor, Floats{0.4F, 0.5F, 0.6F, 0.5F});
    const SavedModel file = saved();
    EXPECT_EQ(file.material(ShapeId).diffuse, (Color{0.1F, 0.2F, 0.3F, 1}));
    EXPECT_EQ(file.material(ShapeId).specular, (Color{0.4F, 0.5F, 0.6F, 1}));
}

TEST_F(NodeData, ArrayOfTheWrongLengthFailsForEachColor) {
    const auto failureOf = [](std::string_view setter) {
        return invalidArraySize("Qel/Mox/Material", setter);
    };
    for (const Floats& values : {Floats(), Floats(2), Floats(5)}) {
        EXPECT_TRUE(fails([&] { set(ShapeId, DiffuseColor, values); },
                          failureOf("QelMox::Material::SetDiffuseColor")));
        EXPECT_TRUE(fails([&] { set(ShapeId, SpecularColor, values); },
                          failureOf("QelMox::Material::SetSpecularColor")));
    }
    for (const Floats& values : {Floats(), Floats(2), Floats(4)}) {
        EXPECT_TRUE(fails([&] { set(ShapeId, EmissiveColor, values); },
                          failureOf("QelMox::Material::SetEmissiveColor")));
        EXPECT_TRUE(fails([&] { set(ShapeId, AmbientColor, values); },
                          failureOf("QelMox::Material::SetAmbientColor")));
    }
}

TEST_F(NodeData, ShapePropertyOnAGroupFails) {
    EXPECT_TRUE(fails([&] { set(RootId, DiffuseColor, Floats(3)); }, invalidPropertyType()));
    EXPECT_TRUE(fails([&] { set(RootId, SpecularColor, Floats(3)); }, invalidPropertyType()));
    EXPECT_TRUE(fails([&] { set(RootId, EmissiveColor, Floats(3)); }, invalidPropertyType()));
    EXPECT_TRUE(fails([&] { set(RootId, AmbientColor, Floats(3)); }, invalidPropertyType()));
    EXPECT_TRUE(fails([&] { set(RootId, Transparency, 0.5F); }, invalidPropertyType()));
    EXPECT_TRUE(fails([&] { set(RootId, AmbientIntensity, 0.5F); }, invalidPropertyType()));
    EXPECT_TRUE(fails([&] { set(RootId, Shininess, 0.5F); }, invalidPropertyType()));
    EXPECT_TRUE(fails([&] { set(RootId, ShapeSwitch, true); }, invalidPropertyType()));
}

TEST_F(NodeData, AmbientIntensityOnANewShapeIsTheDefaultDiffuseColorTimesIt) {
    set(ShapeId, AmbientIntensity, 0.5F);
    EXPECT_EQ(saved().material(ShapeId).ambient, (Color{0.4F, 0.4F, 0.4F, 0.5F}));
}

TEST_F(NodeData, AmbientIntensitySeesTheDiffuseColorAndOverwritesTheAmbientColorOfTheSameCall) {
    NodeProperties properties;
    properties.set(AmbientIntensity, 0.5F);
    properties.set(AmbientColor, Floats{0.9F, 0.9F, 0.9F});
    properties.set(DiffuseColor, Floats{1, 0, 0});
    model.setNodeData(ShapeId, properties);
    EXPECT_EQ(saved().material(ShapeId).ambient, (Color{0.5F, 0, 0, 0.5F}));
}

TEST_F(NodeData, ShapeAsRootHasAMaterialToo) {
    model.close();
    const std::string second = folder.path("second.mox");
    model.saveTo(second, SaverOptions());
    model.addNode(Shape, "root");
    set(1, Transparency, 0.5F);
    model.close();
    EXPECT_EQ(SavedModel(second).material(1).transparency, 0.5F);
}

// --- Values of the wrong type

TEST_F(NodeData, TransparencySetAsIntegerFailsWithoutConversion) {
    EXPECT_TRUE(fails([&] { set(ShapeId, Transparency, 1); }, wrongAlternative()));
    EXPECT_EQ(saved().material(ShapeId).transparency, 0.0F);
}

TEST_F(NodeData, TranslationSetAsFloatOrIntegersFails) {
    EXPECT_TRUE(fails([&] { set(RootId, Translation, 1.0F); }, wrongAlternative()));
    EXPECT_TRUE(fails([&] { set(RootId, Translation, std::vector<int>{1, 2, 3}); }, wrongAlternative()));
    EXPECT_TRUE(fails([&] { set(RootId, Translation, std::string("1 2 3")); }, wrongAlternative()));
}

// It is kept as an integer.
TEST_F(NodeData, TruthValueSuitsNoProperty) {
    for (const bool value : {true, false}) {
        for (const PropertyType key : {Translation, Rotation, Scale}) {
            EXPECT_TRUE(fails([&] { set(RootId, key, value); }, wrongAlternative())) << key;
        }
        for (const PropertyType key : {DiffuseColor, SpecularColor, EmissiveColor, AmbientColor, Transparency,
                                       AmbientIntensity, Shininess, ShapeSwitch}) {
            EXPECT_TRUE(fails([&] { set(ShapeId, key, value); }, wrongAlternative())) << key;
        }
    }
    const SavedModel file = saved();
    EXPECT_EQ(file.material(ShapeId).transparency, 0.0F);
    EXPECT_EQ(file.material(ShapeId).shininess, 0.2F);
}

TEST_F(NodeData, ShapeSwitchOnAShapeFailsWhateverItsValue) {
    for (const unsigned int id : {ShapeId, GeometryId}) {
        EXPECT_TRUE(fails([&] { set(id, ShapeSwitch, true); }, wrongAlternative()));
        EXPECT_TRUE(fails([&] { set(id, ShapeSwitch, false); }, wrongAlternative()));
        EXPECT_TRUE(fails([&] { set(id, ShapeSwitch, 1); }, wrongAlternative()));
        EXPECT_TRUE(fails([&] { set(id, ShapeSwitch, 1.0F); }, wrongAlternative()));
        EXPECT_TRUE(fails([&] { set(id, ShapeSwitch, std::string("on")); }, wrongAlternative()));
        EXPECT_TRUE(fails([&] { set(id, ShapeSwitch, std::vector<int>{1}); }, wrongAlternative()));
        EXPECT_TRUE(fails([&] { set(id, ShapeSwitch, Floats{1}); }, wrongAlternative()));
    }
}

TEST_F(NodeData, NullViewIsFoundBeforeTheWrongType) {
    EXPECT_TRUE(fails([&] { set(RootId, Transparency, 1); }, invalidPropertyType()));
    EXPECT_TRUE(fails([&] { set(ShapeId, Translation, 1.0F); }, invalidPropertyType()));
}

// --- Keys

TEST_F(NodeData, KeyOutsideTheTableFails) {
    for (const int key : {11, -1, 0x7FFFFFFF}) {
        EXPECT_TRUE(fails([&] { set(RootId, PropertyType(key), Floats(3)); }, invalidProperties())) << key;
    }
}

TEST_F(NodeData, KeyMinusOneIsMetFirstOfAllKeys) {
    NodeProperties properties;
    properties.set(Translation, Floats{1, 2, 3});
    properties.set(PropertyType(-1), 0);
    EXPECT_TRUE(fails([&] { model.setNodeData(RootId, properties); }, invalidProperties()));
    EXPECT_EQ(saved().group(RootId).translation, (Vector3{0, 0, 0}));
}

TEST_F(NodeData, KeyElevenIsMetAfterTheOthersWereApplied) {
    NodeProperties properties;
    properties.set(PropertyType(11), 0);
    properties.set(Translation, Floats{1, 2, 3});
    EXPECT_TRUE(fails([&] { model.setNodeData(RootId, properties); }, invalidProperties()));
    EXPECT_EQ(saved().group(RootId).translation, (Vector3{1, 2, 3}));
}

TEST_F(NodeData, PropertiesOfLowerNumberStayWhenOneFails) {
    NodeProperties properties;
    properties.set(DiffuseColor, Floats{0.1F, 0.2F, 0.3F});
    properties.set(AmbientColor, Floats{1, 2});
    properties.set(Transparency, 0.5F);
    EXPECT_TRUE(fails([&] { model.setNodeData(ShapeId, properties); },
                      invalidArraySize("Qel/Mox/Material", "QelMox::Material::SetAmbientColor")));
    const SavedModel file = saved();
    EXPECT_EQ(file.material(ShapeId).diffuse, (Color{0.1F, 0.2F, 0.3F, 1}));
    EXPECT_EQ(file.material(ShapeId).transparency, 0.0F);
}

// --- Attributes

TEST_F(NodeData, AttributesOnAGroupKeepOlderKeysAndReplaceThoseGivenAgain) {
    Attributes first;
    first.set("kept", 1);
    first.set("replaced", 2);
    model.setCurrentNodeId(RootId);
    const unsigned int id = model.addNode(Group, "group", first);
    Attributes second;
    second.set("replaced", "text");
    second.set("added", 1.5F);
    model.setNodeData(id, NodeProperties(), second);
    const SavedModel file = saved();
    EXPECT_EQ(file.group(id).attributes,
              (MoxReader::Attributes{{"added", 1.5F}, {"kept", 1U}, {"replaced", "text"}}));
}

TEST_F(NodeData, AttributesOnAShapesIdGiveNoErrorAndNoData) {
    Attributes attributes;
    attributes.set("lost", 1);
    attributes.set("not even looked at", 7U);
    model.setNodeData(ShapeId, only(Transparency, 0.5F), attributes);
    model.setNodeData(GeometryId, NodeProperties(), attributes);
    const SavedModel file = saved();
    EXPECT_EQ(file.material(ShapeId).transparency, 0.5F);
    // The empty record of the root group, six empty lists.
    EXPECT_EQ(file.stream("Attributes"), std::vector<std::uint8_t>(24, 0));
}

TEST_F(NodeData, AttributesAreNotAppliedWhenAPropertyFails) {
    Attributes attributes;
    attributes.set("lost", 1);
    EXPECT_TRUE(fails([&] { model.setNodeData(RootId, only(Transparency, 0.5F), attributes); },
                      invalidPropertyType()));
    EXPECT_TRUE(saved().group(RootId).attributes.empty());
}

TEST_F(NodeData, RefusedAttributesComeAfterThePropertiesAndNoneIsStored) {
    Attributes attributes;
    attributes.set("a", 1);
    attributes.set("b", 7U);
    EXPECT_TRUE(fails(
        [&] {
            model.setNodeData(RootId, only(Translation, Floats{1, 2, 3}), attributes);
        },
        attributeRefused()));
    const SavedModel file = saved();
    EXPECT_EQ(file.group(RootId).translation, (Vector3{1, 2, 3}));
    EXPECT_TRUE(file.group(RootId).attributes.empty());
}

// --- Before the first node

TEST_F(NodeDataWithoutRoot, RootPassesRefusesAnyPropertyAndDropsAttributes) {
    EXPECT_NO_THROW(model.setNodeData(1, NodeProperties()));
    for (const PropertyType key :
         {Translation, Rotation, Scale, DiffuseColor, SpecularColor, EmissiveColor, AmbientColor}) {
        EXPECT_TRUE(fails([&] { model.setNodeData(1, only(key, Floats(key == Rotation ? 4 : 3))); },
                          invalidPropertyType()))
            << key;
    }
    for (const PropertyType key : {Transparency, AmbientIntensity, Shininess, ShapeSwitch}) {
        EXPECT_TRUE(fails([&] { model.setNodeData(1, only(key, 0.5F)); }, invalidPropertyType())) << key;
    }
    Attributes attributes;
    attributes.set("lost", 7U);
    EXPECT_NO_THROW(model.setNodeData(1, NodeProperties(), attributes));
    EXPECT_EQ(model.addNode(Group, "root"), 1U);
    EXPECT_TRUE(saved().group(1).attributes.empty());
}

} // namespace Api
