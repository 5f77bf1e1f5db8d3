#include <Qel/Mox2/Array1d.h>

#include <Qel/Mox2/ArrayStorage.h>

#include <algorithm>
#include <utility>

namespace Qel::Mox2 {

namespace {

// Copies as many elements of a sequence as the storage has.
template <typename Sequence, typename Storage>
void copyBeginning(const Sequence* begin, Storage& storage) {
    std::copy_n(begin, std::max<Eigen::Index>(storage.size(), 0), storage.data());
}

} // namespace

template <typename T>
Array1d<T>::Array1d(std::size_t size) : storage_(new Storage(narrowedSize(size))) {}

template <typename T>
Array1d<T>::Array1d(std::size_t size, const T& value) : Array1d(size) {
    std::fill_n(storage_->data(), std::max<Eigen::Index>(storage_->size(), 0), value);
}

template <typename T>
Array1d<T>::Array1d(T* const begin, T* const end) : Array1d(static_cast<std::size_t>(end - begin)) {
    copyBeginning(begin, *storage_);
}

template <typename T>
Array1d<T>::Array1d(const std::vector<T>& values) : Array1d(values.size()) {
    copyBeginning(values.data(), *storage_);
}

template <typename T>
Array1d<T>::Array1d(const std::initializer_list<T>& values) : Array1d(values.size()) {
    copyBeginning(values.begin(), *storage_);
}

template <typename T>
Array1d<T>::Array1d(const Array1d& other) : storage_(new Storage(*other.storage_)) {}

template <typename T>
const Array1d<T>& Array1d<T>::operator=(const Array1d& other) {
    assignStorage(*storage_, *other.storage_);
    return *this;
}

template <typename T>
Array1d<T>::~Array1d() {
    delete std::exchange(storage_, nullptr);
}

template <typename T>
std::size_t Array1d<T>::size() const {
    return static_cast<std::size_t>(storage_->size());
}

template <typename T>
const T& Array1d<T>::operator[](std::size_t index) const {
    return storage_->data()[index];
}

template <typename T>
T& Array1d<T>::operator[](std::size_t index) {
    return storage_->data()[index];
}

template <typename T>
const T& Array1d<T>::operator()(std::size_t index) const {
    return storage_->data()[index];
}

template <typename T>
T& Array1d<T>::operator()(std::size_t index) {
    return storage_->data()[index];
}

template <typename T>
void Array1d<T>::copy_from(const T* const source) {
    copyBeginning(source, *storage_);
}

template class Array1d<unsigned int>;
template class Array1d<float>;

} // namespace Qel::Mox2
