#include <Qel/Mox2/Array1d.h>

#include <Qel/Mox2/ArrayStorage.h>

#include <algorithm>
#include <utility>

namespace Qel::Mox2 {

namespace {

// As many elements of a sequence as the storage has.
template <typename Sequence, typename Storage>
void copyBeginning(const Sequence* begin, Storage& storage) {
    std::copy_n(begin, std::max<Eigen::Index>(storage.size(), 0), storage.data());
}

} // namespace

template <typename T>
Array1d<T>::Array1d(std::size_t size) : storage(new Storage(narrowedSize(size))) {}

template <typename T>
Array1d<T>::Array1d(std::size_t size, const T& value) : Array1d(size) {
    std::fill_n(storage->data(), std::max<Eigen::Index>(storage->size(), 0), value);
}

template <typename T>
Array1d<T>::Array1d(T* const begin, T* const end) : Array1d(static_cast<std::size_t>(end - begin)) {
    copyBeginning(begin, *storage);
}

template <typename T>
Array1d<T>::Array1d(const std::vector<T>& values) : Array1d(values.size()) {
    copyBeginning(values.data(), *storage);
}

template <typename T>
Array1d<T>::Array1d(const std::initializer_list<T>& values) : Array1d(values.size()) {
    copyBeginning(values.begin(), *storage);
}

template <typename T>
Array1d<T>::Array1d(const Array1d& other) : storage(new Storage(*other.storage)) {}

template <typename T>
const Array1d<T>& Array1d<T>::operator=(const Array1d& other) {
    assignStorage(*storage, *other.storage);
    return *this;
}

template <typename T>
Array1d<T>::~Array1d() {
    delete std::exchange(storage, nullptr);
}

template <typename T>
std::size_t Array1d<T>::size() const {
    return static_cast<std::size_t>(storage->size());
}

template <typename T>
const T& Array1d<T>::operator[](std::size_t index) const {
    return storage->data()[index];
}

template <typename T>
T& Array1d<T>::operator[](std::size_t index) {
    return storage->data()[index];
}

template <typename T>
const T& Array1d<T>::operator()(std::size_t index) const {
    return storage->data()[index];
}

template <typename T>
T& Array1d<T>::operator()(std::size_t index) {
    return storage->data()[index];
}

template <typename T>
void Array1d<T>::copy_from(const T* const source) {
    copyBeginning(source, *storage);
}

template class Array1d<unsigned int>;
template class Array1d<float>;

} // namespace Qel::Mox2
