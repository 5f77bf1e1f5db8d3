#pragma once

#include "../common/jsonValue.h"
#include "NumberDifference.h"

#include <MoxReader/Dataset.h>

#include <nlohmann/json.hpp>

#include <cstdint>
#include <optional>
#include <string>

namespace MoxTool {

/// One thing in which two models differ.
struct Difference {
    std::uint32_t idA = 0; ///< The node in the first file; 0 if it has none, or for the file as a whole.
    std::uint32_t idB = 0; ///< Likewise in the second.
    const MoxReader::Dataset* dataset = nullptr; ///< The dataset, in the first file if it is there; or null.
    std::string what;                            ///< Such as "translation" or "numbers". May hold any bytes.
    std::optional<Json> a;                       ///< The value in the first file; empty if it is not there.
    std::optional<Json> b;                       ///< Likewise in the second.
    std::optional<NumberDifference> numbers;     ///< Instead of a and b, for the numbers of a dataset.
};

} // namespace MoxTool
