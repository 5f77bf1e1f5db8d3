#include "JsonStream.h"

#include <nlohmann/json.hpp>

namespace MoxTool {

void JsonStream::key(std::string_view name) {
    startItem();
    put("\"");
    put(name);
    put("\": ");
    keyStands_ = true;
}

void JsonStream::value(const Json& value) {
    rawValue(value.dump());
}

void JsonStream::rawValue(std::string_view text) {
    startItem();
    put(text);
    if (hasItems_.empty()) {
        put("\n");
    }
}

void JsonStream::begin(char bracket) {
    startItem();
    put({&bracket, 1});
    hasItems_.push_back(false);
}

void JsonStream::end(char bracket) {
    const bool hadItems = hasItems_.back();
    hasItems_.pop_back();
    if (hadItems) {
        newLine();
    }
    put({&bracket, 1});
    if (hasItems_.empty()) {
        put("\n");
    }
}

void JsonStream::startItem() {
    if (keyStands_ || hasItems_.empty()) {
        keyStands_ = false;
        return;
    }
    if (hasItems_.back()) {
        put(",");
    }
    hasItems_.back() = true;
    newLine();
}

void JsonStream::newLine() {
    put("\n");
    for (std::size_t level = 0; level < hasItems_.size(); ++level) {
        put("  ");
    }
}

void JsonStream::put(std::string_view text) {
    if (text_ != nullptr) {
        *text_ += text;
    } else {
        std::fwrite(text.data(), 1, text.size(), out_);
    }
}

} // namespace MoxTool
