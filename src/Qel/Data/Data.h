#pragma once

namespace Qel::Data {

/// An array with attributes.
/// @tparam TraitsT Gives the type of the elements; see Qel::Type::Traits.
template <typename ArrayT, typename MapT, typename TraitsT>
class Data {
public:
    using Array = ArrayT;
    using Map = MapT;
    using Traits = TraitsT;

    Data() = default;
    Data(const Data&) = delete;
    Data& operator=(const Data&) = delete;
    Data(Data&&) noexcept = default;
    Data& operator=(Data&&) noexcept = default;
    virtual ~Data() = default;

    ArrayT data;
    MapT attributes;
};

} // namespace Qel::Data
