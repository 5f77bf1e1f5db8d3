#include <Qel/Mox2/Modifier/NodeData.h>

#include "Qel/Mox2/OpenDatabase.h"
#include "Qel/Mox2/RefusedAttribute.h"
#include "Qel/Mox2/StateFailures.h"
#include "Support/Thrown.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

namespace {

using Qel::Exception::InvalidArguments;
using Qel::Exception::OutOfBounds;
using Qel::Exception::TemplateSpecializationNotDefined;
using Qel::Mox2::AttributeMap;
using Qel::Mox2::PropertyMap;
using Qel::Mox2::PropertyType;
using Qel::Mox2::PropertyValue;
using Support::Thrown;
using Support::throws;
using Floats = std::vector<float>;
using Color = std::array<float, 4>;

const Thrown NoSuchNode = {11, "Out of bounds error", "Qel/Mox2/Modifier/NodeData",
                           "Qel::Mox2::Modifier::NodeData::update"};
const Thrown UnknownKey = {3, "Invalid properties", "Qel/Mox2/Modifier/NodeData",
                           "Qel::Mox2::Modifier::NodeData::update"};
const Thrown WrongNode = {3, "Invalid property type", "Qel/Mox2/Modifier/NodeData",
                          "Qel::Mox2::Modifier::NodeData::notNull"};
const Thrown WrongAlternative = {19, "Template specialization not defined", "Qel/Variant/Visitor/ValueGetter",
                                 "Qel::Variant::Visitor::ValueGetter"};

// A map with only this property.
PropertyMap only(int key, const PropertyValue& value) {
    return PropertyMap{{PropertyType(key), value}};
}

// A value of the type that the property takes.
PropertyValue fitting(int key) {
    if (key >= 7) {
        return 0.5F;
    }
    return key == 1 ? Floats{1, 2, 3, 4} : Floats{1, 2, 3};
}

class NodeDataModifier : public Support::OpenDatabase {
protected:
    static constexpr unsigned int RootId = 1;
    static constexpr unsigned int ShapeId = 2;
    static constexpr unsigned int GeometryId = 3;

    NodeDataModifier() { addRootAndShape(); }

    void set(unsigned int id, const PropertyMap& properties, const AttributeMap& attributes = {}) {
        Qel::Mox2::Modifier::NodeData(id, properties, attributes).update(database);
    }

