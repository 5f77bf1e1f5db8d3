#include <Qel/Mox/Geometry.h>

#include "Qel/Mox/StreamContent.h"
#include "Qel/Support/textsWithEqualHashes.h"
#include "Support/Bytes.h"
#include "Support/Thrown.h"

#include <Qel/Tnf/BlockStream.h>
#include <Qel/Tnf/TnFile.h>

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <string>
#include <utility>

namespace {

using Qel::Exception::KeyNotFound;
using QelMox::DatasetEntry;
using QelMox::VariableType;
using QelUtil::AttributeValue;
using Support::Bytes;
using Support::ByteVector;
using Support::Thrown;
using Support::throws;

// An attribute record without attributes: six empty lists.
const ByteVector EmptyRecord(24, 0);

class VersionedGeometry final : public QelMox::Geometry {
public:
    VersionedGeometry(const std::string& geometryName, std::string geometryVersion)
        : Geometry(geometryName), version_(std::move(geometryVersion)) {}

    std::string GetVersion() const override { return version_; }

private:
    std::string version_;
};

DatasetEntry& addEntry(QelMox::Geometry& geometry, const std::string& key, VariableType type) {
    DatasetEntry& entry = geometry.GetDataset(geometry.FindOrAddDataset(key));
    entry.variableType = type;
    return entry;
}

// An entry "ab" of two vectors of floats, which are at 0x100000002 in the stream.
DatasetEntry& addVectors(QelMox::Geometry& geometry) {
    DatasetEntry& entry = addEntry(geometry, "ab", VariableType::NodeVector);
    entry.values.sizeInBytes = 24;
    entry.values.width = 3;
    entry.values.elementTag = 1;
    entry.position = 0x100000002;
    return entry;
}

void makeLink(DatasetEntry& entry) {
    entry.isLink = true;
    entry.linkNodeId = 3;
    entry.linkIndex = 7;
}

void writeTo(QelTnf::TnFile& container, const QelMox::Geometry& geometry) {
    const std::string names[] = {"Light Data", "Heavy Data", "Attributes"};
    QelTnf::BlockStream lightData(container.GetIndex(), names[0]);
    QelTnf::BlockStream heavyData(container.GetIndex(), names[1]);
    QelTnf::BlockStream attributes(container.GetIndex(), names[2]);
    geometry.WriteTn(lightData, heavyData, attributes);
}

class MoxGeometry : public testing::Test {
protected:
    void write(const QelMox::Geometry& written) { writeTo(container, written); }
    ByteVector light() { return Support::streamOf(container.GetIndex(), "Light Data"); }
    ByteVector attributes() { return Support::streamOf(container.GetIndex(), "Attributes"); }
    ByteVector heavy() { return Support::streamOf(container.GetIndex(), "Heavy Data"); }

