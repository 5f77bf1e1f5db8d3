#pragma once

#include "../../common/ConversionSummary.h"

#include <cstddef>
#include <map>
#include <string>

namespace MoxTool {

/// Cuts texts to the lengths that an Exodus file allows, and keeps count of them by kind.
class CutTexts {
public:
    /// @param kind In the plural, such as "names of variables"; the longest text of a kind is always the same.
    /// @return the text, or as much of it as is allowed.
    std::string cut(const std::string& text, std::size_t longest, const std::string& kind);

    /// Adds a note for each kind of which there was a longer text.
    void addTo(ConversionSummary& summary) const;

private:
    struct Cut {
        std::size_t longest;
        std::size_t count;
        std::string first;
    };

    std::map<std::string, Cut> cuts_;
};

} // namespace MoxTool
