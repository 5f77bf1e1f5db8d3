#include <Qel/Mox/DatasetEntry.h>

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace {

using QelUtil::AttributeList;
using QelUtil::AttributeValue;

AttributeValue text(std::string_view value) {
    return AttributeValue(value);
}

class EntryOfDataset : public testing::Test {
protected:
    std::vector<std::string> keys() const {
        std::vector<std::string> result;
        for (const auto& [key, value] : entry.attributes) {
            result.push_back(key);
        }
        return result;
    }

    using Keys = std::vector<std::string>;

    QelMox::DatasetEntry entry;
};

TEST_F(EntryOfDataset, NewEntryIsNoLinkAndHasNoAttributes) {
    EXPECT_FALSE(entry.isLink);
    EXPECT_EQ(entry.linkNodeId, 0U);
    EXPECT_EQ(entry.linkIndex, 0U);
    EXPECT_FALSE(entry.vibration);
    EXPECT_EQ(entry.values.width, 1);
    EXPECT_TRUE(entry.attributes.empty());
}

TEST_F(EntryOfDataset, CategoryVibrationIsKeptAndMarksTheEntryWhileReservedKeysAreDropped) {
    entry.SetAttributes({{"Category", text("Vibration")},
                         {"DataType", text("x")},
                         {"Link.target", text("x")},
                         {"unit", text("mm")}});
    EXPECT_TRUE(entry.vibration);
    EXPECT_EQ(keys(), (Keys{"Category", "unit"}));
    EXPECT_EQ(entry.attributes.at("Category").text, "Vibration");
    EXPECT_EQ(entry.attributes.at("unit").text, "mm");
}

TEST_F(EntryOfDataset, AllReservedKeysAreDropped) {
    AttributeList list;
    for (const char* const key :
         {"Complex", "Contents", "DataSource", "DataType", "Structure", "Link.", "Link.x"}) {
        list[key] = AttributeValue(1U);
    }
    entry.SetAttributes(list);
    EXPECT_EQ(keys(), Keys());
}

TEST_F(EntryOfDataset, KeyOfTheFourCharactersBeforeThePointIsStored) {
    entry.SetAttributes({{"Link", AttributeValue(1U)}, {"Linkx", AttributeValue(1U)}});
    EXPECT_EQ(keys(), (Keys{"Link", "Linkx"}));
}

TEST_F(EntryOfDataset, ReservedKeysAreComparedWholeAndWithCase) {
    entry.SetAttributes({{"Complexity", AttributeValue(1U)},
                         {"complex", AttributeValue(1U)},
                         {"Comple", AttributeValue(1U)},
                         {"", AttributeValue(1U)},
                         {"link.x", AttributeValue(1U)}});
    EXPECT_EQ(keys(), (Keys{"", "Comple", "Complexity", "complex", "link.x"}));
}

TEST_F(EntryOfDataset, CategoryInLowerCaseOrOfAnotherKindIsNoVibration) {
    entry.SetAttributes({{"Category", text("vibration")}});
    EXPECT_FALSE(entry.vibration);
    entry.SetAttributes({{"Category", text("Vibrations")}});
    EXPECT_FALSE(entry.vibration);
    AttributeValue number = text("Vibration");
    for (const auto kind : {AttributeValue::Integer, AttributeValue::Float, AttributeValue::Double}) {
        number.kind = kind; // The kind of the text's bytes.
        entry.SetAttributes({{"Category", number}});
        EXPECT_FALSE(entry.vibration) << kind;
    }
}

TEST_F(EntryOfDataset, VibrationIsSettledAnewByEachCall) {
    entry.SetAttributes({{"Category", text("Vibration")}});
    entry.SetAttributes({});
    EXPECT_FALSE(entry.vibration);
    EXPECT_EQ(keys(), (Keys{"Category"}));
}

TEST_F(EntryOfDataset, LaterAttributesAreAddedAndReplaceThoseOfTheirKeys) {
    entry.SetAttributes({{"a", AttributeValue(1U)}, {"b", AttributeValue(2U)}});
    entry.SetAttributes({{"b", text("x")}, {"c", AttributeValue(3U)}});
    EXPECT_EQ(keys(), (Keys{"a", "b", "c"}));
    EXPECT_EQ(entry.attributes.at("a").integer, 1U);
    EXPECT_EQ(entry.attributes.at("b").text, "x");
    EXPECT_EQ(entry.attributes.at("c").integer, 3U);
}

TEST_F(EntryOfDataset, LinkNamesItsTargetAndHasNoAttributes) {
    entry.SetAttributes({{"a", AttributeValue(1U)}});
    entry.LinkTo(3, 7, {{"b", AttributeValue(2U)}});
    EXPECT_TRUE(entry.isLink);
    EXPECT_EQ(entry.linkNodeId, 3U);
    EXPECT_EQ(entry.linkIndex, 7U);
    EXPECT_FALSE(entry.vibration);
    EXPECT_EQ(keys(), Keys());
}

TEST_F(EntryOfDataset, LinkIsMarkedAsAVibrationByTheAttributesThatItIsGiven) {
    entry.LinkTo(3, 7, {{"Category", text("Vibration")}});
    EXPECT_TRUE(entry.vibration);
    EXPECT_EQ(keys(), Keys());
    entry.LinkTo(3, 7, {});
    EXPECT_FALSE(entry.vibration);
}

} // namespace
