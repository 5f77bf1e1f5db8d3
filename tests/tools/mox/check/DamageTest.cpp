// Every single bit of saved files, every length to which they can be cut, and random damage.

#include "../common/FirstBlock.h"
#include "CheckedBytes.h"
#include "DeflateBits.h"
#include "SampleFiles.h"
#include "Support/CaseStride.h"
#include "Support/EnvironmentGuard.h"
#include "Support/TemporaryFolder.h"

#include <MoxReader/File.h>
#include <MoxReader/HeavyData.h>
#include <MoxReader/Model.h>
#include <Qel/Mox2/Model.h>

#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <random>
#include <set>
#include <span>

namespace {

using FileBytes = std::vector<std::uint8_t>;
namespace Mox = Qel::Mox2;

/// @param results Arrays of results at the end.
FileBytes savedModel(unsigned results = 1) {
    const Support::TemporaryFolder folder;
    const auto path = folder.path("small.mox");
    Mox::Model model;
    model.saveTo(path, {true, "Solver", "2.1", ""});
    Mox::Attributes attributes;
    attributes.set("Title", "small");
    model.addNode(Mox::RootMarkedGroup, "root", attributes);
    const auto part = model.addNode(Mox::Shape, "part");
    const Mox::Array2d<float> points(3, 3, {0, 0, 0, 1.25F, 0, 0, 0, 1.75F, 0});
    model.addArrayProperty(Mox::Coordinates, points, part, Mox::Step{});
    model.addArrayProperty(Mox::Connectivity1, Mox::Array1d<unsigned int>{0, 1, 2}, part, Mox::Step{});
    model.addArrayProperty(Mox::Polylength1, Mox::Array1d<unsigned int>{3}, part, Mox::Step{});
    Mox::StepList steps(2);
    steps.set(0, {"1", {}});
    steps.set(1, {"2", {}});
    for (unsigned i = 0; i < results; ++i) {
        model.addArrayProperty("T" + std::to_string(i), Mox::NodeScalar, Mox::Array1d<float>{20, 30, 40},
                               part, steps);
    }
    model.close();
    const auto text = folder.read("small.mox");
    return {text.begin(), text.end()};
}

/// Bytes with some changes, without a copy of the rest.
class ChangedSource : public MoxReader::Source {
public:
    ChangedSource(const FileBytes& original, std::size_t place, std::uint8_t mask)
        : bytes_(original), changed_(place), change_(mask) {}
    std::uint64_t size() const override { return bytes_.size(); }

protected:
    void readInside(std::uint64_t offset, std::span<std::uint8_t> target) override {
        std::copy_n(bytes_.begin() + static_cast<std::ptrdiff_t>(offset), target.size(), target.begin());
        if (changed_ >= offset && changed_ - offset < target.size()) {
            target[changed_ - static_cast<std::size_t>(offset)] ^= change_;
        }
    }

private:
    const FileBytes& bytes_;
    std::size_t changed_;
    std::uint8_t change_;
};

std::map<std::string, FileBytes> streamsOf(const std::shared_ptr<MoxReader::Source>& source) {
    const MoxReader::File file(source);
    std::map<std::string, FileBytes> streams;
    for (const auto& name : file.streamNames()) {
        auto stream = file.stream(name);
        streams[name] = stream.readBytes(stream.size());
    }
    return streams;
}

/// The bits, counted from the start of the file, that its zlib streams don't need: after the last block of
/// the deflated data, or in the distance of a copy.
struct SpareBits {
    std::set<std::size_t> padding;
    std::set<std::size_t> distances;
};

SpareBits spareBits(const FileBytes& bytes) {
    const MoxReader::File file(std::make_shared<MoxReader::MemorySource>(bytes));
    SpareBits spare;
    for (const auto& block : file.blocks()) {
        if (!block.isCompressed()) {
            continue;
        }
        const auto start = static_cast<std::size_t>(block.position) + MoxReader::Format::ContentWordSize;
        const auto stream = std::span(bytes).subspan(start, static_cast<std::size_t>(block.length) -
                                                                MoxReader::Format::ContentWordSize);
        const auto meanings = deflateBits(stream);
        for (std::size_t bit = 0; bit < meanings.size(); ++bit) {
            if (meanings[bit] == DeflateBit::Padding) {
                spare.padding.insert(8 * start + bit);
            } else if (meanings[bit] == DeflateBit::Distance) {
                spare.distances.insert(8 * start + bit);
            }
        }
    }
    return spare;
}

} // namespace

