#pragma once

#include "../ImportRequest.h"
#include "Choice.h"
#include "ChosenSteps.h"

#include <string>

namespace MoxTool {

/// What of a file an import takes. What is left out by choice is not listed as skipped.
struct Choices {
    explicit Choices(const ImportRequest& request)
        : blocks("block", request.blocks),
          variables("variable", request.variables),
          steps(request.input, request.steps),
          areNeeded_(!request.share.rootOfPiece) {}

    Choice blocks;
    Choice variables;
    ChosenSteps steps; ///< Resolved by the importer.

    /// To be called when all blocks and variables of the file have been asked for.
    /// @throws Failure if something that the user has named is not there.
    void check(const std::string& path) const {
        if (areNeeded_) {
            blocks.check(path);
            variables.check(path);
        }
    }

private:
    bool areNeeded_;
};

} // namespace MoxTool
