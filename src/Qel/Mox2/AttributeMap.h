#pragma once

#include <Qel/Mox2/VariantMap.h>

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace Qel::Mox2 {

/// All that an attribute can hold. Only a few of these can go into a file; see Helper::Attributes.
using AttributeVariant =
    std::variant<float, std::vector<float>, int, std::vector<int>, unsigned int, std::vector<unsigned int>,
                 std::string, std::vector<std::string>, std::wstring, std::vector<std::wstring>, double,
                 std::vector<double>, std::uint64_t, std::vector<std::uint64_t>, std::int64_t,
                 std::vector<std::int64_t>, bool, std::vector<bool>, unsigned char,
                 std::vector<unsigned char>, signed char, std::vector<signed char>, unsigned short,
                 std::vector<unsigned short>, short, std::vector<short>>;

/// The pairs of an Attributes, in byte order of their keys. A class of its own, so that Attributes can name
/// it without showing its contents.
struct AttributeMap : VariantMap<std::string, AttributeVariant> {
    using VariantMap::VariantMap;
};

} // namespace Qel::Mox2
