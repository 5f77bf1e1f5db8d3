#pragma once

#include <string_view>

namespace MoxTool {

/// The page without a model, made from the folder page: everything before and after the place of the model's
/// data. Both are empty if this mox was built without it.
struct PageSource {
    std::string_view head;
    std::string_view tail;

    bool exists() const { return !head.empty(); }
};

PageSource pageSource();

} // namespace MoxTool
