#include "JsonStream.h"

#include <nlohmann/json.hpp>

namespace MoxTool {

void JsonStream::key(std::string_view name) {
    startItem();
    put(Json(name).dump() + ": ");
    keyStands = true;
}

void JsonStream::value(const Json& value) {
    rawValue(value.dump());
}

void JsonStream::rawValue(std::string_view text) {
    startItem();
    put(text);
    if (hasItems.empty()) {
        put("\n");
    }
}

void JsonStream::begin(char bracket) {
    startItem();
    put({&bracket, 1});
    hasItems.push_back(false);
}

void JsonStream::end(char bracket) {
    const bool hadItems = hasItems.back();
    hasItems.pop_back();
    if (hadItems) {
        newLine();
    }
    put({&bracket, 1});
    if (hasItems.empty()) {
        put("\n");
    }
}

void JsonStream::startItem() {
    if (keyStands || hasItems.empty()) {
        keyStands = false;
        return;
    }
    if (hasItems.back()) {
        put(",");
    }
    hasItems.back() = true;
    newLine();
}

void JsonStream::newLine() {
    put("\n");
    for (std::size_t level = 0; level < hasItems.size(); ++level) {
        put("  ");
    }
}

void JsonStream::put(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), out);
}

} // namespace MoxTool
