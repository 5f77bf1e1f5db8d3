#pragma once

#include "../common/NodePaths.h"
#include "../common/NumberFile.h"
#include "../common/StepFilter.h"
#include "../common/Terminal.h"
#include "ComparisonOptions.h"
#include "DifferenceList.h"

#include <utility>
#include <vector>

namespace MoxTool {

/// Finds how two models differ.
///
/// Nodes are paired by their paths and datasets by their keys; among siblings, or datasets, of one name the
/// first is paired with the first and so on. The ids of nodes and the order of names don't count. A node or
/// dataset without a partner is one difference, whatever is below it. Holds the numbers of one dataset of
/// each file at a time.
class ModelComparison {
public:
    /// @param fileA,fileB Must outlive this object and the differences.
    /// @throws Failure if one of them lacks the steps that are to be compared.
    ModelComparison(NumberFile& fileA, NumberFile& fileB, const ComparisonOptions& options,
                    Terminal& messages);

    /// All differences, in the order of the first file's tree. May be called once.
    /// @throws Failure if one of the files is damaged, or if links pair so many of their datasets that the
    ///                 comparison would take time out of proportion to the files.
    std::vector<Difference> run();

private:
    using NodePair = std::pair<const MoxReader::Node*, const MoxReader::Node*>;

    /// Two datasets with numbers of one type and shape, to be read later.
    struct Task {
        const MoxReader::Dataset* a;
        const MoxReader::Dataset* b;
        std::size_t room; ///< See DifferenceList::keepRoomForNumbers().

        bool hasSameNumbersAs(const Task& other) const { return a == other.a && b == other.b; }
    };

    void compareTrees();
    void compareNodes(const MoxReader::Node& a, const MoxReader::Node& b);
    std::vector<NodePair> matchChildren(const MoxReader::Node& a, const MoxReader::Node& b);
    void compareContents(const MoxReader::Node& a, const MoxReader::Node& b);
    void compareGeometries(const MoxReader::Node& a, const MoxReader::Node& b);
    void compareDatasets(const MoxReader::Dataset& a, const MoxReader::Dataset& b);
    void compareLinks(const MoxReader::Dataset& a, const MoxReader::Dataset& b);
    void compareHolders(const MoxReader::Dataset& a, const MoxReader::Dataset& b);
    void compareNumbersOfAll();
    void sortTasks();
    void requireBoundedWork() const;

    NumberFile& fileA_;
    NumberFile& fileB_;
    StepFilter stepsA_;
    StepFilter stepsB_;
    ComparisonOptions options_;
    Terminal& messages_;
    NodePaths pathsA_;
    NodePaths pathsB_;
    DifferenceList list_;
    std::vector<Task> tasks_;
};

} // namespace MoxTool
