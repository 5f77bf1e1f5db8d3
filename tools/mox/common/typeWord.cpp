#include "typeWord.h"

#include <CLI/Option.hpp>

namespace MoxTool {

// The library adds what its checks say after a colon: FORMAT:{csv,npy}, NUMBER:POSITIVE.
std::string typeWord(const CLI::Option& option) {
    const auto type = option.get_type_name();
    return type.substr(0, type.find(':'));
}

std::vector<std::string> choicesOf(const CLI::Option& option) {
    const auto type = option.get_type_name();
    const auto begin = type.find('{');
    const auto end = type.find('}');
    if (begin == std::string::npos || end == std::string::npos) {
        return {};
    }
    return CLI::detail::split(type.substr(begin + 1, end - begin - 1), ',');
}

} // namespace MoxTool
