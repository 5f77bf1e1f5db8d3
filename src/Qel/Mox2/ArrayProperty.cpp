#include <Qel/Mox2/ArrayProperty.h>

#include <Qel/Exception/Throw.h>

#include <optional>
#include <string_view>

namespace Qel::Mox2 {

namespace {

using QelMox::VariableType;

struct DatasetTypeRow {
    unsigned char width;
    std::string_view defaultName; ///< Empty for a type without one.
    VariableType variableType;
};

// Makes a dataset type without a row a compile error.
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic error "-Wswitch"
#endif

// Empty for a number that is no dataset type.
constexpr std::optional<DatasetTypeRow> rowOf(DatasetType type) {
    switch (type) {
    case Connectivity0:
        return DatasetTypeRow{1, "Connectivity", VariableType::Connectivity0};
    case Connectivity1:
        return DatasetTypeRow{1, "Connectivity", VariableType::Connectivity1};
    case Connectivity2:
        return DatasetTypeRow{1, "Connectivity", VariableType::Connectivity2};
    case Polylength0:
        return DatasetTypeRow{1, "Polylength", VariableType::Polylength};
    case Polylength1:
        return DatasetTypeRow{1, "Polylength", VariableType::Polylength};
    case Polylength2:
        return DatasetTypeRow{1, "Polylength", VariableType::Polylength};
    case PartElements0:
        return DatasetTypeRow{1, "Part Elements", VariableType::Connectivity0};
    case PartElements1:
        return DatasetTypeRow{1, "Part Elements", VariableType::Connectivity1};
    case PartElements2:
        return DatasetTypeRow{1, "Part Elements", VariableType::Connectivity2};
    case Coordinates:
        return DatasetTypeRow{3, "Coordinates", VariableType::Coordinates};
    case NodeScalar:
        return DatasetTypeRow{1, {}, VariableType::NodeScalar};
    case NodeVector:
        return DatasetTypeRow{3, {}, VariableType::NodeVector};
    case NodeSixA:
        return DatasetTypeRow{6, {}, VariableType::NodeSixA};
    case NodeSixB:
        return DatasetTypeRow{6, {}, VariableType::NodeSixB};
    case ElementScalar:
        return DatasetTypeRow{1, {}, VariableType::ElementScalar};
    case ElementVector:
        return DatasetTypeRow{3, {}, VariableType::ElementVector};
    case ElementSixA:
        return DatasetTypeRow{6, {}, VariableType::ElementSixA};
    case ElementSixB:
        return DatasetTypeRow{6, {}, VariableType::ElementSixB};
    case ThirdScalar:
        return DatasetTypeRow{1, {}, VariableType::ThirdScalar};
    case ThirdVector:
        return DatasetTypeRow{3, {}, VariableType::ThirdVector};
    case ThirdSixA:
        return DatasetTypeRow{6, {}, VariableType::ThirdSixA};
    case ThirdSixB:
        return DatasetTypeRow{6, {}, VariableType::ThirdSixB};
    case FourthScalarA:
        return DatasetTypeRow{1, {}, VariableType::FourthScalarA};
    case FourthScalarB:
        return DatasetTypeRow{1, {}, VariableType::FourthScalarB};
    case FourthVector:
        return DatasetTypeRow{3, {}, VariableType::FourthVector};
    case FourthSixA:
        return DatasetTypeRow{6, {}, VariableType::FourthSixA};
    case FourthSixB:
        return DatasetTypeRow{6, {}, VariableType::FourthSixB};
    case NodeIds:
        return DatasetTypeRow{1, "Node Ids", VariableType::NodeScalar};
    case ElementIds:
        return DatasetTypeRow{1, "Element IDs", VariableType::ElementScalar};
    case DisplacementVector:
        return DatasetTypeRow{3, "Displacement", VariableType::NodeVector};
    case DisplacementSix:
        return DatasetTypeRow{6, "Displacement", VariableType::NodeSixA};
    }
    return std::nullopt;
}

#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

} // namespace

template <typename DataT>
unsigned char ArrayProperty<DataT>::widthFrom(DatasetType type) {
    const std::optional<DatasetTypeRow> row = rowOf(type);
    if (!row) {
        QEL_THROW(Exception::InvalidArguments("Can't guess result width for specified type"));
    }
    return row->width;
}

template <typename DataT>
std::string ArrayProperty<DataT>::nameFrom(DatasetType type) {
    const std::optional<DatasetTypeRow> row = rowOf(type);
    if (!row || row->defaultName.empty()) {
        QEL_THROW(Exception::InvalidArguments("Can't guess result name for specified type"));
    }
    return std::string(row->defaultName);
}

template <typename DataT>
QelMox::Geometry::VariableType ArrayProperty<DataT>::geomTypeFrom(DatasetType type) {
    const std::optional<DatasetTypeRow> row = rowOf(type);
    if (!row) {
        QEL_THROW(Exception::InvalidArguments("Can't guess result type for specified type"));
    }
    return row->variableType;
}

template class ArrayProperty<Data::Data<ColumnArray<unsigned int>, AttributeMap, Type::Traits<unsigned int>>>;
template class ArrayProperty<Data::Data<ColumnArray<float>, AttributeMap, Type::Traits<float>>>;
template class ArrayProperty<Data::Data<TableArray<unsigned int>, AttributeMap, Type::Traits<unsigned int>>>;
template class ArrayProperty<Data::Data<TableArray<float>, AttributeMap, Type::Traits<float>>>;

} // namespace Qel::Mox2
