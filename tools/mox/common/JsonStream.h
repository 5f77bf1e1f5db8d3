#pragma once

#include "jsonValue.h"

#include <cstdio>
#include <string_view>
#include <vector>

namespace MoxTool {

/// Writes JSON piece by piece, so that the whole need not stand in memory. Every object and every array opens
/// its own lines; a value stands on one.
///
/// The caller sees to it that the pieces make sense: in an object a key before each value.
class JsonStream {
public:
    /// @param file Stays open as long as this object; not owned. Failures show in std::ferror().
    explicit JsonStream(std::FILE* file) : out_(file) {}

    void beginObject() { begin('{'); }
    void endObject() { end('}'); }
    void beginArray() { begin('['); }
    void endArray() { end(']'); }
    void key(std::string_view name);
    /// @throws nlohmann::json::type_error if a text in it is not UTF-8.
    void value(const Json& value);
    /// A value that the caller has put into JSON's form.
    void rawValue(std::string_view text);

private:
    void begin(char bracket);
    void end(char bracket);
    void startItem();
    void newLine();
    void put(std::string_view text);

    std::FILE* out_;
    std::vector<bool> hasItems_; ///< For each open object and array.
    bool keyStands_ = false;
};

} // namespace MoxTool
