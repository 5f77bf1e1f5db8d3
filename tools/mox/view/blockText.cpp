#include "blockText.h"

#include <zlib.h>

#include <cstddef>
#include <cstdint>
#include <new>

namespace MoxTool {

namespace {

constexpr const char* Digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

} // namespace

std::string deflated(std::string_view bytes) {
    if (bytes.empty()) {
        return "";
    }
    auto length = compressBound(static_cast<uLong>(bytes.size()));
    std::string result(length, '\0');
    if (compress2(reinterpret_cast<Bytef*>(result.data()), &length,
                  reinterpret_cast<const Bytef*>(bytes.data()), static_cast<uLong>(bytes.size()),
                  Z_BEST_SPEED) != Z_OK) {
        throw std::bad_alloc();
    }
    result.resize(length);
    return result;
}

std::string base64(std::string_view bytes) {
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const auto left = bytes.size() - i;
        const auto at = [&](std::size_t place) {
            return place < left ? std::uint32_t{static_cast<std::uint8_t>(bytes[i + place])} : 0U;
        };
        const auto three = (at(0) << 16U) | (at(1) << 8U) | at(2);
        text += Digits[three >> 18U];
        text += Digits[(three >> 12U) & 63U];
        text += left > 1 ? Digits[(three >> 6U) & 63U] : '=';
        text += left > 2 ? Digits[three & 63U] : '=';
    }
    return text;
}

} // namespace MoxTool
