#include "../common/FirstBlock.h"
#include "CheckedBytes.h"
#include "SampleFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <set>
#include <span>

namespace {

using FileBytes = std::vector<std::uint8_t>;

// Places in the file: the record of block 0 is at 20, that of the first free entry (6) at 854.
constexpr std::size_t FirstRecord = 20;
constexpr std::size_t FreeRecord = 20 + 6 * 139;

FileBytes withByte(std::size_t place, unsigned value) {
    return patched(soundSample().file().bytes(), place, Bytes().u8(value));
}

// The sound sample with one of its streams changed.
FileBytes with(FileBytes SampleModel::*stream, std::size_t place, const FileBytes& change) {
    auto sample = soundSample();
    sample.*stream = patched(sample.*stream, place, change);
    return sample.file().bytes();
}

FileBytes withRecord(std::size_t node, const std::function<void(TreeRecord&)>& change) {
    auto records = sampleRecords();
    change(records[node - 1]);
    auto sample = soundSample();
    sample.tree = treeStream(records);
    return sample.file().bytes();
}

// The sample's streams except the numbers, after other blocks for these.
FileBytes withHeavyBlocks(TestFile file) {
    const auto sample = soundSample();
    file.compressed("Mox Tree", sample.tree).compressed("Light Data", sample.light);
    file.compressed("Attributes", sample.attributes).compressed("Resources", sample.resources);
    return file.compressed("Global Information", sample.global).bytes();
}

FileBytes heavyPayload() {
    const auto heavy = soundSample().heavy;
    return Bytes().u32(static_cast<std::uint32_t>(heavy.size())).raw(zlibStream(heavy));
}

FileBytes firstBlockEnd(int change) {
    const auto payload = heavyPayload();
    return withByte(FirstBlock + payload.size() - 1, payload.back() ^ static_cast<unsigned>(change));
}

// Datasets of 600 bytes that each fill a block, so that those after the Index Block lie too low.
FileBytes lowBlocks() {
    constexpr unsigned Count = 60;
    constexpr unsigned Size = 600;
    std::mt19937 random(1);
    TestFile file;
    Bytes light;
    Bytes attributes;
    light.u32(Count);
    for (unsigned i = 0; i < Count; ++i) {
        FileBytes numbers(Size);
        std::ranges::generate(numbers, [&] { return static_cast<std::uint8_t>(random()); });
        file.raw("Heavy Data", Bytes().u32(Size).raw(zlibStream(numbers)), i + 1 < Count ? 0x21 : 0x01);
        light.raw(fullEntry(std::to_string(i), 0x0500000C, Size, 1, std::uint64_t{Size} * i));
        attributes.noAttributes();
    }
    file.compressed("Mox Tree", treeStream({{1, 0, 0, 0, 0, 0, "G", "Geometry", "0.7", 0}}));
    file.compressed("Light Data", light).compressed("Attributes", attributes);
    file.compressed("Global Information", SampleModel().global);
    return file.displacedBytes({19});
}

struct Case {
    int rule;
    FileBytes (*file)();
};

// Offsets in the sample's "Light Data": the root's kind 40; entry 0 with its type at 60, link flag 64, size
// 65, width 69, first fixed field 70; entry 1 with its position at 127; entry 2 with its type at 152; entry 3
// with the end of its key at 197, its type at 198 and the link's index at 207; the node sets' count at 216.
const Case Cases[] = {
    {101, [] { return withByte(0, 0x88); }},
    {102, [] { return withByte(10, '4'); }},
    {103,
     [] {
         return patched(soundSample().file().bytes(), 12, {0, 0, 0, 0});
     }},
    {104,
     [] {
         auto bytes = soundSample().file().bytes();
         bytes.resize(1000);
         return bytes;
     }},
    {105, [] { return withByte(16, 21); }},
    {106,
     [] {
         auto bytes = soundSample().file().bytes();
         bytes.push_back(0);
         return bytes;
     }},
    {107, [] { return withByte(FirstRecord, 2); }},
    {108, [] { return withByte(FirstRecord + 1, 127); }},
    {109, [] { return withByte(FirstRecord + 5 + 127, 'x'); }},
    {110, [] { return withByte(FirstRecord + 137, 0x20); }},
    {111, [] { return withByte(FirstRecord + 138, 1); }},
    {112, [] { return withByte(FreeRecord + 133, 1); }},
    {113, [] { return loneGeometry({fullEntry("N", 0x0100000C, 8, 1, 0)}, FileBytes(8), 0x21).bytes(); }},
    {114, lowBlocks},
    {201,
     [] {
         auto bytes = soundSample().file().bytes();
         bytes.pop_back();
         return bytes;
     }},
    {202, [] { return withHeavyBlocks(TestFile().raw("Heavy Data", {}, 0x01)); }},
    {203, [] { return withByte(FirstBlock + 3, 0x7F); }},
    {204, [] { return withByte(FirstBlock + 4, 0x79); }},
    {205, [] { return withByte(FirstBlock, 112); }},
    {206, [] { return firstBlockEnd(1); }},
    {207,
     [] { return withHeavyBlocks(TestFile().raw("Heavy Data", Bytes().raw(heavyPayload()).u8(0), 0x01)); }},
    {208, lowBlocks},
    {301, [] { return TestFile().compressed("Global Information", soundSample().global).bytes(); }},
    {302,
     [] {
         auto sample = soundSample();
         sample.light.pop_back();
         return sample.file().bytes();
     }},
    {303,
     [] {
         return with(&SampleModel::tree, 0, {0xFF, 0, 0, 0});
     }},
    {304,
     [] {
         auto sample = soundSample();
         sample.resources.push_back(0);
         return sample.file().bytes();
     }},
    {305, [] { return with(&SampleModel::light, 64, {2}); }},
    {306, [] { return with(&SampleModel::resources, 0, {10}); }},
    {307, [] { return firstBlockEnd(1); }},
    {401, [] { return withRecord(2, [](auto& node) { node.id = 7; }); }},
    {402, [] { return withRecord(5, [](auto& node) { node.parent = 6; }); }},
    {403, [] { return withRecord(4, [](auto& node) { node.next = 0; }); }},
    {404, [] { return withRecord(1, [](auto& node) { node.lastChild = 4; }); }},
    {405, [] { return withRecord(5, [](auto& node) { node.type = "Gruop"; }); }},
    {406, [] { return withRecord(3, [](auto& node) { node.version = "0.8"; }); }},
    {407, [] { return withRecord(3, [](auto& node) { node.light = 40; }); }},
    {501, [] { return with(&SampleModel::light, 40, {2}); }},
    {502, [] { return with(&SampleModel::resources, 83, {0}); }},
    {503, [] { return with(&SampleModel::attributes, 28, {9}); }},
    {504, [] { return with(&SampleModel::light, 216, {3}); }},
    {505, [] { return with(&SampleModel::global, 14, {'2'}); }},
    {506, [] { return with(&SampleModel::attributes, 8, {'e'}); }}, // of the keys a, b, c, d the first
    {601, [] { return with(&SampleModel::light, 60, {2}); }},
    {602, [] { return with(&SampleModel::light, 63, {2}); }},
    {603, [] { return with(&SampleModel::light, 69, {1}); }},
    {604, [] { return with(&SampleModel::light, 65, {23}); }},
    {605, [] { return with(&SampleModel::light, 127, {200}); }},
    {606,
     [] {
         const auto heavy = soundSample().heavy;
         return withHeavyBlocks(TestFile()
                                    .compressed("Heavy Data", {heavy.begin(), heavy.begin() + 10})
                                    .compressed("Heavy Data", {heavy.begin() + 10, heavy.end()}));
     }},
    {607, [] { return with(&SampleModel::light, 127, {20}); }},
    {608, [] { return with(&SampleModel::light, 197, {'1'}); }},
    {609, [] { return with(&SampleModel::light, 207, {9}); }},
    {610, [] { return with(&SampleModel::light, 207, {3}); }},
    {611,
     [] {
         return loneGeometry({fullEntry("A", 0x0100000C, 8, 1, 0), linkEntry("B", 0x0100000C, 1, 0),
                              linkEntry("C", 0x0100000C, 1, 1)},
                             FileBytes(8))
             .bytes();
     }},
    {612, [] { return with(&SampleModel::light, 198, {0x0C}); }},
    {613,
     [] {
         auto sample = soundSample();
         sample.attributes.resize(sample.attributes.size() - 24);
         sample.attributes = Bytes()
                                 .raw(sample.attributes)
                                 .texts({"x"})
                                 .u8List({0})
                                 .u32List({1})
                                 .f32List({})
                                 .f64List({})
                                 .texts({});
         return sample.file().bytes();
     }},
    {614, [] { return with(&SampleModel::light, 70, {1}); }},
    {701, [] { return with(&SampleModel::heavy, 6, {0x7F}); }}, // the first x becomes infinite
    {702,
     [] {
         return with(&SampleModel::light, 0, {0x00, 0x00, 0x80, 0x7F});
     }},
    {703, [] { return SampleModel().file().bytes(); }},
    {704,
     [] { // an element of 3 nodes, but 2 in the connectivity
         return loneGeometry({fullEntry("C", 0x05000004, 8, 1, 0), fullEntry("P", 0x05000009, 4, 1, 8)},
                             {0, 1, 0, 0, 0, 0, 0, 0, 3, 0, 0, 0}, 0x21)
             .bytes();
     }},
    {705,
     [] { // two numbers for one element
         return loneGeometry({fullEntry("P", 0x05000009, 4, 1, 0), fullEntry("S", 0x01000010, 8, 1, 4)},
                             FileBytes(12), 0x21)
             .bytes();
     }},
    {706, [] { return withRecord(5, [](auto& node) { node.name = "Sets"; }); }},
    {707,
     [] {
         return loneGeometry({fullEntry("N", 0x0100000C, 8, 1, 0), linkEntry("N\x1EStep", 0x0100000C, 1, 0)},
                             FileBytes(8))
             .bytes();
     }},
    {708, [] { return loneGeometry({fullEntry("N", 0x0100000C, 4, 1, 0)}, FileBytes(8), 0x21).bytes(); }},
};

std::vector<int> allNumbers() {
    std::vector<int> numbers;
    for (const auto& rule : MoxTool::allRules()) {
        numbers.push_back(static_cast<int>(rule.id));
    }
    return numbers;
}

class EachRule : public testing::TestWithParam<Case> {};

} // namespace

