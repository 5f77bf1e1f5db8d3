#pragma once

#include "../mesh/ModelResults.h"

#include <optional>
#include <string>
#include <vector>

namespace MoxTool {

/// A number that is made of all columns of a row, beside the columns themselves.
enum class DerivedNumber { None, Magnitude, VonMises };

/// A result as the page offers it.
struct ViewField {
    const ResultField* field = nullptr;
    std::vector<std::string> columns; ///< Their names, one for each.
    DerivedNumber derived = DerivedNumber::None;
    bool movesNodes = false;        ///< Its first three columns can be taken for a displacement.
    std::vector<std::size_t> steps; ///< The wanted steps that it has, ascending; one NoStep if it has none.
};

/// Finds out what the columns of a result are.
ViewField describeField(const ResultField& field, const std::vector<std::size_t>& wantedSteps);

/// The derived number of a row of a field. @param row As many numbers as it has columns.
double derivedNumber(DerivedNumber kind, const double* row);

} // namespace MoxTool
