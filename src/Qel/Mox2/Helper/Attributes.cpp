#include <Qel/Mox2/Helper/Attributes.h>

#include <variant>

namespace Qel::Mox2::Helper::Attributes {

QelUtil::AttributeList toAttributeList(const AttributeMap& map) {
    QelUtil::AttributeList list;
    for (const auto& [key, value] : map) {
        if (value.valueless_by_exception()) {
            throw std::bad_variant_access();
        }
        list.insert_or_assign(key, std::visit(AttributeValueGetter(), value));
    }
    return list;
}

} // namespace Qel::Mox2::Helper::Attributes