TEST_P(EachRule, FindsWhatBreaksIt) {
    const auto findings = findingsIn(GetParam().file());
    EXPECT_TRUE(breaks(findings, GetParam().rule)) << testing::PrintToString(rulesIn(findings));
}

INSTANTIATE_TEST_SUITE_P(Rules, EachRule, testing::ValuesIn(Cases),
                         [](const auto& parameter) { return std::to_string(parameter.param.rule); });

TEST(Rules, HaveNumbersInAscendingOrderAndACaseEach) {
    const auto numbers = allNumbers();
    EXPECT_TRUE(std::ranges::is_sorted(numbers, std::less_equal<>()) || numbers.empty());
    std::vector<int> tested;
    for (const auto& test : Cases) {
        tested.push_back(test.rule);
    }
    EXPECT_EQ(tested, numbers);
}

TEST(FileCheck, FindsNothingInASoundFile) {
    EXPECT_EQ(rulesIn(findingsIn(soundSample().file().bytes())), std::vector<int>{});
}

TEST(FileCheck, WarnsOnceOfConnectivityBeyondTheCoordinates) {
    const auto findings = findingsIn(SampleModel().file().bytes());
    ASSERT_EQ(rulesIn(findings), std::vector<int>{703});
    const auto& finding = findings.findings().front();
    EXPECT_EQ(finding.reason, "it names place 134678021, counted from 0, of 2 coordinates");
    EXPECT_EQ(finding.place.path, "/Root/Part");
    EXPECT_EQ(finding.place.dataset, 1u);
    EXPECT_EQ(finding.place.key, "Connectivity");
}

