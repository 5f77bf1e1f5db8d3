#pragma once

#include "random/Support/Call.h"
#include "random/Support/narrowed.h"

#include <Qel/Mox2/Array1d.h>
#include <Qel/Mox2/Array2d.h>

#include <bit>
#include <cstdint>
#include <stdexcept>
#include <vector>

namespace RandomUse {

/// A column and a table are made alike but for the arguments that give their size.
template <typename ArrayT>
struct Shape;

template <typename T>
struct Shape<Qel::Mox2::Array1d<T>> {
    using Element = T;
    static constexpr bool IsTable = false;

    template <typename Use, typename... Fill>
    static void construct(const AddArray& call, Use use, Fill... fill) {
        Qel::Mox2::Array1d<T> array(static_cast<std::size_t>(call.rows), fill...);
        use(array);
    }
    static void expectSize(const Qel::Mox2::Array1d<T>& array, std::int64_t rows, std::int64_t) {
        if (static_cast<std::int64_t>(array.size()) != rows) {
            throw std::logic_error("an Array1d has another size");
        }
    }
    static T& element(Qel::Mox2::Array1d<T>& array, std::size_t place, std::int64_t) {
        return place % 2 == 0 ? array[place] : array(place);
    }
    static const T& element(const Qel::Mox2::Array1d<T>& array, std::size_t place, std::int64_t) {
        return place % 2 == 0 ? array[place] : array(place);
    }
};

template <typename T>
struct Shape<Qel::Mox2::Array2d<T>> {
    using Element = T;
    static constexpr bool IsTable = true;

    template <typename Use, typename... Fill>
    static void construct(const AddArray& call, Use use, Fill... fill) {
        Qel::Mox2::Array2d<T> array(static_cast<std::size_t>(call.rows), static_cast<std::size_t>(call.cols),
                                    fill...);
        use(array);
    }
    static void expectSize(const Qel::Mox2::Array2d<T>& array, std::int64_t rows, std::int64_t cols) {
        if (static_cast<std::int64_t>(array.rows()) != rows ||
            static_cast<std::int64_t>(array.cols()) != cols ||
            static_cast<std::int64_t>(array.size()) != rows * cols) {
            throw std::logic_error("an Array2d has another size");
        }
    }
    static T& element(Qel::Mox2::Array2d<T>& array, std::size_t place, std::int64_t cols) {
        const auto width = static_cast<std::size_t>(cols);
        return array(place / width, place % width);
    }
    static const T& element(const Qel::Mox2::Array2d<T>& array, std::size_t place, std::int64_t cols) {
        const auto width = static_cast<std::size_t>(cols);
        return array(place / width, place % width);
    }
};

/// Makes the array of a call, in the way that the call says, and calls `use` with it.
/// @throws std::logic_error if the array does not have the size and the elements that it should.
template <typename ArrayT, typename Use>
class ArrayUse {
public:
    ArrayUse(const AddArray& call, Use use)
        : call_(call),
          use_(use),
          rows_(narrowed(call.rows)),
          cols_(Shape<ArrayT>::IsTable ? narrowed(call.cols) : 1) {
        for (const std::uint32_t bits : call.bits) {
            values_.push_back(std::bit_cast<Element>(bits));
        }
    }

    void run() {
        const auto checkAndUse = [this](const ArrayT& array) { check(array); };
        switch (call_.making) {
        case Making::Sized:
            construct([this](ArrayT& array) {
                if (!values_.empty()) {
                    array.copy_from(values_.data());
                }
                check(array);
            });
            break;
        case Making::Filled:
            construct(
                [this](ArrayT& array) {
                    setElements(array);
                    check(array);
                },
                Element{7});
            break;
        case Making::OfLongerVector:
            // A column has as many elements as its vector, and a table of a narrowed size has no end to stop at.
            if (Shape<ArrayT>::IsTable && call_.rows <= INT32_MAX && call_.cols <= INT32_MAX) {
                fromSequence(longer(), checkAndUse);
                break;
            }
            [[fallthrough]];
        case Making::OfVector:
            fromSequence(values_, checkAndUse);
            break;
        case Making::OfRange:
            fromRange(checkAndUse);
            break;
        case Making::Copied:
            construct([this](ArrayT& array) {
                setElements(array);
                check(ArrayT(array));
            });
            break;
        case Making::Assigned:
            construct([this](ArrayT& array) {
                setElements(array);
                assignTo(array);
            });
            break;
        }
    }

private:
    using Element = typename Shape<ArrayT>::Element;

    template <typename Action, typename... Fill>
    void construct(Action action, Fill... fill) {
        Shape<ArrayT>::construct(call_, action, fill...);
    }

    std::vector<Element> longer() const {
        std::vector<Element> values = values_;
        values.resize(values.size() + 5, Element{9});
        return values;
    }

    // The size of a column is that of the sequence: only sizes that memory can hold come about in this way.
    template <typename Action>
    void fromSequence(const std::vector<Element>& values, Action action) {
        if constexpr (Shape<ArrayT>::IsTable) {
            construct(action, values);
        } else if (rows_ == static_cast<std::int64_t>(values.size())) {
            action(ArrayT(values));
        } else {
            construct(action);
        }
    }

    template <typename Action>
    void fromRange(Action action) {
        Element* const begin = values_.data();
        Element* const end = begin + values_.size();
        if constexpr (Shape<ArrayT>::IsTable) {
            construct(action, begin, end);
        } else if (rows_ == static_cast<std::int64_t>(values_.size())) {
            action(ArrayT(begin, end));
        } else {
            construct(action);
        }
    }

    void setElements(ArrayT& array) const {
        for (std::size_t i = 0; i < values_.size(); ++i) {
            Shape<ArrayT>::element(array, i, cols_) = values_[i];
        }
    }

    // To an array of another size, then of the same.
    void assignTo(const ArrayT& array) {
        if constexpr (Shape<ArrayT>::IsTable) {
            ArrayT target(2, 3);
            target = array;
            target = array;
            check(target);
        } else {
            ArrayT target(4);
            target = array;
            target = array;
            check(target);
        }
    }

    void check(const ArrayT& array) {
        Shape<ArrayT>::expectSize(array, rows_, cols_);
        for (std::size_t i = 0; i < values_.size(); ++i) {
            const auto bits = std::bit_cast<std::uint32_t>(Shape<ArrayT>::element(array, i, cols_));
            if (bits != call_.bits[i]) {
                throw std::logic_error("an array has another element");
            }
        }
        use_(array);
    }

    const AddArray& call_;
    Use use_;
    std::int64_t rows_;
    std::int64_t cols_;
    std::vector<Element> values_;
};

template <typename Use>
void withArray(const AddArray& call, Use use) {
    if (call.isTable && call.isFloat) {
        ArrayUse<Qel::Mox2::Array2d<float>, Use>(call, use).run();
    } else if (call.isTable) {
        ArrayUse<Qel::Mox2::Array2d<unsigned int>, Use>(call, use).run();
    } else if (call.isFloat) {
        ArrayUse<Qel::Mox2::Array1d<float>, Use>(call, use).run();
    } else {
        ArrayUse<Qel::Mox2::Array1d<unsigned int>, Use>(call, use).run();
    }
}

} // namespace RandomUse
