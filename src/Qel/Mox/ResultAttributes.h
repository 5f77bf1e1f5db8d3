#pragma once

#include <map>
#include <string>

namespace QelMox {

/// The file has a list of these, which is always empty.
// Kept though nothing calls it; see docs/oddities.md.
struct ResultAttributes {
    std::map<std::string, std::string> first;
    std::map<std::string, std::string> second;
};

} // namespace QelMox
