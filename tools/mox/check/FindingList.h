#pragma once

#include "Finding.h"

#include <array>
#include <map>
#include <vector>

namespace MoxTool {

/// What a check has found in one file. Counts all findings but keeps only a limited number for each rule, so
/// that a file full of faults needs no more memory than another.
class FindingList {
public:
    /// @param limit How many findings of each rule are kept; 0 keeps all.
    explicit FindingList(std::size_t limit = 0) : limit_(limit) {}

    void add(RuleId rule, std::string reason, FindingPlace place = {});
    /// Adds an error of the reader. Damage of a block has been found with the block itself; here it only
    /// means that something was not checked.
    /// @param node The node whose data could not be read, if the data belongs to one.
    void addError(const MoxReader::Error& error, std::optional<std::uint32_t> node = {});
    /// Adds the findings of another list of the same limit after those of this one.
    void append(const FindingList& other);

    std::size_t limit() const { return limit_; }
    const std::vector<Finding>& findings() const { return list_; }
    std::vector<Finding>& findings() { return list_; }
    std::uint64_t count(Level level) const { return byLevel_[static_cast<std::size_t>(level)]; }
    std::uint64_t count(RuleId rule) const;
    bool isEmpty() const { return byRule_.empty(); }
    /// How many findings of each rule were counted but not kept; rules without any are left out.
    std::map<RuleId, std::uint64_t> notKept() const;

private:
    std::size_t limit_;
    std::vector<Finding> list_;
    std::array<std::uint64_t, 3> byLevel_{};
    std::map<RuleId, std::uint64_t> byRule_;
};

} // namespace MoxTool
