#pragma once

#include <Qel/Exception/Throw.h>
#include <Qel/Mox2/AttributeMap.h>
#include <Qel/Util/AttributeList.h>
#include <Qel/Util/AttributeValue.h>

#include <cstdint>
#include <string>
#include <vector>

/// Converts an application's attributes into those of the tree.
namespace Qel::Mox2::Helper::Attributes {

/// Converts what an attribute holds into what a file keeps: `float`, `double`, `int`, the low 32 bits of a
/// 64-bit integer, and text. Everything else is refused, including `unsigned int` and all lists.
struct AttributeValueGetter {
    QelUtil::AttributeValue operator()(float value) const { return QelUtil::AttributeValue(value); }
    // Kept though nothing calls it; see docs/oddities.md.
    QelUtil::AttributeValue operator()(double value) const { return QelUtil::AttributeValue(value); }
    QelUtil::AttributeValue operator()(int value) const {
        return QelUtil::AttributeValue(static_cast<std::uint32_t>(value));
    }
    // Kept though nothing calls it; see docs/oddities.md.
    QelUtil::AttributeValue operator()(std::int64_t value) const {
        return QelUtil::AttributeValue(static_cast<std::uint32_t>(value));
    }
    QelUtil::AttributeValue operator()(const std::string& value) const {
        return QelUtil::AttributeValue(value);
    }

    /// @throws Exception::InvalidArguments always.
    template <typename T>
    QelUtil::AttributeValue operator()(const T&) const {
        QEL_THROW(Exception::InvalidArguments());
    }
    /// @throws Exception::InvalidArguments always.
    template <typename T>
    QelUtil::AttributeValue operator()(const std::vector<T>&) const {
        QEL_THROW(Exception::InvalidArguments());
    }
};

/// @throws Exception::InvalidArguments if a value is of a kind that a file can't keep.
/// @throws std::bad_variant_access for an attribute that lost its value through an exception.
QelUtil::AttributeList toAttributeList(const AttributeMap& map);

} // namespace Qel::Mox2::Helper::Attributes
