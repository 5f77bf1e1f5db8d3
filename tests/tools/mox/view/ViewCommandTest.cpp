#include "../common/MoxRun.h"
#include "Support/TemporaryFolder.h"
#include "view/ViewModel.h"
#include "view/ViewPage.h"
#include "view/pageSource.h"

#include <Qel/Mox2/Model.h>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <bit>
#include <cmath>
#include <filesystem>
#include <limits>
#include <sstream>

namespace {

namespace Mox = Qel::Mox2;
using MoxTool::ModelSelection;
using MoxTool::ViewModel;

constexpr float NaN = std::numeric_limits<float>::quiet_NaN();

/// Two triangles on four nodes with the ids 11 to 14, and elements 101 and 102, in a group that moves them by
/// (10, 0, 0); "Displacement" in two steps, "Stress" of six columns on the elements.
void savePlate(const std::string& path, const std::string& name = "Plate") {
    Mox::Model model;
    model.saveTo(path, {true, "", "", ""});
    const auto root = model.addNode(Mox::Group, "Root");
    Mox::NodeProperties moved;
    moved.set(Mox::Translation, std::vector<float>{10, 0, 0});
    model.setNodeData(root, moved);
    const auto plate = model.addNode(Mox::Shape, name);
    const Mox::Step none{};
    model.addArrayProperty(Mox::Coordinates, Mox::Array2d<float>(4, 3, {0, 0, 0, 2, 0, 0, 2, 2, 0, 0, 2, 0}),
                           plate, none);
    model.addArrayProperty(Mox::Connectivity1, Mox::Array1d<unsigned>{0, 1, 2, 0, 2, 3}, plate, none);
    model.addArrayProperty(Mox::Polylength1, Mox::Array1d<unsigned>{3, 3}, plate, none);
    model.addArrayProperty("Node Ids", Mox::NodeScalar, Mox::Array1d<unsigned>{11, 12, 13, 14}, plate, none);
    model.addArrayProperty("Element IDs", Mox::ElementScalar, Mox::Array1d<unsigned>{101, 102}, plate, none);
    for (int n = 1; n <= 2; ++n) {
        Mox::Step step{"Step " + std::to_string(n), {}};
        const auto scale = static_cast<float>(n);
        model.addArrayProperty(
            "Displacement", Mox::NodeVector,
            Mox::Array2d<float>(4, 3, {0, 0, 0, scale, 0, 0, 3 * scale, 4 * scale, 0, NaN, 0, 0}), plate,
            step);
    }
    model.addArrayProperty("Stress", Mox::ElementSixA,
                           Mox::Array2d<float>(2, 6, {100, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 10}), plate, none);
    model.close();
}

float floatAt(const std::string& bytes, std::size_t place) {
    std::uint32_t word = 0;
    for (unsigned int i = 0; i < 4; ++i) {
        word |= std::uint32_t{static_cast<std::uint8_t>(bytes.at(place + i))} << (8 * i);
    }
    return std::bit_cast<float>(word);
}

std::uint32_t wordAt(const std::string& bytes, std::size_t place) {
    return std::bit_cast<std::uint32_t>(floatAt(bytes, place));
}

class ViewCommand : public testing::Test {
protected:
    ViewCommand() { savePlate(model); }

    ModelSelection selection() const {
        ModelSelection chosen;
        chosen.input = model;
        return chosen;
    }

