#pragma once

#include "../../common/ModelSteps.h"

#include <cstddef>
#include <set>
#include <string>
#include <vector>

namespace MoxTool {

/// Which of a file's steps an import takes: those that the user has chosen, or all.
class ChosenSteps {
public:
    /// @param path    The path of the file, for messages.
    /// @param choices As StepChoice takes them; none for all steps.
    ChosenSteps(std::string path, std::vector<std::string> choices);

    /// To be called once, before takes().
    /// @param steps Of the file, as the model will have them.
    /// @throws Failure if the file lacks a step that the user has named; it lists what there is.
    void resolve(const ModelSteps& steps);

    /// @param place From 0.
    bool takes(std::size_t place) const;

private:
    std::string path_;
    std::vector<std::string> choices_;
    std::set<std::size_t> places_;
};

} // namespace MoxTool
