#include "DatasetWriter.h"

#include "../../common/BlockSizeSetting.h"
#include "BlockTooSmall.h"
#include "ImportLimits.h"
#include "safeBlockSize.h"

namespace MoxTool {

namespace {

// Where no size is safe, the import goes on: few datasets can be saved with blocks of any size, and the finished file
// is looked at.
void requireLargerBlock(std::size_t values) {
    const auto bytes = std::uint64_t{values} * sizeof(float);
    const auto safeSize = safeBlockSize(bytes);
    if (bytes >= BlockSizeSetting::present() && safeSize) {
        throw BlockTooSmall{*safeSize};
    }
}

} // namespace

void DatasetWriter::writeIntegers(Qel::Mox2::DatasetType type, const std::vector<unsigned int>& values,
                                  const Ids& ids, const Qel::Mox2::Attributes& attributes) {
    if (values.empty() || ids.size() == 0) {
        return;
    }
    ImportLimits::checkDatasetSize(values.size(), "a dataset of integers");
    requireLargerBlock(values.size());
    model_.addArrayProperty(type, Qel::Mox2::Array1d<unsigned int>(values), ids, Qel::Mox2::Step{},
                            attributes);
    ++summary_.datasets;
}

void DatasetWriter::writeReals(const std::string& name, Qel::Mox2::DatasetType type, const RealTable& table,
                               const Ids& ids, const Qel::Mox2::Step& step,
                               const Qel::Mox2::Attributes& attributes) {
    if (table.rows() == 0 || ids.size() == 0) {
        return;
    }
    ImportLimits::checkDatasetSize(table.numbers().size(), name);
    requireLargerBlock(table.numbers().size());
    Qel::Mox2::Array2d<float> array(table.rows(), table.columns());
    array.copy_from(table.numbers().data());
    model_.addArrayProperty(name, type, array, ids, step, attributes);
    ++summary_.datasets;
}

} // namespace MoxTool
