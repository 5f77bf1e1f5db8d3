#include "expectDump.h"

#include <gtest/gtest.h>

#include <set>

namespace {

using Json = nlohmann::json;

// Connectivity, Polylength, Element IDs, Coordinates, Node Ids.
constexpr std::size_t MeshDatasets = 5;

class DumpComparison {
public:
    DumpComparison(const Json& toCompare, const ModelContent& expected)
        : dump_(toCompare), original_(expected) {}

    void run() {
        std::vector<const Json*> geometries;
        for (const auto& node : dump_.at("nodes")) {
            if (node.contains("datasets")) {
                geometries.push_back(&node);
            }
        }
        ASSERT_EQ(geometries.size(), original_.blocks.size());
        for (std::size_t i = 0; i < geometries.size(); ++i) {
            ASSERT_NO_FATAL_FAILURE(compareGeometry(*geometries[i], i));
        }
        for (const auto& step : original_.steps) {
            EXPECT_EQ(steps_.count(step.name), 1U) << step.name;
        }
        EXPECT_EQ(steps_.size(), original_.steps.size());
    }

private:
    void compareGeometry(const Json& geometry, std::size_t place) {
        const auto& block = original_.blocks[place];
        const auto name = nodeOf(geometry.at("parent")).at("name").get<std::string>();
        EXPECT_EQ(name, block.partName());
        EXPECT_EQ(rows(geometry, "Coordinates"), original_.zones[block.zone]) << name;
        EXPECT_EQ(rows(geometry, "Node Ids"), original_.zones[block.zone]) << name;
        EXPECT_EQ(rows(geometry, "Polylength"), block.lengths.size()) << name;
        EXPECT_EQ(rows(geometry, "Element IDs"), block.lengths.size()) << name;
        EXPECT_EQ(rows(geometry, "Connectivity"), block.nodes.size()) << name;
        for (const auto& dataset : geometry.at("datasets")) {
            if (dataset.contains("step")) {
                steps_.insert(dataset.at("step").get<std::string>());
            }
        }
        if (original_.gathered) {
            EXPECT_EQ(geometry.at("datasets").size(), MeshDatasets + resultsOn(place)) << name;
        }
    }

    // The rows of the dataset of a name, taken from the dataset that has its numbers.
    std::size_t rows(const Json& geometry, const std::string& name) const {
        for (const auto& dataset : geometry.at("datasets")) {
            if (dataset.at("name") == name && !dataset.contains("step")) {
                return holder(dataset).at("shape").at(0).get<std::size_t>();
            }
        }
        return 0;
    }

    const Json& holder(const Json& dataset) const {
        if (!dataset.contains("link")) {
            return dataset;
        }
        const auto& link = dataset.at("link");
        return nodeOf(link.at("node")).at("datasets").at(link.at("dataset").get<std::size_t>());
    }

    const Json& nodeOf(const Json& id) const { return dump_.at("nodes").at(id.get<std::size_t>() - 1); }

    // Each array makes one dataset in each step.
    std::size_t resultsOn(std::size_t block) const {
        std::size_t count = 0;
        for (const bool isNodal : {true, false}) {
            const auto target = isNodal ? original_.blocks[block].zone : block;
            for (const auto& [name, variables] : original_.arrays(isNodal)) {
                const auto& variable = *original_.findVariable(isNodal, variables.front());
                for (const auto& [place, numbers] : variable.values) {
                    count += place.second == target ? 1 : 0;
                }
            }
        }
        return count;
    }

    const Json& dump_;
    const ModelContent& original_;
    std::set<std::string> steps_;
};

} // namespace

void expectDump(const nlohmann::json& dump, const ModelContent& original) {
    DumpComparison(dump, original).run();
}
