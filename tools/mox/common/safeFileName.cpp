#include "safeFileName.h"

namespace MoxTool {

namespace {

constexpr std::size_t MaxSize = 80;
constexpr std::string_view Harmless = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_.";

bool isHarmless(char byte) {
    return Harmless.find(byte) != std::string_view::npos;
}

} // namespace

std::string safeFileName(std::string_view text) {
    std::string name;
    bool lastWasHarmless = true;
    for (const char byte : text) {
        if (name.size() == MaxSize) {
            break;
        }
        if (isHarmless(byte)) {
            name += byte;
        } else if (lastWasHarmless) {
            name += '_';
        }
        lastWasHarmless = isHarmless(byte);
    }
    return name;
}

} // namespace MoxTool
