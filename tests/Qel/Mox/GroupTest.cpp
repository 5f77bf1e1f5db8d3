#include <Qel/Mox/Group.h>

#include "Support/Thrown.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

namespace {

using Qel::Exception::InvalidArguments;
using QelUtil::AttributeList;
using QelUtil::AttributeValue;
using Support::Thrown;
using Support::throws;
using Floats = std::vector<float>;
using Vector3 = std::array<float, 3>;
using Vector4 = std::array<float, 4>;

Thrown invalidGroupSizeIn(std::string_view function) {
    return {3, "invalid array size", "Qel/Mox/Group", function};
}

class MoxGroup : public testing::Test {
protected:
    QelMox::Group group{"part", AttributeList()};
};

TEST_F(MoxGroup, NamesItsTypeAndVersion) {
    EXPECT_EQ(group.GetName(), "part");
    EXPECT_EQ(group.GetTypeName(), "Group");
    EXPECT_EQ(group.GetVersion(), "0.4");
}

TEST_F(MoxGroup, NewGroupTransformsNothing) {
    EXPECT_EQ(group.GetTranslation(), (Vector3{0, 0, 0}));
    EXPECT_EQ(group.GetRotation(), (Vector4{0, 0, 1, 0}));
    EXPECT_EQ(group.GetScale(), (Vector3{1, 1, 1}));
    EXPECT_EQ(group.GetGroupKind(), 0);
}

TEST_F(MoxGroup, KindIsAsGiven) {
    EXPECT_EQ(QelMox::Group("part", AttributeList(), 1).GetGroupKind(), 1);
}

TEST_F(MoxGroup, AttributesAreCopied) {
    AttributeList attributes = {{"a", AttributeValue(1U)}};
    const QelMox::Group copied("part", attributes);
    attributes["a"] = AttributeValue(2U);
    ASSERT_EQ(copied.GetAttributes().size(), 1U);
    EXPECT_EQ(copied.GetAttributes().at("a").integer, 1U);
}

TEST_F(MoxGroup, SettersStoreTheirValues) {
    group.SetTranslation({1, 2, 3});
    group.SetRotation({0, 1, 0, 90});
    group.SetScale({4, 5, 6});
    EXPECT_EQ(group.GetTranslation(), (Vector3{1, 2, 3}));
    EXPECT_EQ(group.GetRotation(), (Vector4{0, 1, 0, 90}));
    EXPECT_EQ(group.GetScale(), (Vector3{4, 5, 6}));
}

TEST_F(MoxGroup, TranslationOfTwoOrFourValuesThrowsAndChangesNothing) {
    for (const Floats& values : {Floats(), Floats(2, 9.0F), Floats(4, 9.0F)}) {
        EXPECT_TRUE(throws<InvalidArguments>(invalidGroupSizeIn("QelMox::Group::SetTranslation"),
                                             [&] { group.SetTranslation(values); }));
    }
    EXPECT_EQ(group.GetTranslation(), (Vector3{0, 0, 0}));
}

TEST_F(MoxGroup, RotationOfThreeValuesThrowsAndChangesNothing) {
    for (const Floats& values : {Floats(), Floats(3, 9.0F), Floats(5, 9.0F)}) {
        EXPECT_TRUE(throws<InvalidArguments>(invalidGroupSizeIn("QelMox::Group::SetRotation"),
                                             [&] { group.SetRotation(values); }));
    }
    EXPECT_EQ(group.GetRotation(), (Vector4{0, 0, 1, 0}));
}

TEST_F(MoxGroup, ScaleOfTwoOrFourValuesThrowsAndChangesNothing) {
    for (const Floats& values : {Floats(), Floats(2, 9.0F), Floats(4, 9.0F)}) {
        EXPECT_TRUE(throws<InvalidArguments>(invalidGroupSizeIn("QelMox::Group::SetScale"),
                                             [&] { group.SetScale(values); }));
    }
    EXPECT_EQ(group.GetScale(), (Vector3{1, 1, 1}));
}

} // namespace
