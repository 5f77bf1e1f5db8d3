#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace MoxTool {

/// Narrows doubles to float, as the model's files hold them, and keeps account of the loss.
class FloatNarrowing {
public:
    /// The nearest float; infinite for numbers beyond its range.
    float narrow(double value);

    /// Adds what another one has lost.
    void add(const FloatNarrowing& other);

    /// What was lost, one sentence for each kind of loss; empty if every number was preserved.
    std::vector<std::string> report() const;

private:
    std::size_t rounded_ = 0;
    std::size_t tooLarge_ = 0;
    std::size_t tooSmall_ = 0;
    double largestRelativeLoss_ = 0;
};

} // namespace MoxTool
