#pragma once

#include <MoxReader/Model.h>

#include <cstdint>
#include <string>
#include <vector>

namespace MoxTool {

/// What each part of a model that is split begins with.
enum class PartKind {
    Child, ///< A child of the root.
    Shape, ///< A shape that is in no other shape.
};

/// Divides the nodes of a model into parts that give the same tree when they are joined in their order. Each part has
/// a node of its kind with all that is below it, and all that it is below. Siblings of one name and type, which a path
/// can't tell apart, stay in one part with all between them. Nodes without a part of their own go with the one before
/// them. Of a model without any node of the kind there is one part.
class PartPlan {
public:
    PartPlan(const MoxReader::Model& model, PartKind kind);

    std::uint32_t count() const { return static_cast<std::uint32_t>(names_.size()); }
    /// The name of the first node of its kind in a part.
    const std::string& name(std::uint32_t part) const { return names_[part]; }
    /// Whether a node, or something below it, belongs to a part.
    bool needs(std::uint32_t part, std::uint32_t id) const {
        return ranges_[id].first <= part && part <= ranges_[id].last;
    }
    /// The part that the datasets or sets of a node belong to.
    std::uint32_t ownPart(std::uint32_t id) const { return ranges_[id].first; }

private:
    struct Range {
        std::uint32_t first = 0;
        std::uint32_t last = 0;
    };

    std::vector<bool> findBeginnings(const MoxReader::Model& model, PartKind kind) const;
    void number(const MoxReader::Model& model, const std::vector<bool>& begins);
    void keepTwinsTogether(const MoxReader::Model& model);

    std::vector<Range> ranges_; ///< For each id.
    std::vector<std::string> names_;
};

} // namespace MoxTool
