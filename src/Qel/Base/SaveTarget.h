#pragma once

#include <string>
#include <vector>

namespace Qel::Base {

/// Where a Saver saves to.
struct SaveTarget {
    std::string path;
    /// Nothing reads this field or those that follow.
    std::string format;
    std::vector<std::string> parameters = {};
    unsigned int number = 0;
};

} // namespace Qel::Base
