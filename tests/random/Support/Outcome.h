#pragma once

#include <string>
#include <vector>

namespace RandomUse {

/// What the caller of a call sees of it.
struct Outcome {
    std::vector<unsigned int> ids; ///< What was returned.
    // Of a failure; the name of its class is empty if there is none.
    std::string exception; ///< Without namespace, or with `std::`.
    int code = 0;
    std::string text;
    std::string file;
    std::string function;

    bool isFailure() const { return !exception.empty(); }
};

} // namespace RandomUse
