#pragma once

#include <cstddef>
#include <string_view>

namespace QelUtil {

/// The path of a source file from `Qel/` on and without extension, computed at compile time, so that a
/// class's header and source name the same place and nothing of the build machine gets into the library.
template <std::size_t Size>
struct SourcePath {
    consteval SourcePath(const char (&file)[Size]) {
        constexpr std::string_view root = "Qel/";
        std::string_view path(file, Size - 1);
        if (const auto start = path.rfind(root); start != std::string_view::npos) {
            path.remove_prefix(start);
        }
        path = path.substr(0, path.rfind('.'));
        path.copy(text, path.size());
    }

    char text[Size] = {};
};

/// A template argument lives as long as the program, wherever it is given.
template <SourcePath path>
constexpr const char* sourcePathText() {
    return path.text;
}

} // namespace QelUtil

/// The SourcePath of the file that uses it, as a text that lives as long as the program.
#define QEL_SOURCE_PATH (::QelUtil::sourcePathText<__FILE__>())
