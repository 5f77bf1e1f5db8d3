#include "RealTable.h"

namespace MoxTool {

void RealTable::setColumn(std::size_t column, std::span<const double> values, FloatNarrowing& narrowing) {
    for (std::size_t row = 0; row < values.size(); ++row) {
        cells_[row * width_ + column] = narrowing.narrow(values[row]);
    }
}

} // namespace MoxTool
