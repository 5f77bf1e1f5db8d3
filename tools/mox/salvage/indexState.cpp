#include "indexState.h"

#include <algorithm>

namespace MoxTool {

using MoxReader::ErrorCode;

bool hasDamage(const MoxReader::RawIndex& index, ErrorCode code) {
    return std::ranges::any_of(index.damage, [&](const auto& damage) { return damage.code() == code; });
}

bool isUnfinished(const MoxReader::RawIndex& index) {
    return hasDamage(index, ErrorCode::NotFinished);
}

bool isIncomplete(const MoxReader::RawIndex& index) {
    return hasDamage(index, ErrorCode::Truncated) || hasDamage(index, ErrorCode::BadIndexTable);
}

} // namespace MoxTool
