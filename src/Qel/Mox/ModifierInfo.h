#pragma once

#include <string>

namespace QelMox {

/// Who wrote the file, with what, and when. The texts are in the order of the file.
struct ModifierInfo {
    /// Whether the save asks for the names of the host and the user. Nothing sets it, and it is not written.
    unsigned char CollectHostInfo = 0;
    std::string SourceName;
    std::string SourceVersion;
    std::string FormatVersion;
    std::string Date;
    std::string Computer;
    std::string User;
    std::string Comment;
};

} // namespace QelMox
