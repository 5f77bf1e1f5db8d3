#pragma once

#include <Qel/Base/Modifier.h>
#include <Qel/Mox2/ArrayStorage.h>
#include <Qel/Mox2/AttributeMap.h>
#include <Qel/Mox2/Database.h>

#include <map>
#include <string>
#include <vector>

namespace Qel::Mox2::Adder {

/// Merges a list of paths into the tree; see Model::addAssemblyComponents().
/// @tparam Paths  `std::vector<std::string>`, or `std::map<std::string, AttributeMap>` for paths with
///                attributes.
/// @tparam Result IdArray.
template <typename Paths, typename Result>
class Components final : public Base::Modifier<Database> {
public:
    /// The arguments must live as long as the operation.
    Components(const Paths& paths, const std::string& separator) : paths_(paths), separator_(separator) {}

    void update(Database& database) override;

    /// The id of each path's last node, in order; 0 for a path without components.
    const Result& result() const { return result_; }

private:
    struct Visitor;

    const Paths& paths_;
    const std::string& separator_;
    Result result_;
};

extern template class Components<std::vector<std::string>, IdArray>;
extern template class Components<std::map<std::string, AttributeMap>, IdArray>;

} // namespace Qel::Mox2::Adder
