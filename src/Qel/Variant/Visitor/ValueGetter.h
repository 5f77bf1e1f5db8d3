#pragma once

#include <Qel/Exception/Throw.h>

#include <variant>

namespace Qel::Variant::Visitor {

/// Reads a `T` out of a variant that holds exactly a `T`. Nothing is converted.
template <typename T>
struct ValueGetter {
    T operator()(const T& value) const { return value; }

    /// @throws Exception::TemplateSpecializationNotDefined always.
    template <typename Other>
    T operator()(const Other&) const {
        QEL_THROW(Exception::TemplateSpecializationNotDefined());
    }
};

/// @throws Exception::TemplateSpecializationNotDefined unless the variant holds exactly a `T`.
/// @throws std::bad_variant_access for a variant that lost its value through an exception.
template <typename T, typename VariantT>
T getValue(const VariantT& value) {
    if (value.valueless_by_exception()) {
        throw std::bad_variant_access();
    }
    return std::visit(ValueGetter<T>(), value);
}

} // namespace Qel::Variant::Visitor
