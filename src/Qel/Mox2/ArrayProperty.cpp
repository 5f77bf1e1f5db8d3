#include <Qel/Mox2/ArrayProperty.h>

#include <Qel/Exception/Throw.h>

#include <array>
#include <cstddef>
#include <string_view>

namespace Qel::Mox2 {

namespace {

using QelMox::VariableType;

struct DatasetTypeRow {
    unsigned char width;
    std::string_view defaultName; ///< Empty for a type without one.
    VariableType variableType;
};

// By the numbers of DatasetType.
constexpr std::array<DatasetTypeRow, 31> DatasetTypes = {{
    {1, "Connectivity", VariableType::Connectivity0},
    {1, "Connectivity", VariableType::Connectivity1},
    {1, "Connectivity", VariableType::Connectivity2},
    {1, "Polylength", VariableType::Polylength},
    {1, "Polylength", VariableType::Polylength},
    {1, "Polylength", VariableType::Polylength},
    {1, "Part Elements", VariableType::Connectivity0},
    {1, "Part Elements", VariableType::Connectivity1},
    {1, "Part Elements", VariableType::Connectivity2},
    {3, "Coordinates", VariableType::Coordinates},
    {1, {}, VariableType::NodeScalar},
    {3, {}, VariableType::NodeVector},
    {6, {}, VariableType::NodeSixA},
    {6, {}, VariableType::NodeSixB},
    {1, {}, VariableType::ElementScalar},
    {3, {}, VariableType::ElementVector},
    {6, {}, VariableType::ElementSixA},
    {6, {}, VariableType::ElementSixB},
    {1, {}, VariableType::ThirdScalar},
    {3, {}, VariableType::ThirdVector},
    {6, {}, VariableType::ThirdSixA},
    {6, {}, VariableType::ThirdSixB},
    {1, {}, VariableType::FourthScalarA},
    {1, {}, VariableType::FourthScalarB},
    {3, {}, VariableType::FourthVector},
    {6, {}, VariableType::FourthSixA},
    {6, {}, VariableType::FourthSixB},
    {1, "Node Ids", VariableType::NodeScalar},
    {1, "Element IDs", VariableType::ElementScalar},
    {3, "Displacement", VariableType::NodeVector},
    {6, "Displacement", VariableType::NodeSixA},
}};

// The row of a type, null for an unknown one.
constexpr const DatasetTypeRow* rowOf(DatasetType type) {
    const auto number = static_cast<std::size_t>(static_cast<unsigned int>(type));
    return number < DatasetTypes.size() ? &DatasetTypes[number] : nullptr;
}

static_assert(rowOf(DisplacementSix) == &DatasetTypes.back());

} // namespace

template <typename DataT>
unsigned char ArrayProperty<DataT>::widthFrom(DatasetType type) {
    const DatasetTypeRow* const row = rowOf(type);
    if (row == nullptr) {
        QEL_THROW(Exception::InvalidArguments("Can't guess result width for specified type"));
    }
    return row->width;
}

template <typename DataT>
std::string ArrayProperty<DataT>::nameFrom(DatasetType type) {
    const DatasetTypeRow* const row = rowOf(type);
    if (row == nullptr || row->defaultName.empty()) {
        QEL_THROW(Exception::InvalidArguments("Can't guess result name for specified type"));
    }
    return std::string(row->defaultName);
}

template <typename DataT>
QelMox::Geometry::VariableType ArrayProperty<DataT>::geomTypeFrom(DatasetType type) {
    const DatasetTypeRow* const row = rowOf(type);
    if (row == nullptr) {
        QEL_THROW(Exception::InvalidArguments("Can't guess result type for specified type"));
    }
    return row->variableType;
}

template class ArrayProperty<Data::Data<ColumnArray<unsigned int>, AttributeMap, Type::Traits<unsigned int>>>;
template class ArrayProperty<Data::Data<ColumnArray<float>, AttributeMap, Type::Traits<float>>>;
template class ArrayProperty<Data::Data<TableArray<unsigned int>, AttributeMap, Type::Traits<unsigned int>>>;
template class ArrayProperty<Data::Data<TableArray<float>, AttributeMap, Type::Traits<float>>>;

} // namespace Qel::Mox2
