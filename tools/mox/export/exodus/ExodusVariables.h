#pragma once

#include "../../mesh/ModelResults.h"
#include "CutTexts.h"

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace MoxTool {

/// The variables of an Exodus file for the results of one place. A variable has one number for each node or
/// element, so each column of a result becomes one.
///
/// A column is named by the component that the attributes give for it; otherwise by its result and, if that
/// has more than one column, _x _y _z, _xx _yy _zz _xy _yz _zx, or a number. A displacement of six columns
/// gives Displacement_x and so on, and Rotation_x and so on. Columns of one name that have no target in
/// common are one variable; otherwise the later one gets " (2)" after its name.
class ExodusVariables {
public:
    /// The variables of one result.
    struct FieldColumns {
        const ResultField* field;
        std::vector<std::size_t> variables; ///< For each of its columns, starting with the first.
    };

    /// @param all       Outlives this object.
    /// @param mapFields Results that become id maps, and no variables.
    /// @param cutTexts  Learns of names that are too long.
    ExodusVariables(const ModelResults& all, ResultPlace place,
                    const std::vector<const ResultField*>& mapFields, CutTexts& cutTexts);

    std::vector<std::string> names() const;
    std::size_t count() const { return variables_.size(); }
    const std::vector<FieldColumns>& fields() const { return allFields_; }
    /// The node groups or parts that have the variable in any step.
    const std::set<std::size_t>& targets(std::size_t variable) const { return variables_[variable].targets; }

private:
    struct Variable {
        std::string name;
        std::set<std::size_t> targets;
    };

    void addField(const ResultField& field, CutTexts& cutTexts);
    std::size_t variableFor(const std::string& wanted, const ResultField& field);

    std::vector<Variable> variables_;
    std::map<std::string, std::size_t> places_;
    std::vector<FieldColumns> allFields_;
};

} // namespace MoxTool
