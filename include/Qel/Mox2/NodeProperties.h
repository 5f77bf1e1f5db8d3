#pragma once

#include <Qel/Mox2/PropertyType.h>
#include <Qel/Util/Export.h>

#include <string>
#include <vector>

namespace Qel::Mox2 {

struct PropertyMap;

/// The properties that Model::setNodeData() sets on a node. A plain value: copies are deep.
///
/// Nothing is checked here, neither the key nor the value's type or length; setNodeData() does that, and
/// applies the properties in ascending order of their numbers, whatever the order of the calls to set().
class MOXWRITER_EXPORT NodeProperties {
public:
    /// No properties.
    NodeProperties();
    /// Copies deeply.
    NodeProperties(const NodeProperties& other);
    /// Copies deeply.
    const NodeProperties& operator=(const NodeProperties& other);
    ~NodeProperties();

    /// Sets `key` to a text, replacing any value that it had, of whatever kind.
    /// @pre `value` is not null and ends with a zero byte.
    void set(PropertyType key, const char* value);

    /// Sets `key` to `value`, replacing any value that it had, of whatever kind. A `bool` is kept as the
    /// `int` 0 or 1.
    /// @tparam T `int`, `float`, `bool`, `std::string`, `std::vector<int>` or `std::vector<float>`.
    template <typename T>
    void set(PropertyType key, const T& value);

private:
    friend class Model;

    PropertyMap* map_;
};

} // namespace Qel::Mox2
