#pragma once

#include "../../mesh/DatasetNames.h"
#include "ResultDataset.h"

#include <set>
#include <string>
#include <vector>

namespace MoxTool {

/// Decides which results a geometry gets: groups components as ComponentGrouping does, and chooses types and
/// names.
///
/// A displacement is named "Displacement", since a file marks displacements by that name alone, and takes a
/// rotation as its second three columns. Everything else keeps the name that the file gives. If two results
/// want the same name, a single variable takes precedence over a group, and the earlier over the later; the
/// other gets " (2)" after its name. So does a result that has the name of a dataset of the mesh. The byte 0x1E,
/// which separates a name from a step, becomes an underscore.
///
/// Datasets of nodes and of elements share the names of their geometry, so one plan makes both, nodes first.
class ResultPlan {
public:
    /// @param dimension The dimension of the model, from 1 to 3.
    explicit ResultPlan(int dimension) : dimension_(dimension) {}

    /// @param variables Names in the file's order; ResultDataset::variables are places in this list.
    std::vector<ResultDataset> nodeResults(const std::vector<std::string>& variables);
    /// @see nodeResults
    std::vector<ResultDataset> elementResults(const std::vector<std::string>& variables);

private:
    void makeUnique(std::vector<ResultDataset>& datasets, bool singles);
    std::string uniqueName(const std::string& wanted);

    int dimension_;
    std::set<std::string> taken_ = {DatasetNames::Connectivity, DatasetNames::Coordinates,
                                    DatasetNames::ElementIds, DatasetNames::NodeIds,
                                    DatasetNames::Polylength};
};

} // namespace MoxTool
