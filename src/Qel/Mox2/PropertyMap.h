#pragma once

#include <Qel/Mox2/PropertyType.h>
#include <Qel/Mox2/VariantMap.h>

#include <string>
#include <variant>
#include <vector>

namespace Qel::Mox2 {

/// What a property can hold.
using PropertyValue = std::variant<int, float, std::string, std::vector<int>, std::vector<float>>;

/// The properties of a NodeProperties, in ascending order of their signed numbers. A class of its own, so
/// that NodeProperties can name it without showing its contents.
struct PropertyMap : VariantMap<PropertyType, PropertyValue> {
    using VariantMap::VariantMap;
};

} // namespace Qel::Mox2