TEST(FileCheck, GoesOnAfterADescriptorThatCannotBeRead) {
    auto sample = soundSample();
    sample.light = patched(sample.light, 64, {2}); // not a truth value: the geometry's entries can't be read
    sample.light = patched(sample.light, 216, {3});
    const auto rules = rulesIn(findingsIn(sample.file().bytes()));
    EXPECT_EQ(std::ranges::count(rules, 305), 1);
    EXPECT_EQ(std::ranges::count(rules, 504), 1);
}

TEST(FileCheck, FindsAllDamagesOfAFileAndNotTheFirstAlone) {
    auto bytes = with(&SampleModel::light, 40, {2});
    bytes = patched(bytes, FirstRecord + 138, {1});
    bytes = patched(bytes, FirstBlock + 4, {0x79});
    const auto findings = findingsIn(bytes);
    for (const int rule : {111, 204, 501}) {
        EXPECT_TRUE(breaks(findings, rule)) << rule;
    }
}

TEST(FileCheck, NamesADamagedBlockBeforeWhatCouldNotBeCheckedForIt) {
    auto file = loneGeometry({fullEntry("N", 0x0100000C, 8, 1, 0)}, FileBytes(8)).bytes();
    file = patched(file, FirstBlock + 4, {0x79});
    EXPECT_EQ(rulesIn(findingsIn(file)), (std::vector<int>{204, 307}));
}

