#include "common/StepChoice.h"

#include "SteppedModel.h"
#include "Support/TemporaryFolder.h"
#include "common/Failure.h"
#include "common/OpenModel.h"
#include "common/stepText.h"

#include <gtest/gtest.h>

using MoxTool::ModelSteps;
using MoxTool::OpenModel;
using MoxTool::StepChoice;
using Places = std::vector<std::size_t>;

namespace {

class StepChoiceOfAModel : public testing::Test {
protected:
    static std::string saved(const std::string& path) {
        saveSteppedModel(path);
        return path;
    }
    Places chosen(const std::string& text) const { return StepChoice{text}.resolve(steps, "m.mox"); }
    std::string refusal(const std::string& text) const {
        try {
            chosen(text);
        } catch (const MoxTool::Failure& failure) {
            return failure.what();
        }
        return "";
    }

    Support::TemporaryFolder folder;
    OpenModel opened{saved(folder.path("stepped.mox"))};
    ModelSteps steps{opened.model()};
};

} // namespace

TEST_F(StepChoiceOfAModel, StepsAreInTheOrderOfWritingThoughTheFirstGeometryLacksSome) {
    std::vector<std::string> names;
    for (const auto& step : steps.all()) {
        names.push_back(step.name);
    }
    EXPECT_EQ(names, (std::vector<std::string>{"Step 1", "Step 2", "Step 3", "Step 4", "Step 5", "Mode 1",
                                               "Mode 2"}));
}

TEST_F(StepChoiceOfAModel, TakesANumberANameATimeOrAnEnd) {
    EXPECT_EQ(chosen("3"), Places{2});
    EXPECT_EQ(chosen("Mode 2"), Places{6});
    EXPECT_EQ(chosen("@0.25"), Places{1});
    EXPECT_EQ(chosen("@12.5"), Places{5});
    EXPECT_EQ(chosen("first"), Places{0});
    EXPECT_EQ(chosen("last"), Places{6});
}

TEST_F(StepChoiceOfAModel, TakesARangeOfAnyTwoOfThese) {
    EXPECT_EQ(chosen("3:5"), (Places{2, 3, 4}));
    EXPECT_EQ(chosen("first:2"), (Places{0, 1}));
    EXPECT_EQ(chosen("Mode 1:last"), (Places{5, 6}));
    EXPECT_EQ(chosen("@0.5:@1"), (Places{2, 3, 4}));
    EXPECT_EQ(chosen("4:4"), Places{3});
}

TEST_F(StepChoiceOfAModel, TakesATimeThatIsRoundedToSixDigits) {
    EXPECT_EQ(chosen("@0.2500001"), Places{1});
    EXPECT_EQ(refusal("@0.2501").rfind("m.mox: has no step \"@0.2501\"; ", 0), 0U);
}

TEST_F(StepChoiceOfAModel, RefusesWhatIsNotThereAndListsWhatIs) {
    constexpr const char* List =
        "its steps are: 1 @0, 2 @0.25, 3 @0.5, 4 @0.75, 5 @1, 6 \"Mode 1\" @12.5, 7 \"Mode 2\" @20";
    for (const std::string text :
         {"0", "8", "-1", "7:3", "3:", ":", "@", "@x", "2:9", "Step", "99999999999999999999"}) {
        EXPECT_EQ(refusal(text), "m.mox: has no step \"" + text + "\"; " + List);
    }
}

TEST(StepChoice, NameTakesPrecedenceOverANumberAndMayHaveColons) {
    Support::TemporaryFolder folder;
    const auto path = folder.path("named.mox");
    {
        Qel::Mox2::Model model;
        model.saveTo(path, {true, "", "", ""});
        model.addNode(Qel::Mox2::Group, "G");
        const auto shape = model.addNode(Qel::Mox2::Shape, "S");
        for (const char* name : {"2", "1", "a:b", "last"}) {
            model.addArrayProperty("T", Qel::Mox2::NodeScalar, Qel::Mox2::Array1d<float>{1}, shape,
                                   Qel::Mox2::Step{name, {}});
        }
        model.close();
    }
    const OpenModel opened(path);
    const ModelSteps steps(opened.model());
    const auto chosen = [&](const std::string& text) { return StepChoice{text}.resolve(steps, path); };
    EXPECT_EQ(chosen("2"), Places{0});
    EXPECT_EQ(chosen("3"), Places{2});
    EXPECT_EQ(chosen("a:b"), Places{2});
    EXPECT_EQ(chosen("first:a:b"), (Places{0, 1, 2}));
    EXPECT_EQ(chosen("last"), Places{3});
}

TEST(StepChoice, TakesTheNearestOfTimesThatLieClose) {
    Support::TemporaryFolder folder;
    const auto path = folder.path("close.mox");
    {
        Qel::Mox2::Model model;
        model.saveTo(path, {true, "", "", ""});
        model.addNode(Qel::Mox2::Group, "G");
        const auto shape = model.addNode(Qel::Mox2::Shape, "S");
        for (const char* time : {"1", "1.0000001", "1.0000002"}) {
            Qel::Mox2::Step step{time, {}};
            step.attributes.set("Time (exact)", time);
            model.addArrayProperty("T", Qel::Mox2::NodeScalar, Qel::Mox2::Array1d<float>{1}, shape, step);
        }
        model.close();
    }
    const OpenModel opened(path);
    EXPECT_EQ(StepChoice{"@1.0000001"}.resolve(ModelSteps(opened.model()), path), Places{1});
}

TEST(StepChoice, SaysThatAModelHasNoSteps) {
    Support::TemporaryFolder folder;
    const auto path = folder.path("none.mox");
    {
        Qel::Mox2::Model model;
        model.saveTo(path, {true, "", "", ""});
        model.addNode(Qel::Mox2::Group, "G");
        model.close();
    }
    const OpenModel opened(path);
    try {
        StepChoice{"first"}.resolve(ModelSteps(opened.model()), "none.mox");
        FAIL() << "no failure";
    } catch (const MoxTool::Failure& failure) {
        EXPECT_STREQ(failure.what(), "none.mox: has no step \"first\"; the model has no steps");
    }
}

TEST(StepText, ShowsRangesAndShortensManyOfThem) {
    EXPECT_EQ(MoxTool::stepRangesText({0, 1, 2, 3, 4}), "1 to 5");
    EXPECT_EQ(MoxTool::stepRangesText({0, 2, 3, 8}), "1, 3 to 4, 9");
    EXPECT_EQ(MoxTool::stepRangesText({0, 2, 4, 6, 8, 10}), "1 to 11 (6 of them)");
}
