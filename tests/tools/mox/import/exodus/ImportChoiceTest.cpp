#include "../../exodus/SmallExodusFile.h"
#include "../ImportedModel.h"

namespace {

// Two lines between three nodes, with results of three steps on nodes and elements.
class ImportChoice : public ImportedModel {
protected:
    ImportChoice() {
        SmallExodusFile file(input, {1, 3, 2, 2});
        file.coordinates({0, 1, 2});
        file.block(10, "BAR", 1, 2, {1, 2});
        file.block(20, "BAR", 1, 2, {2, 3});
        SmallExodusFile::require(ex_put_name(file.handle(), EX_ELEM_BLOCK, 10, "web"));
        file.variables(EX_NODAL, {"t", "u"});
        file.variables(EX_ELEM_BLOCK, {"p", "q"});
        for (int step = 1; step <= 3; ++step) {
            file.time(step, 0.5 * step);
            for (const int variable : {1, 2}) {
                file.values(step, EX_NODAL, variable, 1, {1.0 * step, 2.0 * variable, 3});
                file.values(step, EX_ELEM_BLOCK, variable, 10, {10.0 * step + variable});
                file.values(step, EX_ELEM_BLOCK, variable, 20, {20.0 * step + variable});
            }
        }
    }

    void importChosen(std::vector<std::string> arguments) {
        arguments.insert(arguments.end(), {"--check", input, output()});
        run = runImport(arguments);
        ASSERT_EQ(run.exitCode, 0) << run.messages;
        saved = std::make_unique<ReadBack>(output());
    }

    void expectNone(std::vector<std::string> arguments, const std::string& reason) {
        arguments.insert(arguments.end(), {input, output()});
        run = runImport(arguments);
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_EQ(run.messages, "mox import: " + input + ": " + reason + "\n");
        EXPECT_EQ(folder.files(), Names{"model.e"});
    }

    std::string input = folder.path("model.e");
};

} // namespace

TEST_F(ImportChoice, BlocksAreChosenByNameOrId) {
    importChosen({"--block", "w*"});
    EXPECT_EQ(namesBelow(root()), Names{"web"});
    EXPECT_EQ(floats(0, "q", "Step 3"), Floats{32});
    EXPECT_FALSE(run.says("not taken"));

    std::filesystem::remove(output());
    importChosen({"--block", "20"});
    EXPECT_EQ(namesBelow(root()), Names{"Block 20"});
    EXPECT_EQ(floats(0, "p", "Step 1"), Floats{21});

    std::filesystem::remove(output());
    importChosen({"--block", "20", "--block", "web"});
    EXPECT_EQ(namesBelow(root()), (Names{"web", "Block 20"}));
}

TEST_F(ImportChoice, VariablesAreChosenByName) {
    importChosen({"--variable", "u", "--variable", "p"});
    EXPECT_EQ(floats(0, "u", "Step 2"), (Floats{2, 4, 3}));
    EXPECT_EQ(floats(1, "p", "Step 2"), Floats{41});
    EXPECT_FALSE(has(0, "t", "Step 2"));
    EXPECT_FALSE(has(0, "q", "Step 2"));
    EXPECT_FALSE(run.says("not taken"));
}

TEST_F(ImportChoice, StepsKeepTheirNumbers) {
    importChosen({"--step", "3:last", "--step", "1"});
    EXPECT_EQ(floats(0, "t", "Step 3"), (Floats{3, 2, 3}));
    EXPECT_TRUE(has(0, "t", "Step 1"));
    EXPECT_FALSE(has(0, "t", "Step 2"));
    EXPECT_TRUE(run.says("steps: 2,"));
}

TEST_F(ImportChoice, StepsAreChosenByNameTimeOrPlaceAsInOtherCommands) {
    const std::vector<std::pair<std::string, std::string>> choices = {
        {"Step 2", ".x."}, {"@1", ".x."}, {"last", "..x"}, {"first:@1", "xx."}};
    for (const auto& [choice, taken] : choices) {
        importChosen({"-s", choice});
        for (std::size_t place = 0; place < taken.size(); ++place) {
            EXPECT_EQ(has(0, "t", "Step " + std::to_string(place + 1)), taken[place] == 'x') << choice;
        }
        std::filesystem::remove(output());
    }
}

TEST_F(ImportChoice, WhatIsNotThereIsAnErrorThatListsWhatThereIs) {
    expectNone({"--block", "rib"}, "--block rib: no block has this name; there are: web, Block 20");
    expectNone({"--variable", "v*"}, "--variable v*: no variable has this name; there are: t, u, p, q");
    for (const std::string step : {"4:6", "0", "x", "@0.7", "3:1", ""}) {
        expectNone({"--step", step}, "has no step \"" + step + "\"; its steps are: 1 @0.5, 2 @1, 3 @1.5");
    }
}