TEST(FileCheck, ReadsEachBlockOfASoundFileOnce) {
    class CountingSource : public MoxReader::MemorySource {
    public:
        using MemorySource::MemorySource;
        std::uint64_t bytesRead = 0;

    protected:
        void readInside(std::uint64_t offset, std::span<std::uint8_t> target) override {
            bytesRead += target.size();
            MemorySource::readInside(offset, target);
        }
    };
    constexpr std::uint32_t Size = 400'000;
    FileBytes noise(Size);
    std::minstd_rand random;
    for (auto& byte : noise) {
        byte = static_cast<std::uint8_t>(random() >> 8);
    }
    // Each number has the byte 0 on top, so that it is finite.
    std::fill(noise.begin() + Size / 4 * 3, noise.end(), std::uint8_t{0});
    const auto source = std::make_shared<CountingSource>(
        loneGeometry({fullEntry("N", 0x0100000C, Size, 1, 0)}, noise).bytes());
    EXPECT_EQ(rulesIn(findingsIn(source)), std::vector<int>{});
    EXPECT_GT(source->size(), 300'000u);
    EXPECT_LT(source->bytesRead, source->size() + 5'000);
}

TEST(FindingList, AppendsAnotherListWithinTheLimit) {
    MoxTool::FindingList first(2);
    MoxTool::FindingList second(2);
    first.add(MoxTool::RuleId::SiblingNames, "first");
    for (int i = 0; i < 5; ++i) {
        second.add(MoxTool::RuleId::SiblingNames, "again");
    }
    second.add(MoxTool::RuleId::NotChecked, "why");
    first.append(second);
    EXPECT_EQ(rulesIn(first), (std::vector<int>{static_cast<int>(MoxTool::RuleId::SiblingNames),
                                                static_cast<int>(MoxTool::RuleId::SiblingNames), 307}));
    EXPECT_EQ(first.findings().front().reason, "first");
    EXPECT_EQ(first.count(MoxTool::Level::Warning), 6u);
    EXPECT_EQ(first.count(MoxTool::Level::Note), 1u);
    EXPECT_EQ(first.notKept().at(MoxTool::RuleId::SiblingNames), 4u);
}

TEST(FindingList, CountsWhatItDoesNotKeep) {
    MoxTool::FindingList findings(2);
    for (int i = 0; i < 5; ++i) {
        findings.add(MoxTool::RuleId::SiblingNames, "again");
    }
    EXPECT_EQ(findings.findings().size(), 2u);
    EXPECT_EQ(findings.count(MoxTool::Level::Warning), 5u);
    EXPECT_EQ(findings.notKept().at(MoxTool::RuleId::SiblingNames), 3u);
}
