#pragma once

#include <string>
#include <vector>

namespace Golden {

/// A file of the corpus, and how the library makes it.
struct GoldenFile {
    std::string name; ///< Without ".mox".
    void (*save)(const std::string& path);
};

/// All files of the corpus.
const std::vector<GoldenFile>& goldenFiles();

} // namespace Golden
