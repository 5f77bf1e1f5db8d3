#pragma once

#include <string>

namespace MoxTool {

/// Who worked on an Exodus file.
struct QaRecord {
    std::string program;
    std::string version;
    std::string date;
    std::string time;
};

} // namespace MoxTool
