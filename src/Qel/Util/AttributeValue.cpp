#include <Qel/Util/AttributeValue.h>

#include <algorithm>
#include <cstring>

namespace QelUtil {

AttributeValue::AttributeValue(std::string_view value) : kind(Text) {
    std::memset(text, 0, TextSize);
    const std::size_t length = std::min(value.find('\0'), value.size());
    value.copy(text, std::min(length, TextSize));
}

std::string_view AttributeValue::AsText() const {
    const auto* const end = std::find(text, text + TextSize, '\0');
    return {text, static_cast<std::size_t>(end - text)};
}

} // namespace QelUtil
