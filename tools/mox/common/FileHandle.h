#pragma once

#include <cstdio>
#include <memory>

namespace MoxTool {

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

/// An open file of the C runtime, closed at the end.
using FileHandle = std::unique_ptr<std::FILE, FileCloser>;

} // namespace MoxTool
