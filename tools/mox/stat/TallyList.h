#pragma once

#include "Tally.h"

#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace MoxTool {

/// Tallies by name, in order of the names' first use.
class TallyList {
public:
    using Row = std::pair<std::string, Tally>;

    void add(const std::string& name, const Tally& tally);
    const std::vector<Row>& rows() const { return list_; }
    Tally sum() const;
    /// The same rows: most bytes in the file first, equal ones by name.
    TallyList sorted() const;

private:
    std::vector<Row> list_;
    std::unordered_map<std::string, std::size_t> places_;
};

} // namespace MoxTool
