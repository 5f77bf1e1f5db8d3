#include "MoxReader/RawIndex.h"

#include "MoxReader/IndexScanner.h"

#include <algorithm>

namespace MoxReader {

bool RawIndex::isDisplaced() const {
    return std::ranges::any_of(tables, [](const auto& table) { return table.displacement != 0; });
}

RawIndex scanIndex(Source& source) {
    return IndexScanner(source).scan();
}

} // namespace MoxReader
