#pragma once

#include "Rule.h"

#include <cstdint>
#include <optional>
#include <string>

namespace MoxTool {

/// Where in a file something was found. Only the members that apply are set.
struct FindingPlace {
    std::optional<std::uint64_t> offset{};       ///< Bytes from the start of the file.
    std::optional<std::uint64_t> block{};        ///< Its id, from 0.
    std::string stream{};                        ///< The name of the block or stream.
    std::optional<std::uint64_t> streamOffset{}; ///< Bytes into the decompressed stream.
    std::optional<std::uint32_t> node{};         ///< Its id, from 1.
    std::string path{};                          ///< The path of that node; set once all nodes are known.
    std::optional<std::uint32_t> dataset{};      ///< Its place in the node, from 0.
    std::string key{};                           ///< The key of that dataset, with the step's name.
};

/// One violation of a rule.
struct Finding {
    RuleId rule;
    std::string reason; ///< One line without a full stop. Names from the file are visibleText().
    FindingPlace place;
};

} // namespace MoxTool
