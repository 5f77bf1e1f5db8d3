// Imports every Exodus file at hand, exports it again, and compares the two files as the Exodus library reads
// them, number for number.

#include "../TemporaryFolder.h"
#include "../common/MoxRun.h"
#include "import/ExodusFile.h"
#include "realExodusFiles.h"

#include <bit>
#include <memory>

namespace {

using Names = std::vector<std::string>;

class ExportRoundTrip : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override {
        if (GetParam().empty())
            GTEST_SKIP() << "no Exodus files in " << MOXWRITER_DATA_DIR;
        const auto import = runMox({"import", GetParam(), folder.path("model.mox")});
        ASSERT_EQ(import.exitCode, 0) << import.messages;
        run = runMox({"export", folder.path("model.mox"), folder.path("out.e")});
        ASSERT_EQ(run.exitCode, 0) << run.messages;
        before = std::make_unique<MoxTool::ExodusFile>(GetParam());
        after = std::make_unique<MoxTool::ExodusFile>(folder.path("out.e"));
        ASSERT_EQ(after->blocks().size(), before->blocks().size());
    }

    bool hasResults() const {
        return !before->variableNames(EX_NODAL).empty() || !before->variableNames(EX_ELEM_BLOCK).empty();
    }

    static std::size_t placeOf(const Names& names, const std::string& name) {
        return static_cast<std::size_t>(std::find(names.begin(), names.end(), name) - names.begin());
    }

    // A model holds floats.
    static void expectSame(const std::vector<double>& actual, const std::vector<double>& original,
                           const std::string& what) {
        ASSERT_EQ(actual.size(), original.size()) << what;
        for (std::size_t i = 0; i < actual.size(); ++i)
            ASSERT_EQ(std::bit_cast<std::uint64_t>(actual[i]),
                      std::bit_cast<std::uint64_t>(double{static_cast<float>(original[i])}))
                << what << " " << i;
    }

    void expectSameValues(ex_entity_type type, const std::string& name, std::int64_t entity,
                          std::int64_t count) const {
        const auto there = placeOf(after->variableNames(type), name);
        const auto here = placeOf(before->variableNames(type), name);
        for (std::size_t step = 0; step < before->times().size(); ++step)
            ASSERT_NO_FATAL_FAILURE(expectSame(after->values(type, there, entity, step, count),
                                               before->values(type, here, entity, step, count), name));
    }

    TemporaryFolder folder;
    MoxRun run{};
    std::unique_ptr<MoxTool::ExodusFile> before;
    std::unique_ptr<MoxTool::ExodusFile> after;
};

Names sorted(Names names) {
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace

TEST_P(ExportRoundTrip, TitleAndCountsAndRecordsComeBack) {
    EXPECT_STREQ(after->counts().title, before->counts().title);
    EXPECT_EQ(after->dimension(), before->dimension());
    EXPECT_EQ(after->counts().num_nodes, before->counts().num_nodes);
    EXPECT_EQ(after->counts().num_elem, before->counts().num_elem);
    const auto expected = before->qaRecords();
    const auto records = after->qaRecords();
    ASSERT_EQ(records.size(), expected.size());
    for (std::size_t i = 0; i < records.size(); ++i) {
        EXPECT_EQ(records[i].program, expected[i].program);
        EXPECT_EQ(records[i].version, expected[i].version);
        EXPECT_EQ(records[i].date, expected[i].date);
        EXPECT_EQ(records[i].time, expected[i].time);
    }
}

TEST_P(ExportRoundTrip, NodesComeBackWithTheirIds) {
    for (int axis = 0; axis < before->dimension(); ++axis)
        ASSERT_NO_FATAL_FAILURE(
            expectSame(after->coordinates(axis), before->coordinates(axis), "coordinates"));
    EXPECT_EQ(after->idMap(EX_NODE_MAP, after->counts().num_nodes),
              before->idMap(EX_NODE_MAP, before->counts().num_nodes));
}

TEST_P(ExportRoundTrip, BlocksComeBackWithTheirElements) {
    for (std::size_t i = 0; i < before->blocks().size(); ++i) {
        const auto& expected = before->blocks()[i];
        const auto& block = after->blocks()[i];
        EXPECT_EQ(block.id, expected.id);
        EXPECT_EQ(block.name, expected.name);
        EXPECT_EQ(block.elementType, expected.elementType);
        EXPECT_EQ(block.elementCount, expected.elementCount);
        EXPECT_EQ(block.nodesPerElement, expected.nodesPerElement);
        EXPECT_EQ(after->connectivity(block), before->connectivity(expected));
    }
    EXPECT_EQ(after->idMap(EX_ELEM_MAP, after->counts().num_elem),
              before->idMap(EX_ELEM_MAP, before->counts().num_elem));
}

// A model has no steps but those of its results.
TEST_P(ExportRoundTrip, StepsComeBackWithTheirTimesToTheLastDigit) {
    EXPECT_EQ(after->times(), hasResults() ? before->times() : std::vector<double>());
}

TEST_P(ExportRoundTrip, NodalVariablesComeBack) {
    const auto names = before->variableNames(EX_NODAL);
    EXPECT_EQ(sorted(after->variableNames(EX_NODAL)), sorted(names));
    for (const auto& name : names)
        ASSERT_NO_FATAL_FAILURE(expectSameValues(EX_NODAL, name, 1, before->counts().num_nodes));
}

TEST_P(ExportRoundTrip, ElementVariablesComeBackOnTheBlocksThatHaveThem) {
    const auto names = before->variableNames(EX_ELEM_BLOCK);
    const auto namesAfter = after->variableNames(EX_ELEM_BLOCK);
    ASSERT_EQ(sorted(namesAfter), sorted(names));
    const auto table = before->elementTruthTable(names.size());
    const auto tableAfter = after->elementTruthTable(names.size());
    for (std::size_t i = 0; i < before->blocks().size(); ++i) {
        for (std::size_t variable = 0; variable < names.size(); ++variable) {
            const auto has = table[i * names.size() + variable];
            ASSERT_EQ(tableAfter[i * names.size() + placeOf(namesAfter, names[variable])], has)
                << names[variable];
            const auto& block = before->blocks()[i];
            if (has != 0) {
                ASSERT_NO_FATAL_FAILURE(
                    expectSameValues(EX_ELEM_BLOCK, names[variable], block.id, block.elementCount));
            }
        }
    }
}

TEST_P(ExportRoundTrip, FrequenciesOfModesComeBack) {
    const auto names = before->variableNames(EX_GLOBAL);
    if (placeOf(names, "EigenFrequency") == names.size()) {
        EXPECT_TRUE(after->variableNames(EX_GLOBAL).empty());
        return;
    }
    EXPECT_EQ(after->variableNames(EX_GLOBAL), names);
    for (std::size_t step = 0; step < before->times().size(); ++step)
        EXPECT_EQ(after->globalValues(step, names.size()), before->globalValues(step, names.size()));
}

INSTANTIATE_TEST_SUITE_P(Files, ExportRoundTrip, testing::ValuesIn(realExodusFiles()), nameOfRealFile);
