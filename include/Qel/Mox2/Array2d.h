#pragma once

#include <Qel/Util/Export.h>

#include <cstddef>
#include <initializer_list>
#include <vector>

namespace Qel::Mox2 {

/// A table of numbers, row-major: one row for each node or element, one column for each component. A plain
/// value: copies are deep.
///
/// Rows and columns are narrowed to signed 32-bit numbers: higher bits are lost, and a count with bit 31 set
/// becomes negative. A table with a negative number of rows holds no elements and is refused by
/// Model::addArrayProperty() with Qel::Exception::UnderflowError.
///
/// @tparam T `float` or `unsigned int`.
/// @throws std::bad_alloc from every operation that allocates, and for sizes whose product is out of range.
template <typename T>
class MOXWRITER_EXPORT Array2d {
public:
    /// `rows` times `cols` elements with undefined values.
    Array2d(std::size_t rows = 0, std::size_t cols = 0);
    /// `rows` times `cols` elements of one value.
    Array2d(std::size_t rows, std::size_t cols, const T& value);
    /// Filled row by row from a sequence. Surplus elements of the sequence are ignored; elements of the table
    /// that it does not reach have undefined values.
    Array2d(std::size_t rows, std::size_t cols, T* begin, T* end);
    /// The same from a vector, which must not be shorter than the table if all elements are to have values.
    Array2d(std::size_t rows, std::size_t cols, const std::vector<T>& values);
    /// The same from the elements that stand in braces.
    Array2d(std::size_t rows, std::size_t cols, const std::initializer_list<T>& values);
    /// @throws std::bad_alloc also if the number of elements of `other` is negative.
    Array2d(const Array2d& other);
    /// Keeps its memory if the number of elements stays the same.
    const Array2d& operator=(const Array2d& other);
    ~Array2d();

    /// The number of rows.
    std::size_t rows() const;
    /// The number of columns.
    std::size_t cols() const;
    /// rows() times cols().
    std::size_t size() const;

    /// The element at a row and a column, both counted from 0. Neither is checked.
    const T& operator()(std::size_t row, std::size_t col) const;
    /// The same for writing.
    T& operator()(std::size_t row, std::size_t col);

    /// Copies size() elements, row by row, from `source`, which must hold at least that many. The fastest way
    /// to fill an array.
    void copy_from(const T* source);

private:
    friend class Model;
    struct Storage;

    Storage* storage_;
};

extern template class Array2d<unsigned int>;
extern template class Array2d<float>;

} // namespace Qel::Mox2
