#pragma once

#include "../model/ImportTarget.h"
#include "../model/ResultPlan.h"
#include "GmshModel.h"
#include "GmshPart.h"
#include "TagIndex.h"

#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace MoxTool {

/// Adds the views of a Gmsh model on nodes and elements to a model, step by step.
///
/// A view of three components counts as variables with _x, _y, _z after its name, one of nine with _xx to _zz
/// (without the lower three if they equal the upper ones), and one of any other number with _1, _2 and so on.
class GmshResultImporter {
public:
    /// @param parts All shapes. All arguments must outlive the importer.
    GmshResultImporter(const GmshModel& source, const TagIndex& nodes, std::size_t nodeCount,
                       const std::vector<GmshPart>& parts, ImportTarget& target);

    /// To be called once.
    /// @throws Failure if Gmsh fails; anything that the model throws.
    void run();

private:
    // One component of one step of a view.
    struct Variable {
        const GmshViewStep* data;
        std::size_t component;
    };

    struct Variables {
        std::vector<std::string> names;
        std::vector<Variable> all; // one for each name
    };

    // The place of a step in its views and its time.
    using StepKey = std::pair<int, double>;

    std::map<StepKey, std::vector<const GmshView*>> findSteps();
    void addStep(const std::vector<const GmshView*>& views, int place, const Qel::Mox2::Step& step);
    static void addVariables(const std::string& name, const GmshViewStep& data, Variables& variables);
    void addOnNodes(const ResultDataset& result, const Variables& variables, const Qel::Mox2::Step& step);
    void addOnElements(const ResultDataset& result, const Variables& variables, const Qel::Mox2::Step& step);
    // The values at the places that an index finds and not-a-number elsewhere, and how many were found.
    static std::pair<std::vector<double>, std::size_t> column(const Variable& variable, const TagIndex& index,
                                                              std::size_t count);
    void noteGaps(const ResultDataset& result);

    const GmshModel& source_;
    const TagIndex& nodes_;
    std::size_t nodeCount_;
    const std::vector<GmshPart>& parts_;
    ImportTarget& target_;
    std::vector<GmshView> views_;
};

} // namespace MoxTool
