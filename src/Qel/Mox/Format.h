#pragma once

#include <Qel/Tnf/Format.h>

#include <array>
#include <string>
#include <string_view>

/// The names, versions and codes that the model writes. Files on disk hold them, so they never change.
namespace QelMox::Format {

/// The block names, each with the content of its stream.
inline const std::string HeavyData = "Heavy Data";  ///< The numbers of datasets and node sets.
inline const std::string MoxTree = "Mox Tree";      ///< The node count and a record for each node.
inline const std::string LightData = "Light Data";  ///< A descriptor for each node.
inline const std::string Attributes = "Attributes"; ///< Attribute records of groups and datasets.
inline const std::string Resources = "Resources";   ///< A material for each shape.
inline const std::string GlobalInformation = "Global Information"; ///< Who wrote the file, and when.
inline const std::string ViewPoints = "View Points";               ///< Flagged but never filled.

/// The type names of the node classes, by which a reader knows what follows a node's record.
inline constexpr std::string_view NodeType = "Node";
inline constexpr std::string_view GroupType = "Group";
inline constexpr std::string_view MaterialType = "Material";
inline constexpr std::string_view ShapeType = "Shape";
inline constexpr std::string_view GeometryType = "Geometry";
inline constexpr std::string_view NodeSetsType = "NodeSets";

/// The record versions of the node classes, texts that are compared only for equality.
inline constexpr std::string_view NodeVersion = "0.1";
inline constexpr std::string_view GroupVersion = "0.4";
inline constexpr std::string_view ShapeVersion = "0.2";
inline constexpr std::string_view NodeSetsVersion = "0.1";
inline constexpr std::string_view ModifierInfoVersion = "0.1";

/// The versions of a material's record: without shininess, without the flag, and the one in all files.
inline constexpr std::string_view MaterialWithoutShininess = "0.1";
inline constexpr std::string_view MaterialWithoutFlag = "0.2";
inline constexpr std::string_view MaterialVersion = "0.3";

/// The versions of a geometry's record: with the numbers themselves, with 32-bit positions, and the one in
/// all files.
inline constexpr std::string_view GeometryWithNumbers = "0.5";
inline constexpr std::string_view GeometryWithNarrowPositions = "0.6";
inline constexpr std::string_view GeometryVersion = "0.7";

/// The version of the file format, which the container writes.
inline constexpr std::string_view FileVersion = QelTnf::Format::Version;
/// The last file version whose positions had 32 bits.
inline constexpr std::string_view NarrowFileVersion = "0.6";

/// The ladder of record versions, oldest first. Each rung stands for the fields that the version after it
/// added.
inline constexpr std::array<std::string_view, 7> VersionLadder = {"0.1", "0.2", "0.3", "0.4",
                                                                  "0.5", "0.6", "0.7"};

/// The lowest bit of the element type in the word of a dataset's variable type.
inline constexpr unsigned int ElementTagShift = 24;

/// The first word of the descriptor of node sets.
inline constexpr unsigned int NodeSetsMark = 16;

/// Separates a dataset's name from its step's in the dataset's key.
inline constexpr char StepSeparator = '\x1e';

} // namespace QelMox::Format
