#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace MoxTool {

/// How the variables of a group relate to each other.
enum class GroupKind {
    Single,     ///< One variable.
    Vector,     ///< x, y, z; or x, y of a two-dimensional model.
    Tensor,     ///< xx, yy, zz, xy, yz, zx.
    VectorPair, ///< x, y, z of a displacement, then x, y, z of a rotation.
};

/// One dataset to be made from one variable, or from several that are the components of one quantity.
struct VariableGroup {
    std::string name;
    GroupKind kind;
    /// Places of the variables in the list that was grouped, in the order of the columns.
    std::vector<std::size_t> variables;
};

/// Finds vectors and six-component tensors among the variables of a file by the last parts of their names.
///
/// A name is a base, perhaps an underscore, component letters, and perhaps an underscore and a number (of an
/// integration point): "stress_xx", "DispX", "stress_xx_3". Names with the same base, underscore and number
/// are one quantity, named by the base and the number: "stress", "Disp", "stress_3".
/// - The letters xx, yy, zz, xy, yz, zx (or xz for zx) make six values, if all are there.
/// - The letters x, y, z make a vector, if all are there, or if x and y are there in a two-dimensional model.
/// - Letters are of either case, but two letters are of the same case: "VelocityY" is the y of "Velocity".
/// - The base must be the same to the letter and not be empty.
/// - A name that ends in two component letters is never a part of a vector.
/// - What is not part of a complete quantity stays as it is. Of two names for one component the first is
/// used.
class ComponentGrouping {
public:
    /// @param names     Variables of one kind, in the file's order.
    /// @param dimension The dimension of the model, from 1 to 3.
    /// @return every variable in exactly one group, in the order of the groups' first variables in the file.
    ///         Names of groups are not made unique.
    static std::vector<VariableGroup> group(const std::vector<std::string>& names, int dimension);
};

/// Whether a group is a vector, or a pair of vectors, named disp, displ or displacement (in any case).
bool isDisplacement(const VariableGroup& group);

/// Appends the columns of the only rotation (a vector named rot, rotation or rotations, in any case) to the
/// only displacement, which becomes a VectorPair, and drops the rotation's own group. Changes nothing unless
/// there is exactly one of each, with three variables each.
std::vector<VariableGroup> joinRotation(std::vector<VariableGroup> groups);

} // namespace MoxTool