TEST(SavedFile, IsWhole) {
    EXPECT_EQ(rulesIn(findingsIn(savedModel())), std::vector<int>{});
}

// Two kinds of bits can flip undetected, and neither says anything about the model. After the last code of
// deflated data, unused bits fill up the byte. And where data repeats with a short period, it makes no
// difference whether it is copied from one period back or from two, so some bits of distances choose between
// encodings of the same content; this is proved for each of them by all streams inflating to the very same
// bytes.
TEST(SavedFile, HasNoBitThatCanFlipUnseenButPaddingAndDistancesOfEqualCopies) {
    const auto bytes = savedModel();
    const auto sound = streamsOf(std::make_shared<MoxReader::MemorySource>(bytes));
    const auto spare = spareBits(bytes);
    EXPECT_FALSE(spare.padding.empty());
    const auto padding =
        std::ranges::count_if(spare.padding, [](std::size_t bit) { return bit % CaseStride == 0; });
    std::ptrdiff_t unseenPadding = 0;
    for (std::size_t bit = 0; bit < 8 * bytes.size(); bit += CaseStride) {
        const auto source =
            std::make_shared<ChangedSource>(bytes, bit / 8, static_cast<std::uint8_t>(1u << bit % 8));
        if (!findingsIn(source).isEmpty()) {
            continue;
        }
        const bool isPadding = spare.padding.contains(bit);
        unseenPadding += isPadding ? 1 : 0;
        EXPECT_TRUE(isPadding || spare.distances.contains(bit))
            << "bit " << bit % 8 << " of byte " << bit / 8;
        EXPECT_EQ(streamsOf(source), sound) << "bit " << bit % 8 << " of byte " << bit / 8;
    }
    EXPECT_EQ(unseenPadding, padding);
}

namespace {

constexpr std::size_t FlagsOfBlock0 = 20 + 137;
constexpr std::uint8_t Freezable = 0x20;

/// A geometry with one array of 8 bytes, and an array that no dataset names in a block of its own.
FileBytes unnamedLastArray() {
    TestFile file;
    const FileBytes numbers(8);
    file.raw("Heavy Data", Bytes().u32(8).raw(zlibStream(numbers)), 0x21);
    file.raw("Heavy Data", Bytes().u32(8).raw(zlibStream(numbers)), 0x01);
    file.compressed("Mox Tree", treeStream({{1, 0, 0, 0, 0, 0, "G", "Geometry", "0.7", 0}}));
    file.compressed("Light Data", Bytes().u32(1).raw(fullEntry("N", 0x0100000C, 8, 1, 0)));
    file.compressed("Attributes", Bytes().noAttributes())
        .compressed("Global Information", SampleModel().global);
    return file.bytes();
}

std::vector<int> rulesWithFlip(const FileBytes& bytes, std::size_t record) {
    return rulesIn(
        findingsIn(std::make_shared<ChangedSource>(bytes, FlagsOfBlock0 + 139 * record, Freezable)));
}

} // namespace

// The only flag that can be right either way: that of a last block of numbers whose arrays nothing names.
TEST(FreezableFlag, OfNumbersCanFlipUnseenOnlyWhereNothingSaysHowManyArraysTheLastBlockHolds) {
    EXPECT_EQ(rulesWithFlip(savedModel(), 0), std::vector<int>{113});
    EXPECT_EQ(rulesWithFlip(unnamedLastArray(), 0), (std::vector<int>{708, 113}));
    EXPECT_EQ(rulesWithFlip(unnamedLastArray(), 1), std::vector<int>{708});
    EXPECT_EQ(rulesWithFlip(soundSample().file().bytes(), 0), std::vector<int>{}); // It has node sets.
}

