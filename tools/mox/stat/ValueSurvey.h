#pragma once

#include "../common/NumberFile.h"
#include "../common/StepFilter.h"
#include "../common/Terminal.h"
#include "ValueRow.h"

#include <map>
#include <set>
#include <tuple>
#include <utility>
#include <vector>

namespace MoxTool {

/// Looks at all numbers of a file, one dataset at a time, in the order in which the file has them. Numbers
/// that several geometries share count once.
class ValueSurvey {
public:
    /// @param bySteps Whether each step has a row of its own.
    /// @param file,steps,filter,terminal Must outlive this object.
    ValueSurvey(NumberFile& file, const ModelSteps& steps, const StepFilter& filter, bool bySteps,
                Terminal& terminal);

    /// By name in the order of first use, for each of them by step. May be called once.
    /// @throws Failure if numbers can't be read.
    std::vector<ValueRow> run();

private:
    using Dataset = MoxReader::Dataset;
    struct Use {
        const Dataset* holder;
        std::size_t row;
        std::uint32_t node;
        std::size_t step;
    };

    void collect();
    void addUse(const Dataset& dataset);
    std::size_t rowOf(const Dataset& dataset, const Dataset& holder, std::size_t step);
    void sortUses();
    void read();
    void sortRows();

    NumberFile& file_;
    const ModelSteps& steps_;
    const StepFilter& filter_;
    bool bySteps_;
    Terminal& terminal_;
    std::vector<ValueRow> rows_;
    std::map<std::tuple<std::string, std::uint32_t, std::uint8_t, std::uint8_t, std::size_t>, std::size_t>
        places_;
    std::map<std::string, std::size_t> names_; ///< In the order of first use.
    std::set<std::pair<const Dataset*, std::size_t>> known_;
    std::vector<Use> uses_;
};

} // namespace MoxTool
