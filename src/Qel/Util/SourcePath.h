#pragma once

#include <cstddef>
#include <string_view>

namespace QelUtil {

/// The path of a source file from `Qel/` on and without extension, made while compiling, so that a class's
/// header and source name the same place and nothing of the build machine gets into the library.
template <std::size_t Size>
class SourcePath {
public:
    consteval explicit SourcePath(const char (&file)[Size]) {
        constexpr std::string_view root = "Qel/";
        std::string_view path(file, Size - 1);
        if (const auto start = path.rfind(root); start != std::string_view::npos) {
            path.remove_prefix(start);
        }
        path = path.substr(0, path.rfind('.'));
        path.copy(text, path.size());
    }

    constexpr const char* c_str() const { return text; }

private:
    char text[Size] = {};
};

} // namespace QelUtil

/// The SourcePath of the file that it stands in, as a text that lives as long as the program.
#define QEL_SOURCE_PATH                                                                                      \
    ([]() -> const char* {                                                                                   \
        static constexpr ::QelUtil::SourcePath qelSourcePath(__FILE__);                                      \
        return qelSourcePath.c_str();                                                                        \
    }())