// In any other block it is an error.
TEST(FreezableFlag, OfAnyOtherBlockNeverFlipsUnseen) {
    const auto bytes = savedModel();
    for (std::size_t record = 1; record < 20; ++record) {
        EXPECT_EQ(rulesWithFlip(bytes, record), std::vector<int>{110}) << record;
    }
}

// "aaaaa": two literals, a copy of three bytes from one byte back, the end. Codes are written with their
// highest bit first, everything else with the lowest: 1 10 | 10010001 | 10010001 | 0000001 00000 | 0000000 |
// padding.
TEST(DeflateBits, ShowWhatEachBitOfASmallStreamMeans) {
    const FileBytes stream = {0x78, 0x9C, 0x4B, 0x4C, 0x04, 0x02, 0x00, 0x05, 0xB4, 0x01, 0xE6};
    FileBytes content(5);
    uLongf size = content.size();
    ASSERT_EQ(uncompress(content.data(), &size, stream.data(), stream.size()), Z_OK);
    ASSERT_EQ(content, FileBytes(5, 'a'));
    std::vector<DeflateBit> expected(16, DeflateBit::Frame);
    const auto add = [&](std::size_t count, DeflateBit meaning) {
        expected.insert(expected.end(), count, meaning);
    };
    add(3, DeflateBit::Block);
    add(8 + 8 + 7, DeflateBit::Symbol);
    add(5, DeflateBit::Distance);
    add(7, DeflateBit::Symbol);
    add(2, DeflateBit::Padding);
    add(32, DeflateBit::Frame);
    EXPECT_EQ(deflateBits(stream), expected);
}

// A file with an Index Block is ten times as long, so only one bit of every 29th byte is tested. A record has
// 139 bytes, so each of its bytes is tested in one of the 200.
TEST(SavedFile, ShowsFlippedBitsInItsIndexBlockToo) {
    const Support::EnvironmentGuard smallBlocks(Support::BlockSizeVariable, "20");
    const auto bytes = savedModel(30);
    const MoxReader::File file(std::make_shared<MoxReader::MemorySource>(bytes));
    ASSERT_EQ(file.index().tables.size(), 2u);
    const auto table = static_cast<std::size_t>(file.index().tables.back().position);
    EXPECT_EQ(rulesIn(findingsIn(bytes)), std::vector<int>{});
    for (std::size_t place = table; place < table + 27804; place += 29 * CaseStride) {
        const auto mask = static_cast<std::uint8_t>(1u << place % 8);
        ASSERT_FALSE(findingsIn(std::make_shared<ChangedSource>(bytes, place, mask)).isEmpty())
            << place - table;
    }
}

// The contents of the blocks after it can't be placed then, but nothing else is hidden.
TEST(SavedFile, IsCheckedInFrontOfABlockThatStatesAnImpossibleLength) {
    const Support::EnvironmentGuard smallBlocks(Support::BlockSizeVariable, "20");
    auto bytes = savedModel(30);
    const MoxReader::File file(std::make_shared<MoxReader::MemorySource>(bytes));
    const auto third = static_cast<std::ptrdiff_t>(file.blocks().at(2).position);
    std::fill_n(bytes.begin() + third, MoxReader::Format::ContentWordSize, std::uint8_t{0xFF});
    const auto findings = findingsIn(bytes);
    EXPECT_EQ(findings.count(MoxTool::RuleId::ContentLength), 1u);
    EXPECT_EQ(findings.count(MoxTool::Level::Error), 1u);
    EXPECT_GT(findings.count(MoxTool::RuleId::NotChecked), 0u);
}

TEST(SavedFile, HasNoLengthToWhichItCanBeCutUnseen) {
    auto bytes = savedModel();
    while (!bytes.empty()) {
        bytes.pop_back();
        const auto findings = findingsIn(bytes);
        ASSERT_GT(findings.count(MoxTool::Level::Error), 0u) << bytes.size() << " bytes";
    }
}

