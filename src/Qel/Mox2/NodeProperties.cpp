#include <Qel/Mox2/NodeProperties.h>

#include <Qel/Mox2/PropertyMap.h>

#include <utility>

namespace Qel::Mox2 {

NodeProperties::NodeProperties() : map_(new PropertyMap) {}

NodeProperties::NodeProperties(const NodeProperties& other) : map_(new PropertyMap(*other.map_)) {}

const NodeProperties& NodeProperties::operator=(const NodeProperties& other) {
    *map_ = *other.map_;
    return *this;
}

NodeProperties::~NodeProperties() {
    delete std::exchange(map_, nullptr);
}

void NodeProperties::set(PropertyType key, const char* const value) {
    (*map_)[key] = std::string(value);
}

template <typename T>
void NodeProperties::set(PropertyType key, const T& value) {
    (*map_)[key] = value;
}

// Property values include no `bool`, so one is kept as a number.
template <>
MOXWRITER_EXPORT void NodeProperties::set(PropertyType key, const bool& value) {
    (*map_)[key] = value ? 1 : 0;
}

template MOXWRITER_EXPORT void NodeProperties::set(PropertyType, const int&);
template MOXWRITER_EXPORT void NodeProperties::set(PropertyType, const float&);
template MOXWRITER_EXPORT void NodeProperties::set(PropertyType, const std::string&);
template MOXWRITER_EXPORT void NodeProperties::set(PropertyType, const std::vector<int>&);
template MOXWRITER_EXPORT void NodeProperties::set(PropertyType, const std::vector<float>&);

} // namespace Qel::Mox2
