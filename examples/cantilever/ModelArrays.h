#pragma once

#include "Mesh.h"

#include <Qel/Mox2/Array1d.h>
#include <Qel/Mox2/Array2d.h>

#include <Eigen/Core>

#include <cstddef>

namespace Cantilever {

/// A table of the solver in single precision: one row for each node or element.
template <typename Derived>
Qel::Mox2::Array2d<float> toArray(const Eigen::MatrixBase<Derived>& table) {
    using FloatTable = Eigen::Array<float, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>;
    const FloatTable values = table.template cast<float>();
    Qel::Mox2::Array2d<float> array(static_cast<std::size_t>(values.rows()),
                                    static_cast<std::size_t>(values.cols()));
    array.copy_from(values.data());
    return array;
}

/// The rows of a table of all elements that belong to a part, as an array.
template <typename Derived>
Qel::Mox2::Array2d<float> toArray(const Eigen::MatrixBase<Derived>& table, const Part& part) {
    return toArray(table.middleRows(static_cast<Eigen::Index>(part.firstElement),
                                    static_cast<Eigen::Index>(part.elementCount)));
}

/// The nodes of all elements of a part, one element after the other, counted from zero.
Qel::Mox2::Array1d<unsigned int> connectivity(const Mesh& mesh, const Part& part);

/// How many nodes each element of a part has: eight.
Qel::Mox2::Array1d<unsigned int> nodeCounts(const Part& part);

/// `count` consecutive numbers: the ids by which users know nodes and elements.
Qel::Mox2::Array1d<unsigned int> consecutive(std::size_t first, std::size_t count);

} // namespace Cantilever
