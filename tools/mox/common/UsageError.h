#pragma once

#include <stdexcept>

namespace MoxTool {

/// What a person has typed can't be meant: a sentence without a full stop, such as "--data is required".
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace MoxTool
