#pragma once

#include <Qel/Base/Modifier.h>
#include <Qel/Mox/Geometry.h>
#include <Qel/Mox2/ArrayProperty.h>
#include <Qel/Mox2/ArrayStorage.h>
#include <Qel/Mox2/Database.h>
#include <Qel/Mox2/StepData.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace Qel::Mox2::Adder {

/// Writes an array once and records it at each geometry for each step; see Model::addArrayProperty().
/// @tparam PropertyT A Qel::Mox2::ArrayProperty.
/// @tparam IdsT      IdArray.
/// @tparam StepsT    A `std::vector` of StepData.
template <typename PropertyT, typename IdsT, typename StepsT>
class ArrayProperty final : public Base::Modifier<Database> {
public:
    /// @param ids, steps Must live as long as the operation.
    ArrayProperty(PropertyT property, const IdsT& ids, const StepsT& steps)
        : property_(std::move(property)), ids_(ids), steps_(steps) {}

    void update(Database& database) override;

private:
    // The entry that holds the numbers, to which all others are links.
    struct Holder {
        bool first = true;
        unsigned int nodeId = 0;
        unsigned int index = 0;
    };
    // What the entries of a step have in common.
    struct StepContent {
        std::string key;
        QelUtil::AttributeList attributes;
    };

    void record(QelMox::Tree& tree, std::uint64_t position, QelMox::VariableType variableType) const;
    StepContent contentOf(const StepData& step, const QelUtil::AttributeList& propertyAttributes) const;
    std::string keyOf(const StepData& step) const;
    void describeNumbers(QelMox::DatasetEntry& entry, QelMox::VariableType variableType) const;

    PropertyT property_;
    const IdsT& ids_;
    const StepsT& steps_;
};

extern template class ArrayProperty<ColumnProperty<unsigned int>, IdArray, std::vector<StepData>>;
extern template class ArrayProperty<ColumnProperty<float>, IdArray, std::vector<StepData>>;
extern template class ArrayProperty<TableProperty<unsigned int>, IdArray, std::vector<StepData>>;
extern template class ArrayProperty<TableProperty<float>, IdArray, std::vector<StepData>>;

} // namespace Qel::Mox2::Adder
