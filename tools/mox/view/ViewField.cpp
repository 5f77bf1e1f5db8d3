#include "ViewField.h"

#include "../mesh/DatasetNames.h"
#include "../mesh/columnNames.h"

#include <MoxReader/Format.h>

#include <cmath>

namespace MoxTool {

namespace {

using MoxReader::Format::VariableType;

bool isDisplacement(const ResultField& field) {
    return field.place == ResultPlace::Nodes && field.name == DatasetNames::Displacement;
}

// The other type of six columns says nothing about their order.
bool isTensor(const ResultField& field) {
    return !isDisplacement(field) &&
           (MoxReader::Format::isType(field.variableType, VariableType::NodeSixA) ||
            MoxReader::Format::isType(field.variableType, VariableType::ElementSixA));
}

DerivedNumber derivedOf(const ResultField& field) {
    if (field.width == 3 || (field.width == 6 && isDisplacement(field))) {
        return DerivedNumber::Magnitude;
    }
    return field.width == 6 && isTensor(field) ? DerivedNumber::VonMises : DerivedNumber::None;
}

double square(double number) {
    return number * number;
}

} // namespace

ViewField describeField(const ResultField& field, const std::vector<std::size_t>& wantedSteps) {
    ViewField described;
    described.field = &field;
    described.columns = field.components;
    while (described.columns.size() < field.width) {
        described.columns.push_back(
            guessedColumnName(field.name, field.variableType, field.width, described.columns.size()));
    }
    described.derived = field.isInteger ? DerivedNumber::None : derivedOf(field);
    described.movesNodes = field.place == ResultPlace::Nodes && described.derived == DerivedNumber::Magnitude;
    if (field.isStatic) {
        described.steps.push_back(ResultField::NoStep);
    }
    for (const auto step : wantedSteps) {
        if (!field.isStatic && field.stands(step)) {
            described.steps.push_back(step);
        }
    }
    return described;
}

double derivedNumber(DerivedNumber kind, const double* row) {
    if (kind == DerivedNumber::VonMises) {
        return std::sqrt((square(row[0] - row[1]) + square(row[1] - row[2]) + square(row[2] - row[0])) / 2 +
                         3 * (square(row[3]) + square(row[4]) + square(row[5])));
    }
    return std::sqrt(square(row[0]) + square(row[1]) + square(row[2]));
}

} // namespace MoxTool
