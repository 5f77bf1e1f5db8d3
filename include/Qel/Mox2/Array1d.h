#pragma once

#include <Qel/Util/Export.h>

#include <cstddef>
#include <initializer_list>
#include <vector>

namespace Qel::Mox2 {

/// A column of numbers. A plain value: copies are deep.
///
/// Sizes are narrowed to a signed 32-bit number: higher bits are lost, and a size with bit 31 set becomes
/// negative, holds no elements and is refused by Model::addArrayProperty() with
/// Qel::Exception::UnderflowError. If the narrowed size is smaller than the sequence, the array takes the
/// beginning of the sequence.
///
/// @tparam T `float` or `unsigned int`.
/// @throws std::bad_alloc from every operation that allocates.
template <typename T>
class MOXWRITER_EXPORT Array1d {
public:
    /// `size` elements with undefined values.
    Array1d(std::size_t size = 0);
    /// `size` elements of one value. Two numbers in braces are the elements themselves: `(2, 7)` is 7, 7 and
    /// `{2, 7}` is 2, 7.
    Array1d(std::size_t size, const T& value);
    /// The elements from `begin` up to `end`.
    Array1d(T* begin, T* end);
    /// The elements of `values`.
    Array1d(const std::vector<T>& values);
    /// The elements that stand in braces.
    Array1d(const std::initializer_list<T>& values);
    /// @throws std::bad_alloc also if the size of `other` is negative.
    Array1d(const Array1d& other);
    /// Copies deeply. @throws std::bad_alloc also if the size of `other` is negative.
    const Array1d& operator=(const Array1d& other);
    ~Array1d();

    /// The number of elements.
    std::size_t size() const;

    /// The element at `index`, counted from 0. The index is not checked.
    const T& operator[](std::size_t index) const;
    /// The same for writing.
    T& operator[](std::size_t index);
    /// The element at `index`, as by `[]`.
    const T& operator()(std::size_t index) const;
    /// The same for writing.
    T& operator()(std::size_t index);

    /// Copies size() elements from `source`, which must hold at least that many. The fastest way to fill an
    /// array.
    void copy_from(const T* source);

private:
    friend class Model;
    struct Storage;

    Storage* storage_;
};

extern template class Array1d<unsigned int>;
extern template class Array1d<float>;

} // namespace Qel::Mox2