    QelMox::Material& material() { return dataOf<QelMox::Shape>(ShapeId).GetMaterial(); }
};

TEST(NodeDataModifierState, NeedsWriteMode) {
    Support::expectThatItNeedsWriteMode(
        [](Qel::Mox2::Database& database) { Qel::Mox2::Modifier::NodeData(1, {}, {}).update(database); });
}

TEST(NodeDataModifierNotNull, GivesItsArgumentOrThrows) {
    using Qel::Mox2::Modifier::NodeData;
    QelMox::Group group("a", {});
    QelMox::Shape shape("a");
    EXPECT_EQ(NodeData::notNull(&group), &group);
    EXPECT_EQ(NodeData::notNull(&shape), &shape);
    EXPECT_TRUE(
        throws<InvalidArguments>(WrongNode, [] { NodeData::notNull(static_cast<QelMox::Group*>(nullptr)); }));
    EXPECT_TRUE(
        throws<InvalidArguments>(WrongNode, [] { NodeData::notNull(static_cast<QelMox::Shape*>(nullptr)); }));
}

TEST_F(NodeDataModifier, IdIsMadeCurrentAndForAGeometryItsShape) {
    set(RootId, {});
    EXPECT_EQ(tree().GetCurrentId(), RootId);
    set(ShapeId, {});
    EXPECT_EQ(tree().GetCurrentId(), ShapeId);
    set(RootId, {});
    set(GeometryId, {});
    EXPECT_EQ(tree().GetCurrentId(), ShapeId);
}

TEST_F(NodeDataModifier, IdZeroOrBeyondTheNodesIsOutOfBounds) {
    for (const unsigned int id : {0U, 4U, 0xFFFFFFFFU}) {
        EXPECT_TRUE(throws<OutOfBounds>(NoSuchNode, [&] { set(id, {}); }));
    }
    EXPECT_EQ(tree().GetCurrentId(), GeometryId);
}

TEST_F(NodeDataModifier, PropertiesZeroToTwoAreForGroupsAlone) {
    for (const int key : {0, 1, 2}) {
        EXPECT_NO_THROW(set(RootId, only(key, fitting(key)))) << key;
        for (const unsigned int id : {ShapeId, GeometryId}) {
            EXPECT_TRUE(throws<InvalidArguments>(WrongNode, [&] { set(id, only(key, fitting(key))); }))
                << key;
        }
    }
}

TEST_F(NodeDataModifier, PropertiesThreeToNineAreForShapesAlone) {
    for (const int key : {3, 4, 5, 6, 7, 8, 9}) {
        EXPECT_TRUE(throws<InvalidArguments>(WrongNode, [&] { set(RootId, only(key, fitting(key))); }))
            << key;
        EXPECT_NO_THROW(set(ShapeId, only(key, fitting(key)))) << key;
        EXPECT_NO_THROW(set(GeometryId, only(key, fitting(key)))) << key;
    }
}

TEST_F(NodeDataModifier, EachPropertyTakesItsAlternativeAlone) {
    const std::vector<PropertyValue> values = {1, 0.5F, std::string("1"), std::vector<int>{1, 2, 3},
                                               Floats{1, 2, 3, 4}};
    for (int key = 0; key <= 9; ++key) {
        const unsigned int id = key <= 2 ? RootId : ShapeId;
        for (const PropertyValue& value : values) {
            if (value.index() != fitting(key).index()) {
                EXPECT_TRUE(throws<TemplateSpecializationNotDefined>(WrongAlternative, [&] {
                    set(id, only(key, value));
                })) << key;
            }
        }
        EXPECT_NO_THROW(set(id, only(key, fitting(key)))) << key;
    }
}

TEST_F(NodeDataModifier, ShapeSwitchFailsForEveryAlternativeOnAShapeAndOnAnyOtherNode) {
    for (const PropertyValue& value :
         std::vector<PropertyValue>{1, 0.5F, std::string("1"), std::vector<int>{1}, Floats{1}}) {
        EXPECT_TRUE(throws<TemplateSpecializationNotDefined>(WrongAlternative,
                                                             [&] { set(ShapeId, only(10, value)); }));
        EXPECT_TRUE(throws<InvalidArguments>(WrongNode, [&] { set(RootId, only(10, value)); }));
    }
}

TEST_F(NodeDataModifier, KeysOutsideOfTheTableAreRefusedOnEveryNode) {
    for (const int key : {-1, 11, 0x7FFFFFFF}) {
        for (const unsigned int id : {RootId, ShapeId, GeometryId}) {
            EXPECT_TRUE(throws<InvalidArguments>(UnknownKey, [&] { set(id, only(key, 1)); })) << key;
        }
    }
}

TEST_F(NodeDataModifier, PropertiesAreAppliedInAscendingOrderUntilOneFails) {
    PropertyMap properties = only(3, Floats{1, 0, 0});
    properties[PropertyType(6)] = Floats{1, 2};
    properties[PropertyType(7)] = 0.5F;
    EXPECT_TRUE(throws<InvalidArguments>(
        {3, "invalid array size", "Qel/Mox/Material", "QelMox::Material::SetAmbientColor"},
        [&] { set(ShapeId, properties); }));
    EXPECT_EQ(material().GetDiffuse(), (Color{1, 0, 0, 1}));
    EXPECT_EQ(material().GetTransparency(), 0.0F);
}

TEST_F(NodeDataModifier, AmbientIntensityReplacesAllOfTheAmbientColor) {
    PropertyMap properties = only(3, Floats{1, 0, 0});
    properties[PropertyType(6)] = Floats{9, 9, 9};
    properties[PropertyType(8)] = 0.5F;
    set(ShapeId, properties);
    EXPECT_EQ(material().GetAmbient(), (Color{0.5F, 0, 0, 0.5F}));
}

TEST_F(NodeDataModifier, AttributesOfAGroupAreMerged) {
    set(RootId, {}, {{"a", 1}, {"b", 2}});
    set(RootId, {}, {{"b", std::string("x")}, {"c", 3}});
    const QelUtil::AttributeList& attributes = dataOf<QelMox::Group>(RootId).GetAttributes();
    ASSERT_EQ(attributes.size(), 3U);
    EXPECT_EQ(attributes.at("a").integer, 1U);
    EXPECT_EQ(attributes.at("b").text, "x");
    EXPECT_EQ(attributes.at("c").integer, 3U);
}

TEST_F(NodeDataModifier, RefusedAttributesOfAGroupStoreNothing) {
    EXPECT_TRUE(throws<InvalidArguments>(Support::RefusedAttribute, [&] {
        set(RootId, {}, {{"a", 1}, {"b", 7U}});
    }));
    EXPECT_TRUE(dataOf<QelMox::Group>(RootId).GetAttributes().empty());
}

TEST_F(NodeDataModifier, AttributesOfOtherNodesAreNotEvenConverted) {
    EXPECT_NO_THROW(set(ShapeId, {}, {{"a", 7U}}));
    EXPECT_NO_THROW(set(GeometryId, {}, {{"a", 7U}}));
}

TEST_F(NodeDataModifier, GeometryBelowAGroupHasNoShape) {
    tree().SetCurrentId(RootId);
    tree().AddChildNode(std::make_unique<QelMox::Geometry>("lonely"));
    EXPECT_TRUE(throws<InvalidArguments>(WrongNode, [&] { set(4, only(7, 0.5F)); }));
    EXPECT_EQ(tree().GetCurrentId(), RootId);
    EXPECT_TRUE(throws<InvalidArguments>(WrongNode, [&] { set(4, only(0, Floats(3))); }));
}

TEST_F(NodeDataModifier, GeometryAsRootStaysCurrentAndHasNoShape) {
    database.close();
    database.open();
    tree().GetCurrentNode().data = std::make_unique<QelMox::Geometry>("root").release();
    EXPECT_TRUE(throws<InvalidArguments>(WrongNode, [&] { set(RootId, only(7, 0.5F)); }));
    EXPECT_EQ(tree().GetCurrentId(), RootId);
}

TEST_F(NodeDataModifier, RootWithoutDataPassesAndHasNoProperties) {
    database.close();
    database.open();
    EXPECT_NO_THROW(set(RootId, {}, {{"a", 7U}}));
    EXPECT_TRUE(throws<InvalidArguments>(WrongNode, [&] { set(RootId, only(0, Floats(3))); }));
    EXPECT_TRUE(throws<InvalidArguments>(WrongNode, [&] { set(RootId, only(7, 0.5F)); }));
    EXPECT_TRUE(throws<InvalidArguments>(UnknownKey, [&] { set(RootId, only(11, 1)); }));
}

} // namespace
