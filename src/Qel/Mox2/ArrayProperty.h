#pragma once

#include <Qel/Data/Data.h>
#include <Qel/Mox/Geometry.h>
#include <Qel/Mox2/ArrayStorage.h>
#include <Qel/Mox2/AttributeMap.h>
#include <Qel/Mox2/DatasetType.h>
#include <Qel/Type/Traits.h>

#include <string>

namespace Qel::Mox2 {

/// An array with its attributes, its name and its dataset type.
/// @tparam DataT A Qel::Data::Data.
template <typename DataT>
class ArrayProperty final : public DataT {
public:
    ArrayProperty() = default;
    ArrayProperty(ArrayProperty&&) noexcept = default;
    ArrayProperty& operator=(ArrayProperty&&) noexcept = default;
    ~ArrayProperty() override = default;

    /// The number of columns of a type.
    /// @throws Exception::InvalidArguments "Can't guess result width for specified type" for an unknown type.
    static unsigned char widthFrom(DatasetType type);

    /// The default name of a type.
    /// @throws Exception::InvalidArguments "Can't guess result name for specified type" for an unknown type
    ///         and for one without a default name.
    static std::string nameFrom(DatasetType type);

    /// The type by which files know a dataset type.
    /// @throws Exception::InvalidArguments "Can't guess result type for specified type" for an unknown type.
    static QelMox::Geometry::VariableType geomTypeFrom(DatasetType type);

    std::string name;
    DatasetType type = NodeScalar;
    unsigned char width = 1;
};

template <typename T>
using ColumnProperty = ArrayProperty<Data::Data<ColumnArray<T>, AttributeMap, Type::Traits<T>>>;
template <typename T>
using TableProperty = ArrayProperty<Data::Data<TableArray<T>, AttributeMap, Type::Traits<T>>>;

extern template class ArrayProperty<
    Data::Data<ColumnArray<unsigned int>, AttributeMap, Type::Traits<unsigned int>>>;
extern template class ArrayProperty<Data::Data<ColumnArray<float>, AttributeMap, Type::Traits<float>>>;
extern template class ArrayProperty<
    Data::Data<TableArray<unsigned int>, AttributeMap, Type::Traits<unsigned int>>>;
extern template class ArrayProperty<Data::Data<TableArray<float>, AttributeMap, Type::Traits<float>>>;

} // namespace Qel::Mox2
