#pragma once

#include <MoxReader/Error.h>

#include <cstdint>
#include <span>
#include <string_view>

namespace MoxTool {

/// How bad a finding is.
enum class Level : std::uint8_t {
    Note,    ///< Worth knowing; nothing is wrong with the file.
    Warning, ///< The file can be read, but probably does not mean what its author intended.
    Error    ///< The file is damaged: something in it can't be read or contradicts the format.
};

/// Such as "error".
std::string_view levelName(Level level);

/// The rules that `mox check` applies. Scripts rely on the numbers, so a number never changes its meaning.
enum class RuleId : std::uint16_t {
    Signature = 101,
    FileVersion = 102,
    HeadIndex = 103,
    TableInside = 104,
    TableForm = 105,
    FileSize = 106,
    RecordNumber = 107,
    RecordNameLength = 108,
    BlockName = 109,
    BlockFlags = 110,
    ReservedByte = 111,
    FreeEntries = 112,
    StreamedFlag = 113,
    BlockPlaces = 114,

    BlockInside = 201,
    ContentLost = 202,
    ContentLength = 203,
    ZlibStream = 204,
    ContentSize = 205,
    Checksum = 206,
    BytesAfterStream = 207,
    BlockOverwritten = 208,

    StreamMissing = 301,
    StreamTooShort = 302,
    Count = 303,
    BytesLeftOver = 304,
    TruthValue = 305,
    RecordSize = 306,
    NotChecked = 307,

    NodeIds = 401,
    Parent = 402,
    Siblings = 403,
    Children = 404,
    NodeType = 405,
    NodeVersion = 406,
    DescriptorPlace = 407,

    GroupKind = 501,
    MaterialRecord = 502,
    AttributeRecord = 503,
    NodeSetsRecord = 504,
    GlobalRecord = 505,
    AttributeOrder = 506,

    VariableType = 601,
    ElementType = 602,
    Width = 603,
    DatasetSize = 604,
    DatasetInside = 605,
    DatasetOneBlock = 606,
    DatasetOverlap = 607,
    KeyTwice = 608,
    LinkTarget = 609,
    LinkCycle = 610,
    LinkChain = 611,
    LinkType = 612,
    LinkAttributes = 613,
    FixedFields = 614,

    NotFinite = 701,
    LooksNotFinite = 702,
    Connectivity = 703,
    Polylength = 704,
    ResultLength = 705,
    SiblingNames = 706,
    StepMix = 707,
    UnusedNumbers = 708,
};

struct Rule {
    RuleId id;
    Level level;
    std::string_view title;   ///< A few words, for the line of a finding.
    std::string_view meaning; ///< What holds in a sound file.
};

/// All rules in order of their numbers.
std::span<const Rule> allRules();

const Rule& ruleOf(RuleId id);

/// The rule that the reader's error breaks. For a damaged block it is the rule of that damage.
RuleId brokenRule(MoxReader::ErrorCode code);

/// Whether an error concerns a single block, so that every read of that block fails in the same way.
bool isBlockDamage(MoxReader::ErrorCode code);

} // namespace MoxTool
