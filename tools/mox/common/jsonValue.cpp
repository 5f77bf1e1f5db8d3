#include "jsonValue.h"

#include "numberText.h"
#include "utf8.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <charconv>
#include <cmath>

namespace MoxTool {

Json jsonText(const std::string& text) {
    if (isUtf8(text)) {
        return text;
    }
    std::string digits;
    for (const char byte : text) {
        digits += fmt::format("{:02x}", static_cast<unsigned char>(byte));
    }
    return Json{{"bytes", digits}};
}

// The library prints the shortest text of a double. The double nearest to a float's shortest text has that
// same text; the float itself, widened, has a longer one.
Json jsonNumber(float number) {
    const auto text = numberText(number);
    if (!std::isfinite(number)) {
        return text;
    }
    double nearest = 0;
    std::from_chars(text.data(), text.data() + text.size(), nearest);
    return nearest;
}

Json jsonNumber(double number) {
    return std::isfinite(number) ? Json(number) : Json(numberText(number));
}

} // namespace MoxTool
