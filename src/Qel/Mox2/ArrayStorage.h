#pragma once

#include <Qel/Mox2/Array1d.h>
#include <Qel/Mox2/Array2d.h>

#include <Eigen/Core>

#include <cstddef>
#include <cstdint>

namespace Qel::Mox2 {

/// The storage behind Array1d: a column.
template <typename T>
using ColumnArray = Eigen::Array<T, Eigen::Dynamic, 1>;

/// The storage behind Array2d, row-major.
template <typename T>
using TableArray = Eigen::Array<T, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>;

/// The ids that an operation works on.
using IdArray = ColumnArray<unsigned int>;

/// Cuts a size down to a signed 32-bit number, which can come out negative: the arrays' storage then holds
/// nothing and keeps the negative size, which is refused where the array is used.
inline Eigen::Index narrowedSize(std::size_t size) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(size));
}

/// Makes `target` a copy of `source`, reusing its memory if the number of elements stays the same.
///
/// Eigen frees the old memory before it allocates, and if that fails the array still points to the old
/// memory. An array that has been emptied first points to nothing.
/// @throws std::bad_alloc if there is no memory for the elements; `target` is then empty.
template <typename StorageT>
void assignStorage(StorageT& target, const StorageT& source) {
    if (target.size() != source.size()) {
        target.resize(0, target.cols());
    }
    target = source;
}

template <typename T>
struct Array1d<T>::Storage : ColumnArray<T> {
    using ColumnArray<T>::ColumnArray;
};

template <typename T>
struct Array2d<T>::Storage : TableArray<T> {
    using TableArray<T>::TableArray;
};

} // namespace Qel::Mox2
