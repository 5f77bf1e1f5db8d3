#pragma once

#include <array>
#include <cstdint>
#include <string_view>

/// The numbers and names of the file format, each defined once. Files on disk hold them, so they never
/// change. All integers and floats in a file are little-endian; nothing is aligned.
namespace MoxReader::Format {

// --- The front of the file ---------------------------------------------------------------------------------

/// The first bytes of every file.
inline constexpr std::array<std::uint8_t, 8> Signature = {0x89, 'T', 'N', 'F', '\r', '\n', 0x1A, '\n'};
inline constexpr std::uint32_t VersionSize = 4;             ///< The version is a text, NUL-padded.
inline constexpr std::string_view SupportedVersion = "1.3"; ///< The version after the signature.
/// Where the length of the head index stands.
inline constexpr std::uint32_t HeadLengthPosition = Signature.size() + VersionSize;

// --- Index tables ------------------------------------------------------------------------------------------

/// A block's name, NUL-padded; without NUL if it fills the field.
inline constexpr std::uint32_t NameSize = 128;
/// Bytes of one index record.
inline constexpr std::uint32_t RecordSize =
    1 /*number*/ + 4 /*name length*/ + NameSize + 4 /*stored length*/ + 1 /*flags*/ + 1 /*reserved*/;
inline constexpr std::uint32_t HeadRecords = 20; ///< Records of the head index: ids 0 to 19.
/// Records of an Index Block: the 200 ids after its own.
inline constexpr std::uint32_t IndexBlockRecords = 200;

/// Bytes of an index table: the record count, then the records.
constexpr std::uint32_t tableSize(std::uint32_t records) {
    return 4 + records * RecordSize;
}

/// Where the head index begins.
inline constexpr std::uint32_t HeadTablePosition = HeadLengthPosition + 4 /*length word of the head index*/;
/// Where block 0 begins.
inline constexpr std::uint32_t FirstBlockPosition = HeadTablePosition + tableSize(HeadRecords);
static_assert(tableSize(HeadRecords) == 2784 && FirstBlockPosition == 2800);
static_assert(tableSize(IndexBlockRecords) == 27804);

/// A record whose name begins with this text is an Index Block; its payload is a bare index table.
inline constexpr std::string_view IndexBlockName = "\x0B"
                                                   "Index Block ";
/// A record whose name begins with this text is an empty entry and has no bytes in the file.
inline constexpr std::string_view EmptyBlockName = "\x0B"
                                                   "Empty Block ";

// --- Blocks ------------------------------------------------------------------------------------------------

inline constexpr std::uint8_t FlagCompressed = 0x01; ///< The payload is a content length and one zlib stream.
/// The block could go to disk before the file was closed.
inline constexpr std::uint8_t FlagFreezable = 0x20;
inline constexpr std::uint32_t ContentWordSize = 4; ///< The content length before a zlib stream.

/// No zlib stream yields more than this many bytes for each of its own: 258 bytes take at least two bits.
inline constexpr std::uint64_t ZlibMaxExpansion = 1032;

// --- Streams: all blocks of one name, in ascending id, joined after decompression --------------------------

inline constexpr std::string_view TreeStream = "Mox Tree";    ///< Node count, one record for each node.
inline constexpr std::string_view LightStream = "Light Data"; ///< Descriptors of groups, geometries, sets.
inline constexpr std::string_view HeavyStream = "Heavy Data"; ///< The numbers of datasets and node sets.
inline constexpr std::string_view AttributesStream = "Attributes";     ///< Attributes of groups and datasets.
inline constexpr std::string_view ResourcesStream = "Resources";       ///< One material for each shape.
inline constexpr std::string_view GlobalStream = "Global Information"; ///< Who wrote the file.

// --- Nodes -------------------------------------------------------------------------------------------------

inline constexpr std::string_view PlainType = "Node";        ///< A plain node.
inline constexpr std::string_view GroupType = "Group";       ///< A group.
inline constexpr std::string_view ShapeType = "Shape";       ///< A shape.
inline constexpr std::string_view GeometryType = "Geometry"; ///< A geometry.
inline constexpr std::string_view NodeSetsType = "NodeSets"; ///< Sets of nodes.
inline constexpr std::string_view PlainVersion = "0.1";      ///< Of a plain node.
inline constexpr std::string_view ShapeVersion = "0.2";      ///< Of a shape.
inline constexpr std::string_view GroupVersion = "0.4";      ///< The only version with the layout read here.
inline constexpr std::string_view GeometryVersion = "0.7";   ///< The only version with the layout read here.

/// Bytes, with empty texts.
inline constexpr std::uint32_t NodeRecordMinSize = 6 * 4 /*links*/ + 3 * 4 /*empty strings*/ + 8 /*position*/;
/// Bytes of a link with an empty key.
inline constexpr std::uint32_t DatasetMinSize =
    4 /*empty key*/ + 4 /*type*/ + 1 /*is link*/ + 4 /*node*/ + 4 /*index*/ + 1 /*vibration*/;
/// Bytes, with an empty version.
inline constexpr std::uint32_t VersionedRecordMinSize = 4 /*size word*/ + 4 /*empty version*/;
/// Bytes after the size.
inline constexpr std::uint32_t NodeSetsDescriptorSize = 4 /*sets*/ + 8 /*position*/ + 4 /*size*/;

/// The material versions that lack fields of the present one: "0.1" shininess and flag, "0.2" the flag.
inline constexpr std::string_view MaterialVersionWithoutShininess = "0.1";
inline constexpr std::string_view MaterialVersionWithoutFlag = "0.2"; ///< The record of "0.2" lacks the flag.
inline constexpr std::string_view MaterialVersion = "0.3";            ///< The version that is written.
/// Bytes of a material's record of the present version.
inline constexpr std::uint32_t MaterialSize = 4 /*size word*/ + 4 + 3 /*version*/ + 4 * 16 /*colours*/ +
                                              4 /*transparency*/ + 4 /*shininess*/ + 1 /*flag*/;
static_assert(MaterialSize == 84);

/// Who saved the file: the only version of that record.
inline constexpr std::string_view ModifierVersion = "0.1";

// --- Datasets ----------------------------------------------------------------------------------------------

inline constexpr char StepSeparator = 0x1E; ///< Separates a dataset's name from its step's name.

inline constexpr std::uint32_t UntaggedType = 0xFFFFFFFF; ///< A type word without an element tag.
inline constexpr std::uint32_t ElementTagShift = 24;      ///< The tag is the high byte of the type word.
inline constexpr std::uint8_t FloatTag = 1;               ///< Numbers are f32.
inline constexpr std::uint8_t UnsignedTag = 5;            ///< Numbers are u32.
inline constexpr std::uint32_t ElementSize = 4;           ///< Bytes of one number, of either element type.

/// What a dataset's numbers are. Other numbers are not in use.
enum class VariableType : std::uint32_t {
    Coordinates = 1,
    Connectivity0 = 4,
    Connectivity1 = 5,
    Connectivity2 = 6,
    Polylength = 9,
    NodeScalar = 12,
    NodeVector = 13,
    NodeSixA = 14,
    NodeSixB = 15,
    ElementScalar = 16,
    ElementVector = 17,
    ElementSixA = 18,
    ElementSixB = 19,
    ThirdScalar = 20,
    ThirdVector = 21,
    ThirdSixA = 22,
    ThirdSixB = 23,
    FourthScalarA = 24,
    FourthScalarB = 25,
    FourthVector = 26,
    FourthSixA = 27,
    FourthSixB = 28,
};

/// A type's name and the components of each of its items.
struct VariableTypeRow {
    VariableType type;     ///< The number in the file.
    std::string_view name; ///< As dumps show it.
    std::uint8_t width;    ///< Columns.
};

/// All types that files can have.
inline constexpr std::array VariableTypes = {
    VariableTypeRow{VariableType::Coordinates, "Coordinates", 3},
    VariableTypeRow{VariableType::Connectivity0, "Connectivity0", 1},
    VariableTypeRow{VariableType::Connectivity1, "Connectivity1", 1},
    VariableTypeRow{VariableType::Connectivity2, "Connectivity2", 1},
    VariableTypeRow{VariableType::Polylength, "Polylength", 1},
    VariableTypeRow{VariableType::NodeScalar, "NodeScalar", 1},
    VariableTypeRow{VariableType::NodeVector, "NodeVector", 3},
    VariableTypeRow{VariableType::NodeSixA, "NodeSixA", 6},
    VariableTypeRow{VariableType::NodeSixB, "NodeSixB", 6},
    VariableTypeRow{VariableType::ElementScalar, "ElementScalar", 1},
    VariableTypeRow{VariableType::ElementVector, "ElementVector", 3},
    VariableTypeRow{VariableType::ElementSixA, "ElementSixA", 6},
    VariableTypeRow{VariableType::ElementSixB, "ElementSixB", 6},
    VariableTypeRow{VariableType::ThirdScalar, "ThirdScalar", 1},
    VariableTypeRow{VariableType::ThirdVector, "ThirdVector", 3},
    VariableTypeRow{VariableType::ThirdSixA, "ThirdSixA", 6},
    VariableTypeRow{VariableType::ThirdSixB, "ThirdSixB", 6},
    VariableTypeRow{VariableType::FourthScalarA, "FourthScalarA", 1},
    VariableTypeRow{VariableType::FourthScalarB, "FourthScalarB", 1},
    VariableTypeRow{VariableType::FourthVector, "FourthVector", 3},
    VariableTypeRow{VariableType::FourthSixA, "FourthSixA", 6},
    VariableTypeRow{VariableType::FourthSixB, "FourthSixB", 6},
};

/// Whether a number from a file means this type.
constexpr bool isType(std::uint32_t number, VariableType type) {
    return number == static_cast<std::uint32_t>(type);
}

/// Whether a number from a file means one of the types from `first` to `last`.
constexpr bool isTypeWithin(std::uint32_t number, VariableType first, VariableType last) {
    return number >= static_cast<std::uint32_t>(first) && number <= static_cast<std::uint32_t>(last);
}

/// Node indices of elements, or element indices of a part.
constexpr bool isConnectivityType(std::uint32_t number) {
    return isTypeWithin(number, VariableType::Connectivity0, VariableType::Connectivity2);
}

/// The dimensions of the elements of a connectivity type: 1 for lines, 2 for faces, 3 for solids.
constexpr int elementDimensions(std::uint32_t connectivityType) {
    return static_cast<int>(connectivityType - static_cast<std::uint32_t>(VariableType::Connectivity0)) + 1;
}

/// Results at nodes.
constexpr bool isNodalType(std::uint32_t number) {
    return isTypeWithin(number, VariableType::NodeScalar, VariableType::NodeSixB);
}

/// Results at elements.
constexpr bool isElementalType(std::uint32_t number) {
    return isTypeWithin(number, VariableType::ElementScalar, VariableType::ElementSixB);
}

/// The row of a number from a file; null for a number that no file should hold.
constexpr const VariableTypeRow* findVariableType(std::uint32_t number) {
    for (const auto& row : VariableTypes) {
        if (isType(number, row.type)) {
            return &row;
        }
    }
    return nullptr;
}

} // namespace MoxReader::Format
