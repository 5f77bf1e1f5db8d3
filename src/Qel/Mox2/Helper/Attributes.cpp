#include <Qel/Mox2/Helper/Attributes.h>

#include <variant>

namespace Qel::Mox2::Helper::Attributes {

QelUtil::AttributeList toAttributeList(const AttributeMap& map) {
    QelUtil::AttributeList list;
    list.reserve(map.size());
    for (const auto& [key, value] : map) {
        if (value.valueless_by_exception()) {
            throw std::bad_variant_access();
        }
        list.emplace_hint(list.end(), key, std::visit(AttributeValueGetter(), value));
    }
    return list;
}

} // namespace Qel::Mox2::Helper::Attributes
