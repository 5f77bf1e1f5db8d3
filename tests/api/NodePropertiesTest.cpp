#include "api/Support/OpenModel.h"
#include "api/Support/PublicNames.h"

#include <gtest/gtest.h>

#include <array>
#include <type_traits>
#include <utility>
#include <vector>

namespace Api {

namespace {

using Floats = std::vector<float>;
using Vector3 = std::array<float, 3>;

// A root group (1), whose translation shows what properties hold.
class NodePropertiesValue : public OpenModel {
protected:
    NodePropertiesValue() { model.addNode(Group, "root"); }

    Vector3 translationFrom(const NodeProperties& properties) {
        model.setNodeData(1, properties);
        return saved().group(1).translation;
    }
};

} // namespace

static_assert(
    std::is_same_v<decltype(std::declval<NodeProperties&>() = std::declval<const NodeProperties&>()),
                   const NodeProperties&>);

TEST_F(NodePropertiesValue, CopyIsDeep) {
    NodeProperties original;
    original.set(Translation, Floats{1, 2, 3});
    NodeProperties copy(original);
    copy.set(Translation, Floats{4, 5, 6});
    EXPECT_EQ(translationFrom(original), (Vector3{1, 2, 3}));
}

TEST_F(NodePropertiesValue, CopyHoldsAllThatTheOriginalHeld) {
    NodeProperties original;
    original.set(Translation, Floats{1, 2, 3});
    original.set(Scale, Floats{7, 8, 9});
    const NodeProperties copy(original);
    original.set(Translation, Floats{4, 5, 6});
    model.setNodeData(1, copy);
    const SavedModel file = saved();
    EXPECT_EQ(file.group(1).translation, (Vector3{1, 2, 3}));
    EXPECT_EQ(file.group(1).scale, (Vector3{7, 8, 9}));
}

TEST_F(NodePropertiesValue, AssignmentReplacesTheContentByADeepCopy) {
    NodeProperties original;
    original.set(Translation, Floats{1, 2, 3});
    NodeProperties target;
    target.set(Transparency, 0.5F); // Would be refused by a group.
    EXPECT_EQ(&(target = original), &target);
    original.set(Translation, Floats{4, 5, 6});
    EXPECT_EQ(translationFrom(target), (Vector3{1, 2, 3}));
}

TEST_F(NodePropertiesValue, AssignmentToItselfChangesNothing) {
    NodeProperties properties;
    properties.set(Translation, Floats{1, 2, 3});
    const NodeProperties& same = properties;
    properties = same;
    EXPECT_EQ(translationFrom(properties), (Vector3{1, 2, 3}));
}

TEST_F(NodePropertiesValue, ChangesAfterACallDontReachTheModel) {
    NodeProperties properties;
    properties.set(Translation, Floats{1, 2, 3});
    model.setNodeData(1, properties);
    properties.set(Translation, Floats{4, 5, 6});
    EXPECT_EQ(saved().group(1).translation, (Vector3{1, 2, 3}));
}

} // namespace Api
