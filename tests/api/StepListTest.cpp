#include "api/Support/OpenModel.h"
#include "api/Support/PublicNames.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <new>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

namespace Api {

namespace {

Step makeStep(const std::string& name, int number) {
    Step step;
    step.name = name;
    step.attributes.set("number", number);
    return step;
}

// A root group (1) with attributes that show what a step holds.
class StepListValue : public OpenModel {
protected:
    MoxReader::Attributes attributesOf(const Step& step) {
        model.addNode(Group, "root", step.attributes);
        return saved().group(1).attributes;
    }
};

const MoxReader::Attributes Number7 = {{"number", 7U}};

} // namespace

static_assert(
    std::is_same_v<decltype(std::declval<StepList&>() = std::declval<const StepList&>()), const StepList&>);

TEST_F(StepListValue, FreshListHoldsStepsWithoutNameAndAttributes) {
    const StepList list(1);
    EXPECT_EQ(list[0].name, "");
    EXPECT_TRUE(attributesOf(list[0]).empty());
}

TEST_F(StepListValue, StepThatWasSetIsReturned) {
    StepList list(2);
    list.set(1, makeStep("Step1", 7));
    EXPECT_EQ(list[0].name, "");
    EXPECT_EQ(list[1].name, "Step1");
    EXPECT_EQ(attributesOf(list[1]), Number7);
}

TEST_F(StepListValue, ChangingTheReturnedCopyLeavesTheList) {
    StepList list(1);
    list.set(0, makeStep("Step1", 7));
    Step copy = list[0];
    copy.name = "other";
    copy.attributes.set("number", 8);
    EXPECT_EQ(list[0].name, "Step1");
    EXPECT_EQ(attributesOf(list[0]), Number7);
}

TEST_F(StepListValue, ChangingTheStepAfterSetLeavesTheList) {
    StepList list(1);
    Step step = makeStep("Step1", 7);
    list.set(0, step);
    step.name = "other";
    step.attributes.set("number", 8);
    EXPECT_EQ(list[0].name, "Step1");
    EXPECT_EQ(attributesOf(list[0]), Number7);
}

TEST_F(StepListValue, SetReplacesNameAndAllAttributes) {
    StepList list(1);
    Step first = makeStep("Step1", 1);
    first.attributes.set("gone", 1);
    list.set(0, first);
    list.set(0, makeStep("Step2", 7));
    EXPECT_EQ(list[0].name, "Step2");
    EXPECT_EQ(attributesOf(list[0]), Number7);
}

TEST_F(StepListValue, CopyIsDeep) {
    StepList original(1);
    original.set(0, makeStep("Step1", 7));
    StepList copy(original);
    copy.set(0, makeStep("other", 8));
    EXPECT_EQ(copy[0].name, "other");
    EXPECT_EQ(original[0].name, "Step1");
    EXPECT_EQ(attributesOf(original[0]), Number7);
}

TEST_F(StepListValue, AssignmentIsDeepAndTakesTheLength) {
    StepList original(2);
    original.set(1, makeStep("Step1", 7));
    StepList list;
    EXPECT_EQ(&(list = original), &list);
    original.set(1, makeStep("other", 8));
    EXPECT_EQ(list[1].name, "Step1");
    EXPECT_EQ(attributesOf(list[1]), Number7);
}

TEST_F(StepListValue, AssignmentToItselfChangesNothing) {
    StepList list(1);
    list.set(0, makeStep("Step1", 7));
    const StepList& same = list;
    list = same;
    EXPECT_EQ(list[0].name, "Step1");
    EXPECT_EQ(attributesOf(list[0]), Number7);
}

TEST_F(StepListValue, CopyOfAStepIsDeep) {
    const Step original = makeStep("Step1", 7);
    Step copy = original;
    EXPECT_EQ(copy.name, "Step1");
    copy.name = "other";
    copy.attributes.set("number", 8);
    EXPECT_EQ(original.name, "Step1");
    EXPECT_EQ(attributesOf(original), Number7);
}

// A size of 32 bits is never above it.
#if SIZE_MAX > 0xFFFFFFFF
TEST(StepListCount, AboveTheLargestIsALengthError) {
    try {
        StepList list(0x555555555555556);
        FAIL() << "nothing was thrown";
    } catch (const std::length_error& caught) {
        EXPECT_STREQ(caught.what(), "vector too long");
    }
}
#endif

TEST(StepListCount, LargestCanNotBeHeldAndIsBadAlloc) {
    constexpr auto largest = static_cast<std::size_t>(std::min<std::uint64_t>(0x555555555555555, SIZE_MAX));
    EXPECT_THROW(StepList{largest}, std::bad_alloc);
}

} // namespace Api