    Support::TemporaryFolder folder;
    const std::string model = folder.path("plate.mox");
};

TEST_F(ViewCommand, MeshHasPlacesOfTheWholeModelWithIdsAndRows) {
    const ViewModel view(selection());
    std::map<std::string, std::string> arrays;
    for (const auto& array : view.meshArrays()) {
        arrays[array.name] = array.bytes;
    }
    EXPECT_EQ(arrays["positions"].size(), 4U * 12);
    EXPECT_EQ(floatAt(arrays["positions"], 12), 12.0F) << "moved by the group";
    EXPECT_EQ(wordAt(arrays["nodeIds"], 8), 13U);
    EXPECT_EQ(wordAt(arrays["nodeRows"], 8), 2U);
    EXPECT_EQ(wordAt(arrays["elementIds"], 4), 102U);
    EXPECT_EQ(arrays["triangles"].size(), 6U * 4);
    EXPECT_EQ(arrays["lines"], "");
}

TEST_F(ViewCommand, ResultBlockBeginsWithTheRangeOfEachColumnAndOfTheMagnitude) {
    ViewModel view(selection());
    ASSERT_EQ(view.fields().size(), 2U) << "ids are no results";
    const auto block = view.resultBlock(view.fields()[0], 1);
    ASSERT_EQ(block.bytes.size(), 4U * 24 + 4 * 3 * 4);
    const std::size_t magnitude = 3 * 24;
    EXPECT_EQ(floatAt(block.bytes, magnitude), 0.0F);
    EXPECT_EQ(floatAt(block.bytes, magnitude + 4), 10.0F);
    EXPECT_EQ(wordAt(block.bytes, magnitude + 8), 0U) << "place of the least";
    EXPECT_EQ(wordAt(block.bytes, magnitude + 12), 11U) << "its id";
    EXPECT_EQ(wordAt(block.bytes, magnitude + 16), 2U) << "place of the greatest";
    EXPECT_EQ(wordAt(block.bytes, magnitude + 20), 13U) << "its id";
    EXPECT_EQ(floatAt(block.bytes, 4 * 24 + 2 * 12 + 4), 8.0F) << "third node, second column";
    EXPECT_TRUE(std::isnan(floatAt(block.bytes, 4 * 24 + 3 * 12)));
    EXPECT_EQ(block.ranges.at(0), std::pair(0.0, 6.0));
}

TEST_F(ViewCommand, VonMisesStressIsDerivedFromSixColumns) {
    ViewModel view(selection());
    const auto block = view.resultBlock(view.fields()[1], MoxTool::ResultField::NoStep);
    EXPECT_FLOAT_EQ(floatAt(block.bytes, 6 * 24), 17.320508F);
    EXPECT_EQ(floatAt(block.bytes, 6 * 24 + 4), 100.0F);
}

TEST_F(ViewCommand, DescriptionNamesTreePartsStepsAndFields) {
    const auto all = ViewModel(selection()).description();
    EXPECT_EQ(all["name"], "plate.mox");
    EXPECT_EQ(all["centre"].dump(), "[11.0,1.0,0.0]");
    EXPECT_EQ(all["tree"].size(), 2U) << "a shape and its geometry are one";
    EXPECT_EQ(all["tree"][1]["name"], "Plate");
    EXPECT_EQ(all["tree"][1]["part"], 0);
    EXPECT_EQ(all["parts"][0]["elements"], 2);
    EXPECT_EQ(all["steps"][1]["name"], "Step 2");
    EXPECT_EQ(all["fields"][0]["name"], "Displacement");
    EXPECT_EQ(all["fields"][0]["derived"], "Magnitude");
    EXPECT_EQ(all["fields"][0]["movesNodes"], true);
    EXPECT_EQ(all["fields"][1]["derived"], "von Mises");
    EXPECT_EQ(all["fields"][1]["steps"].dump(), "[null]");
}

TEST_F(ViewCommand, NamesCanNotEndTheElementThatTheyStandIn) {
    const auto hostile = folder.path("hostile.mox");
    savePlate(hostile, "</script><script>alert(1)</script><!-- &amp;");
    ModelSelection chosen;
    chosen.input = hostile;
    const auto text = MoxTool::pageJson(ViewModel(chosen).description());
    EXPECT_EQ(text.find_first_of("<>&"), std::string::npos) << text;
    EXPECT_EQ(nlohmann::json::parse(text)["parts"][0]["name"],
              "</script><script>alert(1)</script><!-- &amp;");
}

TEST_F(ViewCommand, PageTakesTheLastStepFirstAndCountsWhatFindsNoRoom) {
    ViewModel view(selection());
    std::ostringstream all, some;
    const auto whole = MoxTool::ViewPage(view, 1000000).write(all, model);
    EXPECT_EQ(whole.results, 3U);
    EXPECT_EQ(whole.leftOut, 0U);
    EXPECT_EQ(all.str().find("results are left out"), std::string::npos);
    const auto less = MoxTool::ViewPage(view, whole.bytes - 1).write(some, model);
    EXPECT_EQ(less.results, 2U);
    EXPECT_EQ(less.leftOut, 1U);
    EXPECT_NE(some.str().find("id=\"block-result-0-1\""), std::string::npos) << "the last step";
    EXPECT_EQ(some.str().find("id=\"block-result-0-0\""), std::string::npos);
    EXPECT_NE(some.str().find("1 of 3 results are left out"), std::string::npos);
}

TEST_F(ViewCommand, MeshThatFindsNoRoomIsRefused) {
    ViewModel view(selection());
    std::ostringstream out;
    EXPECT_THROW(MoxTool::ViewPage(view, 100).write(out, model), MoxTool::Failure);
}

TEST_F(ViewCommand, WritesAPageUnlessItWasBuiltWithoutIt) {
    const auto page = folder.path("plate.html");
    const auto run = runMox({"view", "--no-open", "-o", page, model});
    if (!MoxTool::pageSource().exists()) {
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_TRUE(run.says("built without its page")) << run.messages;
        EXPECT_FALSE(std::filesystem::exists(page));
        return;
    }
    EXPECT_EQ(run.exitCode, 0) << run.messages;
    const auto text = folder.read("plate.html");
    EXPECT_TRUE(text.starts_with("<!DOCTYPE html><!-- made by mox view -->\n")) << text.substr(0, 60);
    EXPECT_NE(text.find("Content-Security-Policy\" content=\"default-src 'none'"), std::string::npos);
    EXPECT_NE(text.find("id=\"block-positions\""), std::string::npos);
    EXPECT_TRUE(run.says("nodes on the surface: 4, results: 3, data: ")) << run.messages;
    EXPECT_TRUE(run.says(" kB\n")) << run.messages;
}

TEST_F(ViewCommand, ExistingFileIsNotReplacedUnlessThatIsWanted) {
    if (!MoxTool::pageSource().exists()) {
        GTEST_SKIP() << "without the page";
    }
    folder.write("mine.html", "mine");
    const auto page = folder.path("mine.html");
    EXPECT_EQ(runMox({"view", "--no-open", "-o", page, model}).exitCode, 1);
    EXPECT_EQ(folder.read("mine.html"), "mine");
    EXPECT_EQ(runMox({"view", "--no-open", "-f", "-o", page, model}).exitCode, 0);
    EXPECT_NE(folder.read("mine.html"), "mine");
}

TEST_F(ViewCommand, ModelFromStdinNeedsANameForThePage) {
    const auto run = runMox({"view", "-"});
    EXPECT_NE(run.exitCode, 0);
    EXPECT_TRUE(run.says("--output is required")) << run.messages;
}

TEST_F(ViewCommand, ServingAndAnOutputExcludeEachOther) {
    EXPECT_NE(runMox({"view", "--serve", "-o", folder.path("page.html"), model}).exitCode, 0);
}

} // namespace
