#include "expectExported.h"

#include "cellKinds.h"
#include "expectNumbers.h"

#include <numeric>
#include <set>

namespace {

using Ids = std::vector<std::int64_t>;

// Exodus numbers nodes and elements itself if not all have ids of their own.
Ids uniqueIds(Ids ids) {
    if (std::set<std::int64_t>(ids.begin(), ids.end()).size() != ids.size()) {
        std::iota(ids.begin(), ids.end(), 1);
    }
    return ids;
}

void expectNodes(const ModelContent& exported, const ModelContent& original) {
    EXPECT_EQ(exported.dimension, original.dimension);
    expectNumbers(exported.points, original.points, "coordinates");
    EXPECT_EQ(exported.nodeIds, uniqueIds(original.nodeIds));
}

void expectBlocks(const ModelContent& exported, const ModelContent& original) {
    ASSERT_EQ(exported.blocks.size(), original.blocks.size());
    for (std::size_t i = 0; i < original.blocks.size(); ++i) {
        const auto& block = exported.blocks[i];
        const auto& expected = original.blocks[i];
        EXPECT_EQ(block.id, expected.id);
        EXPECT_EQ(block.name, expected.name);
        EXPECT_EQ(block.type, expected.type) << expected.name;
        EXPECT_EQ(block.lengths, expected.lengths) << expected.name;
        EXPECT_EQ(block.nodes, nodesInOrder(expected, original.ordering, NodeOrdering::Exodus))
            << expected.name;
    }
    EXPECT_EQ(exported.elementIds(), uniqueIds(original.elementIds()));
}

Numbers timesOf(const ModelContent& content) {
    auto times = content.bareTimes;
    for (const auto& step : content.steps) {
        times.push_back(step.time);
    }
    return times;
}

// A variable is on all nodes of an Exodus file, or on those blocks that have it in any step.
void expectVariable(const ModelContent& exported, const ModelContent& original,
                    const VariableContent& expected) {
    const auto* variable = exported.findVariable(expected.isNodal, expected.name);
    ASSERT_NE(variable, nullptr) << expected.name;
    for (std::size_t block = 0; !expected.isNodal && block < original.blocks.size(); ++block) {
        EXPECT_EQ(variable->standsOn(block), expected.standsOn(block)) << expected.name << " on " << block;
    }
    for (std::size_t step = 0; step < original.steps.size(); ++step) {
        ASSERT_NO_FATAL_FAILURE(expectNumbers(exported.wholeColumn(*variable, step),
                                              original.wholeColumn(expected, step),
                                              expected.name + " in " + original.steps[step].name));
    }
}

} // namespace

void expectExported(const ModelContent& exported, const ModelContent& original) {
    EXPECT_EQ(exported.title, original.title);
    EXPECT_EQ(exported.qaRecords, original.qaRecords);
    ASSERT_NO_FATAL_FAILURE(expectNodes(exported, original));
    ASSERT_NO_FATAL_FAILURE(expectBlocks(exported, original));
    ASSERT_EQ(timesOf(exported), timesOf(original));
    for (const bool isNodal : {true, false}) {
        EXPECT_EQ(exported.variableNames(isNodal), original.variableNames(isNodal));
    }
    for (const auto& variable : original.variables) {
        ASSERT_NO_FATAL_FAILURE(expectVariable(exported, original, variable));
    }
    EXPECT_EQ(exported.globalNames, original.globalNames);
    EXPECT_EQ(exported.globals, original.globals);
}
