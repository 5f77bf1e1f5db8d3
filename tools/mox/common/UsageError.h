#pragma once

#include <stdexcept>

namespace MoxTool {

/// A command line that makes no sense. The text is a sentence without a full stop, such as "--data is
/// required".
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace MoxTool
