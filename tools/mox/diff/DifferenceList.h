#pragma once

#include "Difference.h"
#include "Tolerance.h"

#include <MoxReader/Node.h>

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace MoxTool {

/// Collects differences. It has a current place in the two models: the file as a whole at first, then the one
/// that moveTo() sets.
class DifferenceList {
public:
    explicit DifferenceList(const Tolerance& tolerance) : tolerance_(tolerance) {}

    /// Moves to a node, or to one of its datasets.
    /// @param a Null if the first file has no such node, as b for the second.
    void moveTo(const MoxReader::Node* a, const MoxReader::Node* b,
                const MoxReader::Dataset* dataset = nullptr);

    /// Adds a difference at the current place. An empty value means that a file has nothing there.
    void add(std::string what, std::optional<Json> a, std::optional<Json> b);

    // The following add a difference if the two are not equal; floats are compared by the tolerance.

    void compareTexts(std::string what, const std::string& a, const std::string& b);
    void compareIntegers(std::string what, std::uint32_t a, std::uint32_t b);
    void compareFlags(std::string what, bool a, bool b);
    void compareFloats(std::string what, std::span<const float> a, std::span<const float> b);
    void compareAttributes(const MoxReader::Attributes& a, const MoxReader::Attributes& b);

    /// Reserves room at the current place for a difference of numbers; see fill().
    /// @return the argument for fill().
    std::size_t keepRoomForNumbers();
    void fill(std::size_t room, const NumberDifference& numbers) { differences_[room].numbers = numbers; }

    /// All differences in the order in which they were added, without the rooms that stayed empty. The list
    /// is used up.
    std::vector<Difference> take();

private:
    void compareAttribute(const std::string& key, const MoxReader::AttributeValue& a,
                          const MoxReader::AttributeValue& b);
    bool areEqual(const MoxReader::AttributeValue& a, const MoxReader::AttributeValue& b) const;

    Tolerance tolerance_;
    Difference place_;
    std::vector<Difference> differences_;
};

} // namespace MoxTool