namespace {

/// Changes a copy of the bytes in one of many ways. The result differs from the original in more than
/// padding.
FileBytes damaged(FileBytes bytes, std::mt19937& random) {
    const auto below = [&](std::size_t limit) { return static_cast<std::size_t>(random() % limit); };
    const auto place = below(2) == 0 ? below(bytes.size()) : FirstBlock + below(bytes.size() - FirstBlock);
    const auto at = bytes.begin() + static_cast<std::ptrdiff_t>(place);
    const auto count = std::min<std::size_t>(1 + below(40), bytes.size() - place);
    const auto after = at + static_cast<std::ptrdiff_t>(count);
    switch (below(6)) {
    case 0: // a wrong byte
        *at = static_cast<std::uint8_t>(*at + 1 + below(255));
        break;
    case 1: // a hole
        std::fill(at, after, std::uint8_t{0});
        break;
    case 2: // other bytes
        std::generate(at, after, [&] { return static_cast<std::uint8_t>(random()); });
        break;
    case 3: // bytes that are missing
        bytes.erase(at, after);
        break;
    case 4: { // extra bytes
        const FileBytes copy(at, after);
        bytes.insert(at, copy.begin(), copy.end());
        break;
    }
    default: // a cut
        bytes.erase(at, bytes.end());
    }
    return bytes;
}

/// Whether only the encoding of compressed data differs, so that no damage has been done.
bool areEquivalent(const FileBytes& left, const FileBytes& right) {
    if (left.size() != right.size() || !std::equal(left.begin(), left.begin() + FirstBlock, right.begin())) {
        return false;
    }
    try {
        return streamsOf(std::make_shared<MoxReader::MemorySource>(left)) ==
               streamsOf(std::make_shared<MoxReader::MemorySource>(right));
    } catch (const MoxReader::Error&) {
        return false;
    }
}

} // namespace

TEST(SavedFile, ShowsTwoHundredOfTwoHundredRandomDamages) {
    const auto bytes = savedModel();
    std::mt19937 random(20240229);
    int made = 0;
    int found = 0;
    while (made < 200) {
        const auto broken = damaged(bytes, random);
        if (areEquivalent(broken, bytes)) {
            continue;
        }
        ++made;
        found += findingsIn(broken).count(MoxTool::Level::Error) > 0 ? 1 : 0;
    }
    EXPECT_EQ(found, 200);
}

namespace {

/// Whether the reader takes a file with all its numbers and node sets.
bool readerTakes(const std::shared_ptr<MoxReader::Source>& source) {
    try {
        const MoxReader::File file(source);
        const auto model = MoxReader::readModel(file);
        MoxReader::HeavyData heavy(file, model);
        for (const auto& node : model.nodes()) {
            if (node.nodeSets() != nullptr) {
                heavy.readNodeSets(*node.nodeSets());
            }
            if (node.geometry() == nullptr) {
                continue;
            }
            for (const auto& dataset : node.geometry()->datasets) {
                if (model.resolve(dataset).elementTag == MoxReader::Format::FloatTag) {
                    heavy.readFloats(dataset);
                } else {
                    heavy.readUnsigned(dataset);
                }
            }
        }
        return true;
    } catch (const MoxReader::Error&) {
        return false;
    }
}

constexpr FileBytes SampleModel::*Streams[] = {&SampleModel::heavy,     &SampleModel::tree,
                                               &SampleModel::light,     &SampleModel::attributes,
                                               &SampleModel::resources, &SampleModel::global};

} // namespace

// The checksums are right, as they would be in the output of a faulty writer.
TEST(Streams, HaveNoBitThatTheReaderRefusesAndTheCheckDoesNot) {
    int refused = 0;
    for (const auto& stream : Streams) {
        const auto size = (soundSample().*stream).size();
        for (std::size_t bit = 0; bit < 8 * size; bit += CaseStride) {
            auto sample = soundSample();
            auto& byte = (sample.*stream)[bit / 8];
            byte = static_cast<std::uint8_t>(byte ^ (1u << bit % 8));
            const auto source = sample.file().source();
            if (readerTakes(source)) {
                continue;
            }
            ++refused;
            ASSERT_GT(findingsIn(source).count(MoxTool::Level::Error), 0u)
                << "stream " << &stream - Streams << ", bit " << bit;
        }
    }
    EXPECT_GT(refused, CaseStride == 1 ? 2000 : 100);
}
