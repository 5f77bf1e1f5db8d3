#include "ModeVariables.h"

#include "../../common/lowerCase.h"

#include <algorithm>
#include <set>

namespace MoxTool {

namespace {

std::string plainName(const std::string& name) {
    auto plain = lowerCase(name);
    std::erase(plain, '_');
    return plain;
}

std::optional<std::size_t> findNamed(const std::vector<std::string>& names,
                                     const std::set<std::string>& wanted) {
    const auto found = std::find_if(names.begin(), names.end(),
                                    [&wanted](const auto& name) { return wanted.contains(plainName(name)); });
    if (found == names.end()) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(found - names.begin());
}

} // namespace

std::optional<ModeVariables> findModeVariables(const std::vector<std::string>& globalVariables) {
    const auto number = findNamed(globalVariables, {"modenumber", "mode"});
    const auto frequency = findNamed(globalVariables, {"eigenfrequency", "naturalfrequency", "frequency"});
    if (!number || !frequency) {
        return std::nullopt;
    }
    return ModeVariables{*number, *frequency};
}

} // namespace MoxTool
