#include <Qel/Mox2/StepData.h>

#include <gtest/gtest.h>

#include <string>
#include <variant>

namespace {

using Qel::Mox2::AttributeMap;
using Qel::Mox2::StepData;

TEST(StepData, HoldsCopiesOfNameAndAttributes) {
    std::string name = "Step1";
    AttributeMap attributes = {{"time", 1.5F}};
    const StepData step(name, attributes);
    name = "other";
    attributes["time"] = 2.5F;
    EXPECT_EQ(step.name, "Step1");
    EXPECT_EQ(std::get<float>(step.attributes.at("time")), 1.5F);
}

TEST(StepData, DefaultIsEmpty) {
    EXPECT_EQ(StepData().name, "");
    EXPECT_TRUE(StepData().attributes.empty());
}

} // namespace
