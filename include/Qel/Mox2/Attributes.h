#pragma once

#include <Qel/Util/Export.h>

#include <string>
#include <vector>

namespace Qel::Mox2 {

struct AttributeMap;

/// Free key-value pairs for a group, an array property or a step. A plain value: copies are deep.
///
/// A file keeps `int`, `float` and text; text is cut to 256 bytes. `unsigned int` and the vectors can be set
/// here, but the first operation that hands them to a model refuses them with
/// Qel::Exception::InvalidArguments.
class MOXWRITER_EXPORT Attributes {
public:
    /// No pairs.
    Attributes();
    /// Copies deeply.
    Attributes(const Attributes& other);
    /// Copies deeply.
    const Attributes& operator=(const Attributes& other);
    ~Attributes();

    /// Sets `key` to a text, replacing any value that it had, of whatever kind.
    /// @pre `value` is not null and ends with a zero byte.
    void set(const std::string& key, const char* value);

    /// Sets `key` to `value`, replacing any value that it had, of whatever kind.
    /// @tparam T `float`, `int`, `unsigned int`, `std::string`, or a `std::vector` of `float`, `int` or
    ///           `unsigned int`.
    template <typename T>
    void set(const std::string& key, const T& value);

private:
    friend class Model;
    friend class StepList;

    AttributeMap* map_;
};

} // namespace Qel::Mox2
