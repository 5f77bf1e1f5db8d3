#pragma once

namespace Qel::Data {

/// An array, which is not copied, with a copy of its attributes.
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

    /// Not owned: the caller's array, which must live as long as the object is used.
    const ArrayT* data = nullptr;
    MapT attributes;
};

} // namespace Qel::Data
