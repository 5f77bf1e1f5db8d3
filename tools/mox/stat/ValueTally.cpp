#include "ValueTally.h"

namespace MoxTool {

void ValueTally::add(const ValueTally& other, std::uint32_t node, std::size_t step) {
    const bool isFirst = finite() == 0;
    count += other.count;
    nans += other.nans;
    infinities += other.infinities;
    if (other.finite() == 0) {
        return;
    }
    sum += other.sum;
    if (isFirst || other.least < least) {
        least = other.least;
        leastAt = {node, other.leastAt.row, step};
    }
    if (isFirst || other.greatest > greatest) {
        greatest = other.greatest;
        greatestAt = {node, other.greatestAt.row, step};
    }
}

} // namespace MoxTool
