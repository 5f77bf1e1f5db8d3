#pragma once

#include "jsonValue.h"

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace MoxTool {

/// Writes JSON piece by piece, so that the whole need not be in memory. Every object and every array starts
/// lines of its own; a value stays on one line.
///
/// The caller must pass the pieces in an order that makes sense: within an object, a key before each value.
class JsonStream {
public:
    /// @param out Stays open for the lifetime of this object; not owned. Failures show in std::ferror().
    explicit JsonStream(std::FILE* out) : out_(out) {}
    /// @param text Receives all that is written; must outlive this object.
    explicit JsonStream(std::string& text) : text_(&text) {}

    void beginObject() { begin('{'); }
    void endObject() { end('}'); }
    void beginArray() { begin('['); }
    void endArray() { end(']'); }
    /// @param name Of characters that JSON does not escape.
    void key(std::string_view name);
    /// @throws nlohmann::json::type_error if a text in it is not UTF-8.
    void value(const Json& value);
    /// Writes a value that is already JSON text.
    void rawValue(std::string_view text);

private:
    void begin(char bracket);
    void end(char bracket);
    void startItem();
    void newLine();
    void put(std::string_view text);

    // One of these is null.
    std::FILE* out_ = nullptr;
    std::string* text_ = nullptr;
    std::vector<bool> hasItems_; ///< For each open object and array.
    bool keyStands_ = false;
};

} // namespace MoxTool
