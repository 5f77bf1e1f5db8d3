#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

/// Calls of an application as data, so that they can be made up, played, printed and left out.
namespace RandomUse {

/// A text that is handed over as `const char*`, and so ends at its first zero byte.
struct CText {
    std::string text;
};

using AttributeValue = std::variant<int, float, unsigned int, std::string, CText, std::vector<float>,
                                    std::vector<int>, std::vector<unsigned int>>;
/// In the order of the calls to Attributes::set().
using AttributePairs = std::vector<std::pair<std::string, AttributeValue>>;

using PropertyValue =
    std::variant<int, float, bool, std::string, CText, std::vector<int>, std::vector<float>>;
/// In the order of the calls to NodeProperties::set().
using PropertyPairs = std::vector<std::pair<int, PropertyValue>>;

struct SaveTo {
    std::string file; ///< In the sequence's folder; empty for an empty path.
    bool overwrite = true;
    std::string sourceName;
    std::string sourceVersion;
    std::string sourceComment;
};

struct Close {};

/// The model is destroyed, and a new one takes its place.
struct Destroy {};

/// Another model is assigned from this one and takes the calls that follow.
struct Share {};

struct AddNode {
    int type = 0;
    std::string name;
    std::optional<AttributePairs> attributes; ///< Nothing for the call without the argument.
};

struct SetCurrentNodeId {
    unsigned int id = 0;
};

struct MoveToParentNode {};

struct GetNodeId {
    std::string path;
    std::optional<std::string> separator; ///< Nothing for the call without the argument.
};

struct GetNodeIdOfNames {
    std::vector<std::string> names;
};

struct SetNodeData {
    unsigned int id = 0;
    PropertyPairs properties;
    std::optional<AttributePairs> attributes;
};

struct AddPaths {
    std::vector<std::string> paths;
    std::optional<std::string> separator;
};

struct AddPathsWithAttributes {
    std::vector<std::pair<std::string, AttributePairs>> paths;
    std::optional<std::string> separator;
};

struct StepUse {
    std::string name;
    AttributePairs attributes;
};

/// How an array gets its size and its numbers.
enum class Making { Sized, Filled, OfVector, OfRange, Copied, Assigned, OfLongerVector };
constexpr unsigned MakingCount = 7;

struct AddArray {
    std::optional<std::string> name; ///< Nothing for the call without the argument.
    int type = 0;
    bool isFloat = true;
    bool isTable = true;
    std::uint64_t rows = 0; ///< As they are handed over, before they are narrowed.
    std::uint64_t cols = 1; ///< Only of a table.
    Making making = Making::Sized;
    std::vector<std::uint32_t> bits; ///< Of all elements that the array has, row by row.
    std::vector<unsigned int> ids;   ///< One for a call with a single id.
    bool isSingleId = true;
    bool isNegativeIdCount = false; ///< The array of ids has a negative size.
    std::vector<StepUse> steps;     ///< One for a call with a single step.
    bool isSingleStep = true;
    std::optional<AttributePairs> attributes;
};

/// The environment variable for the size of blocks.
struct SetBlockSize {
    std::optional<std::string> value; ///< Nothing to remove it.
};

using Action =
    std::variant<SaveTo, Close, Destroy, Share, AddNode, SetCurrentNodeId, MoveToParentNode, GetNodeId,
                 GetNodeIdOfNames, SetNodeData, AddPaths, AddPathsWithAttributes, AddArray, SetBlockSize>;

struct Call {
    unsigned model = 0;
    Action action;
};

using Sequence = std::vector<Call>;

/// The call as a developer would write it down.
std::string describe(const Call& call);
/// One numbered line for each call.
std::string describe(const Sequence& calls);

} // namespace RandomUse
