#include <Qel/Mox2/Attributes.h>

#include <Qel/Mox2/AttributeMap.h>

#include <utility>

namespace Qel::Mox2 {

Attributes::Attributes() : map_(new AttributeMap) {}

Attributes::Attributes(const Attributes& other) : map_(new AttributeMap(*other.map_)) {}

const Attributes& Attributes::operator=(const Attributes& other) {
    *map_ = *other.map_;
    return *this;
}

Attributes::~Attributes() {
    delete std::exchange(map_, nullptr);
}

void Attributes::set(const std::string& key, const char* const value) {
    (*map_)[key] = std::string(value);
}

template <typename T>
void Attributes::set(const std::string& key, const T& value) {
    (*map_)[key] = value;
}

template MOXWRITER_EXPORT void Attributes::set(const std::string&, const float&);
template MOXWRITER_EXPORT void Attributes::set(const std::string&, const int&);
template MOXWRITER_EXPORT void Attributes::set(const std::string&, const unsigned int&);
template MOXWRITER_EXPORT void Attributes::set(const std::string&, const std::vector<float>&);
template MOXWRITER_EXPORT void Attributes::set(const std::string&, const std::vector<int>&);
template MOXWRITER_EXPORT void Attributes::set(const std::string&, const std::vector<unsigned int>&);
template MOXWRITER_EXPORT void Attributes::set(const std::string&, const std::string&);

} // namespace Qel::Mox2
