#include <Qel/Util/AttributeValue.h>

namespace QelUtil {

AttributeValue::AttributeValue(std::string_view value)
    : kind(Text), integer(0), text(value.substr(0, value.find('\0')).substr(0, TextSize)) {}

} // namespace QelUtil
