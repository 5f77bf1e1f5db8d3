#pragma once

#include <MoxReader/Dataset.h>

#include <optional>
#include <string>

namespace MoxTool {

/// A step of a model, with what the attributes of its datasets say about it.
struct ModelStep {
    std::string name;
    std::optional<double> time; ///< As precise as the file has it; likewise the frequency.
    std::optional<double> mode;
    std::optional<double> frequency;
    bool vibration = false;

    /// Takes from a dataset of this step what is not known yet.
    void describe(const MoxReader::Dataset& dataset);

    /// Where the step stands on the axis of the results: its time, or else its frequency.
    std::optional<double> position() const { return time ? time : frequency; }
    /// The time, or the frequency, or the given number.
    double timeOr(double number) const { return position().value_or(number); }
    /// For an animation: the frequency of a vibration takes precedence over its time.
    double valueOr(double number) const { return vibration && frequency ? *frequency : timeOr(number); }
    std::string positionText() const; ///< Empty if there is none.
    /// The step's mark for the user: "@" and its position; empty if it has none.
    std::string mark() const;
};

} // namespace MoxTool
