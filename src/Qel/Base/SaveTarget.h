#pragma once

#include <string>
#include <vector>

namespace Qel::Base {

/// Where a Saver saves to.
struct SaveTarget {
    std::string path;
    /// Nothing reads this, nor what follows.
    std::string format;
    std::vector<std::string> parameters = {};
    unsigned int number = 0;
};

} // namespace Qel::Base
