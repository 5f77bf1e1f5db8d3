#include "DatasetWriter.h"

#include <fmt/core.h>

#include <cstdint>
#include <stdexcept>

namespace MoxTool {

namespace {

// The format keeps the size of a dataset in 32 bits.
void checkSize(std::size_t values, const std::string& name) {
    if (values > UINT32_MAX / sizeof(float))
        throw std::length_error(
            fmt::format("{} has {} numbers and a dataset must be below 4 GiB", name, values));
}

} // namespace

void RealTable::setColumn(std::size_t column, std::span<const double> values, FloatNarrowing& narrowing) {
    for (std::size_t row = 0; row < values.size(); ++row)
        cells[row * width + column] = narrowing.narrow(values[row]);
}

void DatasetWriter::writeIntegers(Qel::Mox2::DatasetType type, const std::vector<unsigned int>& values,
                                  const Ids& ids, const Qel::Mox2::Attributes& attributes) {
    if (values.empty() || ids.size() == 0)
        return;
    checkSize(values.size(), "a dataset of integers");
    model.addArrayProperty(type, Qel::Mox2::Array1d<unsigned int>(values), ids, Qel::Mox2::Step{},
                           attributes);
    ++summary.datasets;
}

void DatasetWriter::writeReals(const std::string& name, Qel::Mox2::DatasetType type, const RealTable& table,
                               const Ids& ids, const Qel::Mox2::Step& step,
                               const Qel::Mox2::Attributes& attributes) {
    if (table.rows() == 0 || ids.size() == 0)
        return;
    checkSize(table.numbers().size(), name);
    Qel::Mox2::Array2d<float> array(table.rows(), table.columns());
    array.copy_from(table.numbers().data());
    model.addArrayProperty(name, type, array, ids, step, attributes);
    ++summary.datasets;
}

} // namespace MoxTool
