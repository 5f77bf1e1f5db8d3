#pragma once

#include "../common/StepAttributeNames.h"

#include <cstddef>
#include <string>

/// The keys of attributes in which an import keeps the parts of a foreign file that a model has no place for,
/// and from which an export restores them.
namespace MoxTool::AttributeNames {

// At the root group.
inline constexpr const char* Title = "Title";
inline constexpr const char* SourceFile = "Source File";
inline constexpr const char* Dimensions = "Dimensions";
inline constexpr const char* Nodes = "Nodes";
inline constexpr const char* Elements = "Elements"; ///< At a connectivity too.
inline constexpr const char* ElementBlocks = "Element Blocks";
inline constexpr const char* NodeSets = "Node Sets";
inline constexpr const char* SideSets = "Side Sets";
inline constexpr const char* Steps = "Steps";

// At the root group: the programs that worked on the file before.
inline constexpr const char* SourceProgram = "Source Program";
inline constexpr const char* SourceVersion = "Source Version";
inline constexpr const char* SourceDate = "Source Date";
inline constexpr const char* SourceTime = "Source Time";

// At a connectivity.
inline constexpr const char* BlockId = "Block Id";
inline constexpr const char* BlockName = "Block Name";
inline constexpr const char* ElementType = "Element Type";
inline constexpr const char* NodesPerElement = "Nodes per Element";

// Several of a kind, numbered from 1: their keys are one of these followed by the number.
inline constexpr const char* TimeOfStep = "Time of Step "; ///< At the root, of a file without results.
inline constexpr const char* QaRecord = "QA Record ";      ///< At the root.
inline constexpr const char* Component = "Component ";     ///< At a result: the variable of a column.

/// @param kind One of the above.
inline std::string numbered(const char* kind, std::size_t number) {
    return kind + std::to_string(number);
}

} // namespace MoxTool::AttributeNames
