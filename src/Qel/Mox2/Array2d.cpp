#include <Qel/Mox2/Array2d.h>

#include <Qel/Mox2/ArrayStorage.h>

#include <algorithm>
#include <utility>

namespace Qel::Mox2 {

namespace {

// Row-major storage takes a sequence as it comes: surplus input is ignored, and elements that the input
// doesn't reach stay unset.
template <typename T, typename Storage>
void fill(const T* begin, std::size_t count, Storage& storage) {
    const Eigen::Index available = std::max<Eigen::Index>(storage.size(), 0);
    std::copy_n(begin, std::min(static_cast<std::size_t>(available), count), storage.data());
}

} // namespace

template <typename T>
Array2d<T>::Array2d(std::size_t rows, std::size_t cols)
    : storage_(new Storage(narrowedSize(rows), narrowedSize(cols))) {}

template <typename T>
Array2d<T>::Array2d(std::size_t rows, std::size_t cols, const T& value) : Array2d(rows, cols) {
    std::fill_n(storage_->data(), std::max<Eigen::Index>(storage_->size(), 0), value);
}

template <typename T>
Array2d<T>::Array2d(std::size_t rows, std::size_t cols, T* const begin, T* const end) : Array2d(rows, cols) {
    fill(begin, static_cast<std::size_t>(end - begin), *storage_);
}

template <typename T>
Array2d<T>::Array2d(std::size_t rows, std::size_t cols, const std::vector<T>& values) : Array2d(rows, cols) {
    fill(values.data(), values.size(), *storage_);
}

template <typename T>
Array2d<T>::Array2d(std::size_t rows, std::size_t cols, const std::initializer_list<T>& values)
    : Array2d(rows, cols) {
    fill(values.begin(), values.size(), *storage_);
}

template <typename T>
Array2d<T>::Array2d(const Array2d& other) : storage_(new Storage(*other.storage_)) {}

template <typename T>
const Array2d<T>& Array2d<T>::operator=(const Array2d& other) {
    assignStorage(*storage_, *other.storage_);
    return *this;
}

template <typename T>
Array2d<T>::~Array2d() {
    delete std::exchange(storage_, nullptr);
}

template <typename T>
std::size_t Array2d<T>::rows() const {
    return static_cast<std::size_t>(storage_->rows());
}

template <typename T>
std::size_t Array2d<T>::cols() const {
    return static_cast<std::size_t>(storage_->cols());
}

template <typename T>
std::size_t Array2d<T>::size() const {
    return static_cast<std::size_t>(storage_->size());
}

template <typename T>
const T& Array2d<T>::operator()(std::size_t row, std::size_t col) const {
    return storage_->data()[row * cols() + col];
}

template <typename T>
T& Array2d<T>::operator()(std::size_t row, std::size_t col) {
    return storage_->data()[row * cols() + col];
}

template <typename T>
void Array2d<T>::copy_from(const T* const source) {
    fill(source, size(), *storage_);
}

template class Array2d<unsigned int>;
template class Array2d<float>;

} // namespace Qel::Mox2