    QelTnf::TnFile container;
    QelMox::Geometry geometry{"part"};
};

TEST_F(MoxGeometry, NamesItsTypeAndVersion) {
    EXPECT_EQ(geometry.GetName(), "part");
    EXPECT_EQ(geometry.GetTypeName(), "Geometry");
    EXPECT_EQ(geometry.GetVersion(), "0.7");
    EXPECT_EQ(geometry.GetDatasetCount(), 0U);
}

// --- Entries

TEST_F(MoxGeometry, NewKeyAppendsAnEntryWithDefaults) {
    EXPECT_EQ(geometry.FindOrAddDataset("a"), 0U);
    EXPECT_EQ(geometry.FindOrAddDataset("b"), 1U);
    const DatasetEntry& entry = std::as_const(geometry).GetDataset(1);
    EXPECT_EQ(entry.key, "b");
    EXPECT_EQ(static_cast<unsigned int>(entry.variableType), 0U);
    EXPECT_FALSE(entry.vibration);
    EXPECT_FALSE(entry.isLink);
    EXPECT_EQ(entry.linkNodeId, 0U);
    EXPECT_EQ(entry.linkIndex, 0U);
    EXPECT_EQ(entry.values.width, 1);
    EXPECT_EQ(entry.values.sizeInBytes, 0U);
    EXPECT_TRUE(entry.attributes.empty());
    EXPECT_FALSE(entry.position.has_value());
}

TEST_F(MoxGeometry, KnownKeyGivesItsIndex) {
    geometry.FindOrAddDataset("a");
    geometry.FindOrAddDataset("b");
    EXPECT_EQ(geometry.FindOrAddDataset("a"), 0U);
    EXPECT_EQ(geometry.GetDatasetCount(), 2U);
}

TEST_F(MoxGeometry, KeysAreComparedAsWholeByteStrings) {
    EXPECT_EQ(geometry.FindOrAddDataset("a"), 0U);
    EXPECT_EQ(geometry.FindOrAddDataset("A"), 1U);
    EXPECT_EQ(geometry.FindOrAddDataset(std::string("a\0", 2)), 2U);
    EXPECT_EQ(geometry.FindOrAddDataset(""), 3U);
    EXPECT_EQ(geometry.FindOrAddDataset("a"), 0U);
}

TEST_F(MoxGeometry, EachEntryIsFoundAmongAllThatAreThere) {
    constexpr unsigned int count = 100;
    const auto key = [](unsigned int number) { return "key" + std::to_string(number); };
    for (unsigned int added = 0; added < count; ++added) {
        EXPECT_EQ(geometry.FindOrAddDataset(key(added)), added);
        for (unsigned int known = 0; known <= added; ++known) {
            EXPECT_EQ(geometry.FindOrAddDataset(key(known)), known);
        }
        EXPECT_EQ(geometry.GetDatasetCount(), added + 1);
    }
}

TEST_F(MoxGeometry, EntriesThatWereAddedOneAfterTheOtherAreFound) {
    constexpr unsigned int count = 1000;
    for (unsigned int i = 0; i < count; ++i) {
        EXPECT_EQ(geometry.FindOrAddDataset("key" + std::to_string(i)), i);
    }
    for (unsigned int i = 0; i < count; ++i) {
        EXPECT_EQ(geometry.FindOrAddDataset("key" + std::to_string(i)), i);
        EXPECT_EQ(geometry.GetDataset(i).key, "key" + std::to_string(i));
    }
    EXPECT_EQ(geometry.GetDatasetCount(), count);
}

TEST_F(MoxGeometry, KeysWithEqualHashesAreToldApart) {
    const auto [first, second] = Support::textsWithEqualHashes();
    for (unsigned int i = 0; i < 20; ++i) {
        geometry.FindOrAddDataset("key" + std::to_string(i));
    }
    EXPECT_EQ(geometry.FindOrAddDataset(first), 20U);
    EXPECT_EQ(geometry.FindOrAddDataset(second), 21U);
    EXPECT_EQ(geometry.FindOrAddDataset(first), 20U);
    EXPECT_EQ(geometry.FindOrAddDataset(second), 21U);
}

TEST_F(MoxGeometry, ForgetPositionsTakesThemFromAllEntries) {
    addEntry(geometry, "a", VariableType::NodeScalar).position = 0;
    addEntry(geometry, "b", VariableType::NodeScalar).position = 7;
    geometry.ForgetPositions();
    EXPECT_FALSE(geometry.GetDataset(0).position.has_value());
    EXPECT_FALSE(geometry.GetDataset(1).position.has_value());
}

// --- The present layout

TEST_F(MoxGeometry, NoDatasetsWriteACountOfZeroAndNothingElse) {
    write(geometry);
    EXPECT_EQ(light(), (ByteVector{0, 0, 0, 0}));
    EXPECT_TRUE(attributes().empty());
    EXPECT_TRUE(heavy().empty());
}

TEST_F(MoxGeometry, FullEntryTakes30BytesAfterItsKey) {
    addVectors(geometry).attributes["a"] = AttributeValue(5U);
    write(geometry);
    const ByteVector expected = Bytes()
                                    .u32(1)
                                    .text("ab")
                                    .u32(0x0100000D)
                                    .u8(0)
                                    .u32(24)
                                    .u8(3)
                                    .u8(0)
                                    .u8(0)
                                    .bits({0, 0})
                                    .u8(0)
                                    .u64(0x100000002)
                                    .u8(0);
    EXPECT_EQ(expected.size(), 4U + 6U + 30U);
    EXPECT_EQ(light(), expected);
    const ByteVector record = Bytes().u32(1).text("a").u32(1).u8(0).u32(1).u32(5).zeros(12);
    EXPECT_EQ(attributes(), record);
    EXPECT_TRUE(heavy().empty());
}

TEST_F(MoxGeometry, LinkTakes14BytesAfterItsKeyAndNeedsNoPosition) {
    DatasetEntry& entry = addEntry(geometry, "ab", VariableType::Connectivity0);
    entry.values.elementTag = 5;
    entry.vibration = true;
    makeLink(entry);
    write(geometry);
    const ByteVector expected = Bytes().u32(1).text("ab").u32(0x05000004).u8(1).u32(3).u32(7).u8(1);
    EXPECT_EQ(expected.size(), 4U + 6U + 14U);
    EXPECT_EQ(light(), expected);
    EXPECT_EQ(attributes(), EmptyRecord);
}

TEST_F(MoxGeometry, FieldsAfterTheWidthStandInTheirOrder) {
    for (const char* const version : {"0.7", "0.4"}) {
        QelTnf::TnFile other;
        VersionedGeometry either("part", version);
        QelMox::NumericArray& values = addVectors(either).values;
        values.boolA = true;
        values.floatA = 1;
        values.floatB = 2;
        writeTo(other, either);
        values.boolA = false;
        values.boolB = true;
        values.boolC = true;
        writeTo(other, either);
        const ByteVector light = Support::streamOf(other.GetIndex(), "Light Data");
        // The count, the key, the type, the link's mark in the newer layout, the size and the width.
        const std::size_t ahead = 4U + 6U + 4U + (version == std::string("0.7") ? 1U : 0U) + 4U + 1U;
        const ByteVector first = Bytes().u8(1).u8(0).bits({0x3F800000, 0x40000000}).u8(0);
        const ByteVector second = Bytes().u8(0).u8(1).bits({0x3F800000, 0x40000000}).u8(1);
        EXPECT_EQ(Support::slice(light, ahead, 11), first) << version;
        EXPECT_EQ(Support::slice(light, light.size() / 2 + ahead, 11), second) << version;
    }
}

TEST_F(MoxGeometry, ElementTagStandsInTheHighByteOfTheType) {
    DatasetEntry& entry = addEntry(geometry, "", VariableType::NodeVector);
    entry.values.elementTag = 1;
    makeLink(entry);
    write(geometry);
    EXPECT_EQ(Support::slice(light(), 8, 4), (ByteVector{0x0D, 0x00, 0x00, 0x01}));
}

TEST_F(MoxGeometry, TypeOfAllOnesIsWrittenWithoutATag) {
    DatasetEntry& entry = addEntry(geometry, "", VariableType(0xFFFFFFFF));
    entry.values.elementTag = 1;
    makeLink(entry);
    write(geometry);
    EXPECT_EQ(Support::slice(light(), 8, 4), (ByteVector{0xFF, 0xFF, 0xFF, 0xFF}));
}

TEST_F(MoxGeometry, SizeIsCutToItsLow32Bits) {
    addVectors(geometry).values.sizeInBytes = 0x500000018;
    write(geometry);
    EXPECT_EQ(Support::slice(light(), 4 + 6 + 5, 4), (ByteVector{0x18, 0, 0, 0}));
}

TEST_F(MoxGeometry, CallersNumbersAreNotReadAtSaveTime) {
    // An address that nothing may read from.
    addVectors(geometry).values.data = reinterpret_cast<const void*>(std::uintptr_t{8});
    EXPECT_NO_THROW(write(geometry));
    EXPECT_TRUE(heavy().empty());
}

TEST_F(MoxGeometry, EntriesAreWrittenInOrderOfTheFirstUseOfTheirKeys) {
    makeLink(addEntry(geometry, "b", VariableType::NodeScalar));
    makeLink(addEntry(geometry, "a", VariableType::NodeScalar));
    addEntry(geometry, "b", VariableType::NodeScalar);
    write(geometry);
    const ByteVector expected =
        Bytes().u32(2).text("b").u32(12).u8(1).u32(3).u32(7).u8(0).text("a").u32(12).u8(1).u32(3).u32(7).u8(
            0);
    EXPECT_EQ(light(), expected);
    EXPECT_EQ(attributes().size(), 48U);
}

TEST_F(MoxGeometry, MissingPositionIsKeyNotFoundAfterTheRowsBeforeIt) {
    addVectors(geometry);
    geometry.ForgetPositions();
    const Thrown expected = {14, "Key not found", "Qel/Mox/Geometry", "QelMox::Geometry::WriteTn"};
    EXPECT_TRUE(throws<KeyNotFound>(expected, [&] { write(geometry); }));
    // The count, the key, the type, no link, the size, the width and the five zero fields.
    EXPECT_EQ(light().size(), 4U + 6U + 4U + 1U + 4U + 1U + 11U);
    EXPECT_TRUE(attributes().empty());
}

// --- Older layouts

TEST_F(MoxGeometry, Version06HasPositionsOf32Bits) {
    VersionedGeometry older("part", "0.6");
    addVectors(older);
    write(older);
    const ByteVector expected = Bytes()
                                    .u32(1)
                                    .text("ab")
                                    .u32(0x0100000D)
                                    .u8(0)
                                    .u32(24)
                                    .u8(3)
                                    .u8(0)
                                    .u8(0)
                                    .bits({0, 0})
                                    .u8(0)
                                    .u32(2)
                                    .u8(0);
    EXPECT_EQ(light(), expected);
    EXPECT_EQ(attributes(), EmptyRecord);
    EXPECT_TRUE(heavy().empty());
}

TEST_F(MoxGeometry, Version05PutsTheNumbersIntoHeavyDataAsTheyAre) {
    const std::array<std::uint32_t, 6> numbers = {1, 2, 3, 4, 5, 6};
    VersionedGeometry older("part", "0.5");
    addVectors(older).values.data = numbers.data();
    write(older);
    EXPECT_EQ(light().size(), 4U + 6U + 26U);
    EXPECT_EQ(Support::slice(light(), 4 + 6 + 4 + 1 + 4 + 1 + 11, 5), (ByteVector{2, 0, 0, 0, 0}));
    const ByteVector expected = Bytes().u32(1).u32(2).u32(3).u32(4).u32(5).u32(6);
    EXPECT_EQ(heavy(), expected);
}

TEST_F(MoxGeometry, Version05PutsNoNumbersForALink) {
    VersionedGeometry older("part", "0.5");
    DatasetEntry& entry = addVectors(older);
    entry.values.data = reinterpret_cast<const void*>(std::uintptr_t{8});
    makeLink(entry);
    write(older);
    EXPECT_TRUE(heavy().empty());
}

TEST_F(MoxGeometry, AnyOtherVersionHasNeitherLinksNorTags) {
    for (const char* const version : {"0.4", "0.1", "0.8", "0.70", ""}) {
        QelTnf::TnFile other;
        VersionedGeometry older("part", version);
        DatasetEntry& entry = addVectors(older);
        makeLink(entry);
        entry.vibration = true;
        entry.attributes["a"] = AttributeValue(5U);
        writeTo(other, older);
        const ByteVector expected =
            Bytes().u32(1).text("ab").u32(13).u32(24).u8(3).u8(0).u8(0).bits({0, 0}).u8(0).u8(1).u64(
                0x100000002);
        EXPECT_EQ(Support::streamOf(other.GetIndex(), "Light Data"), expected) << version;
        const ByteVector record = Bytes().u32(1).text("a").u32(1).u8(0).u32(1).u32(5).zeros(12);
        EXPECT_EQ(Support::streamOf(other.GetIndex(), "Attributes"), record) << version;
        EXPECT_TRUE(Support::streamOf(other.GetIndex(), "Heavy Data").empty()) << version;
    }
}

TEST_F(MoxGeometry, OldestLayoutMissesAPositionBeforeTheFifthRow) {
    VersionedGeometry older("part", "0.4");
    addVectors(older);
    older.ForgetPositions();
    const Thrown expected = {14, "Key not found", "Qel/Mox/Geometry", "QelMox::Geometry::WriteTn_l05"};
    EXPECT_TRUE(throws<KeyNotFound>(expected, [&] { write(older); }));
    const ByteVector written = Bytes().u32(1).text("ab").u32(13).u32(24).u8(3);
    EXPECT_EQ(light(), written);
    EXPECT_TRUE(attributes().empty());
}

} // namespace
