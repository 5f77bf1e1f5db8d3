#include <Qel/Mox2/Adder/ArrayProperty.h>

#include "Qel/Mox/StreamContent.h"
#include "Qel/Mox2/OpenDatabase.h"
#include "Qel/Mox2/RefusedAttribute.h"
#include "Qel/Mox2/StateFailures.h"
#include "Support/Bytes.h"
#include "Support/Thrown.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

namespace {

using Qel::Exception::InvalidArguments;
using Qel::Exception::KeyNotFound;
using Qel::Exception::OverflowError;
using Qel::Exception::UnderflowError;
using Qel::Mox2::AttributeMap;
using Qel::Mox2::ColumnArray;
using Qel::Mox2::ColumnProperty;
using Qel::Mox2::DatasetType;
using Qel::Mox2::IdArray;
using Qel::Mox2::StepData;
using Qel::Mox2::TableArray;
using Qel::Mox2::TableProperty;
using QelMox::DatasetEntry;
using QelMox::Geometry;
using Support::Thrown;
using Support::throws;
using Steps = std::vector<StepData>;

Thrown failureIn(int code, std::string_view text) {
    return {code, text, "Qel/Mox2/Adder/ArrayProperty", "Qel::Mox2::Adder::ArrayProperty"};
}

const Thrown WrongColumns = failureIn(3, "Invalid arguments");
const Thrown NegativeCount = failureIn(13, "Underflow error");
const Thrown TooLargeCount = failureIn(12, "Overflow error");
const Thrown UnknownId = {14, "Key not found", "Qel/Adt/AdtTree", "::GetCurrentNode"};

IdArray idsOf(std::initializer_list<unsigned int> ids) {
    IdArray array(static_cast<Eigen::Index>(ids.size()));
    std::copy(ids.begin(), ids.end(), array.begin());
    return array;
}

const Steps OneStep(1);

// "T", a scalar of the numbers 1, 2 and 3 for each node.
ColumnProperty<float> threeFloats(const AttributeMap& attributes = {}) {
    static const ColumnArray<float> numbers = (ColumnArray<float>(3) << 1, 2, 3).finished();
    ColumnProperty<float> property;
    property.data = &numbers;
    property.attributes = attributes;
    property.name = "T";
    property.type = Qel::Mox2::NodeScalar;
    property.width = 1;
    return property;
}

template <typename PropertyT>
void apply(Qel::Mox2::Database& database, PropertyT property, const IdArray& ids, const Steps& steps) {
    Qel::Mox2::Adder::ArrayProperty<PropertyT, IdArray, Steps>(std::move(property), ids, steps)
        .update(database);
}

// A root group (1) with two shapes (2 and 4) and their geometries (3 and 5).
class ArrayPropertyAdder : public Support::OpenDatabase {
protected:
    static constexpr unsigned int RootId = 1;
    static constexpr unsigned int First = 3;
    static constexpr unsigned int Second = 5;

    ArrayPropertyAdder() {
        addRootAndShape();
        tree().SetCurrentId(RootId);
        tree().AddShapeNode("other");
        tree().SetCurrentId(2);
    }

    template <typename PropertyT>
    void add(PropertyT property, const IdArray& ids, const Steps& steps = OneStep) {
        apply(database, std::move(property), ids, steps);
    }

    std::uint64_t countOf(unsigned int id) { return dataOf<Geometry>(id).GetDatasetCount(); }
    const DatasetEntry& entry(unsigned int id, std::uint64_t index = 0) {
        return dataOf<Geometry>(id).GetDataset(index);
    }
    std::uint64_t streamed() { return tree().File.GetIndex().GetStreamSize("Heavy Data"); }
};

TEST(ArrayPropertyAdderState, NeedsWriteModeAlsoWithNothingToDo) {
    Support::expectThatItNeedsWriteMode(
        [](Qel::Mox2::Database& database) { apply(database, threeFloats(), idsOf({3}), OneStep); });
    Support::expectThatItNeedsWriteMode(
        [](Qel::Mox2::Database& database) { apply(database, ColumnProperty<float>(), IdArray(), OneStep); });
}

// --- Entries

TEST_F(ArrayPropertyAdder, PositionPasses4GiB) {
    tree().File.GetIndex().AddStoredBlock("Heavy Data", 5, 0xFFFFFFFF);
    tree().File.GetIndex().AddStoredBlock("Heavy Data", 5, 0xFFFFFFFF);
    add(threeFloats(), idsOf({First}));
    EXPECT_EQ(entry(First).position, 0x1FFFFFFFEU);
}

TEST_F(ArrayPropertyAdder, EntryDescribesTheNumbers) {
    const TableArray<unsigned int> numbers = (TableArray<unsigned int>(2, 3) << 1, 2, 3, 4, 5, 6).finished();
    TableProperty<unsigned int> property;
    property.data = &numbers;
    property.name = "V";
    property.type = Qel::Mox2::NodeVector;
    property.width = 3;
    add(std::move(property), idsOf({First}));
    const DatasetEntry& added = entry(First);
    EXPECT_EQ(added.key, "V");
    EXPECT_EQ(static_cast<unsigned int>(added.variableType), 13U);
    EXPECT_EQ(added.values.data, numbers.data());
    EXPECT_EQ(added.values.sizeInBytes, 24U);
    EXPECT_EQ(added.values.width, 3);
    EXPECT_EQ(added.values.elementTag, 5U);
    EXPECT_EQ(added.values.widthFlag, 0);
    EXPECT_EQ(added.values.descriptor, nullptr);
    EXPECT_FALSE(added.values.boolA || added.values.boolB || added.values.boolC);
    EXPECT_EQ(added.values.floatA, 0.0F);
    EXPECT_EQ(added.values.floatB, 0.0F);
    EXPECT_FALSE(added.isLink);
    EXPECT_EQ(added.position, 0U);
}

TEST_F(ArrayPropertyAdder, PositionsOfAllEntriesOfACallAreThatOfTheOneWrite) {
    add(threeFloats(), idsOf({First}));
    add(threeFloats(), idsOf({Second, First}), {StepData("A", {}), StepData("B", {})});
    EXPECT_EQ(streamed(), 24U);
    ASSERT_EQ(countOf(First), 3U);
    EXPECT_EQ(entry(First, 0).position, 0U);
    EXPECT_EQ(entry(First, 1).position, 12U);
    EXPECT_EQ(entry(First, 2).position, 12U);
    ASSERT_EQ(countOf(Second), 2U);
    EXPECT_EQ(entry(Second, 0).position, 12U);
    EXPECT_EQ(entry(Second, 1).position, 12U);
}

TEST_F(ArrayPropertyAdder, FirstPairHoldsTheNumbersAndAllLaterOnesLinkToIt) {
    add(threeFloats({{"unit", 1}}), idsOf({First, Second}), {StepData("A", {}), StepData("B", {})});
    EXPECT_FALSE(entry(First, 0).isLink);
    EXPECT_EQ(entry(First, 0).attributes.size(), 1U);
    const std::vector<const DatasetEntry*> links = {&entry(First, 1), &entry(Second, 0), &entry(Second, 1)};
    for (const DatasetEntry* const link : links) {
        EXPECT_TRUE(link->isLink);
        EXPECT_EQ(link->linkNodeId, First);
        EXPECT_EQ(link->linkIndex, 0U);
        EXPECT_TRUE(link->attributes.empty());
        EXPECT_EQ(link->values.sizeInBytes, 12U);
    }
}

TEST_F(ArrayPropertyAdder, LinksNameTheIndexOfTheHolder) {
    add(threeFloats(), idsOf({First}), {StepData("A", {}), StepData("B", {})});
    add(threeFloats(), idsOf({First, Second}), {StepData("C", {})});
    EXPECT_EQ(entry(Second).linkNodeId, First);
    EXPECT_EQ(entry(Second).linkIndex, 2U);
}

TEST_F(ArrayPropertyAdder, StepsAttributesAreInsertedAndThePropertysWin) {
    const Steps steps = {StepData("A", {{"both", 1}, {"time", 2}})};
    add(threeFloats({{"both", 3}, {"own", 4}}), idsOf({First}), steps);
    const QelUtil::AttributeList& attributes = entry(First).attributes;
    ASSERT_EQ(attributes.size(), 3U);
    EXPECT_EQ(attributes.at("both").integer, 3U);
    EXPECT_EQ(attributes.at("own").integer, 4U);
    EXPECT_EQ(attributes.at("time").integer, 2U);
}

TEST_F(ArrayPropertyAdder, EmptiedLinkKeepsItsVibration) {
    add(threeFloats({{"Category", std::string("Vibration")}}), idsOf({First, Second}));
    EXPECT_TRUE(entry(Second).vibration);
    EXPECT_TRUE(entry(Second).attributes.empty());
}

TEST_F(ArrayPropertyAdder, NonGeometriesGetNothingAndDisturbNothing) {
    add(threeFloats(), idsOf({RootId, First, 2, Second, 4}));
    EXPECT_FALSE(entry(First).isLink);
    EXPECT_EQ(entry(Second).linkNodeId, First);
    EXPECT_EQ(tree().GetCurrentId(), 4U);
}

TEST_F(ArrayPropertyAdder, RootWithoutDataIsPassedOver) {
    database.close();
    database.open();
    EXPECT_NO_THROW(add(threeFloats(), idsOf({RootId})));
    EXPECT_EQ(streamed(), 12U);
}

TEST_F(ArrayPropertyAdder, GeometryAsRootTakesPartLikeAnyOther) {
    database.close();
    database.open();
    tree().GetCurrentNode().data = std::make_unique<Geometry>("root").release();
    add(threeFloats(), idsOf({RootId}));
    EXPECT_EQ(countOf(RootId), 1U);
    EXPECT_FALSE(entry(RootId).isLink);
}

TEST_F(ArrayPropertyAdder, GeometryAsRootIsALinkAndTheTargetOfOneLikeAnyOther) {
    database.close();
    database.open();
    tree().GetCurrentNode().data = std::make_unique<Geometry>("root").release();
    tree().AddChildNode(std::make_unique<Geometry>("below"));
    add(threeFloats(), idsOf({RootId, 2}), {StepData("A", {})});
    EXPECT_FALSE(entry(RootId, 0).isLink);
    EXPECT_TRUE(entry(2, 0).isLink);
    EXPECT_EQ(entry(2, 0).linkNodeId, RootId);
    add(threeFloats(), idsOf({2, RootId}), {StepData("B", {})});
    EXPECT_FALSE(entry(2, 1).isLink);
    EXPECT_TRUE(entry(RootId, 1).isLink);
    EXPECT_EQ(entry(RootId, 1).linkNodeId, 2U);
    EXPECT_EQ(entry(RootId, 1).linkIndex, 1U);
}

TEST_F(ArrayPropertyAdder, IdZeroIsNotInTheTreeAlsoIfTheRootIsAGeometry) {
    database.close();
    database.open();
    tree().GetCurrentNode().data = std::make_unique<Geometry>("root").release();
    EXPECT_TRUE(throws<KeyNotFound>(UnknownId, [&] { add(threeFloats(), idsOf({0})); }));
    EXPECT_EQ(countOf(RootId), 0U);
    EXPECT_EQ(streamed(), 12U);
    EXPECT_EQ(tree().GetCurrentId(), 0U);
}

TEST_F(ArrayPropertyAdder, ReusedLinkStaysALinkToItsOldTarget) {
    add(threeFloats(), idsOf({First, Second}));
    add(threeFloats({{"unit", 1}}), idsOf({Second}));
    EXPECT_TRUE(entry(Second).isLink);
    EXPECT_EQ(entry(Second).linkNodeId, First);
    EXPECT_EQ(entry(Second).attributes.size(), 1U);
    EXPECT_EQ(entry(Second).position, 12U);
}

TEST_F(ArrayPropertyAdder, ReusedEntryKeepsNoFieldOfItsFormerNumbers) {
    add(threeFloats(), idsOf({First}));
    QelMox::NumericArray& former = dataOf<Geometry>(First).GetDataset(0).values;
    former.widthFlag = 1;
    former.descriptor = std::make_unique<QelMox::NumericArray::Descriptor>();
    former.boolA = former.boolB = former.boolC = true;
    former.floatA = former.floatB = 1;
    add(threeFloats(), idsOf({First}));
    const QelMox::NumericArray& present = entry(First).values;
    EXPECT_EQ(present.sizeInBytes, 12U);
    EXPECT_EQ(present.widthFlag, 0);
    EXPECT_EQ(present.descriptor, nullptr);
    EXPECT_FALSE(present.boolA || present.boolB || present.boolC);
    EXPECT_EQ(present.floatA, 0.0F);
    EXPECT_EQ(present.floatB, 0.0F);
}

TEST_F(ArrayPropertyAdder, ReusedEntryTakesANewTarget) {
    add(threeFloats(), idsOf({Second}));
    add(threeFloats(), idsOf({First, Second}));
    EXPECT_TRUE(entry(Second).isLink);
    EXPECT_EQ(entry(Second).linkNodeId, First);
    EXPECT_EQ(entry(Second).linkIndex, 0U);
}

TEST_F(ArrayPropertyAdder, ReusedLinkTakesANewTarget) {
    add(threeFloats(), idsOf({First, Second}));
    ASSERT_EQ(entry(Second).linkNodeId, First);
    ASSERT_EQ(entry(Second).linkIndex, 0U);
    add(threeFloats({{"unit", 1}}), idsOf({Second}), {StepData("A", {}), StepData()});
    EXPECT_FALSE(entry(Second, 1).isLink);
    EXPECT_TRUE(entry(Second).isLink);
    EXPECT_EQ(entry(Second).linkNodeId, Second);
    EXPECT_EQ(entry(Second).linkIndex, 1U);
    EXPECT_TRUE(entry(Second).attributes.empty());
}

TEST_F(ArrayPropertyAdder, KeyOfAPropertyWithoutNameBeginsWithTheSeparatorOrIsEmpty) {
    ColumnProperty<float> property = threeFloats();
    property.name.clear();
    add(std::move(property), idsOf({First}), {StepData("A", {}), StepData()});
    ASSERT_EQ(countOf(First), 2U);
    EXPECT_EQ(entry(First, 0).key, "\x1e"
                                   "A");
    EXPECT_EQ(entry(First, 1).key, "");
}

TEST_F(ArrayPropertyAdder, OneKeyTwiceInACallLinksToItself) {
    add(threeFloats(), idsOf({First}), Steps(2));
    add(threeFloats(), idsOf({Second, Second}));
    EXPECT_EQ(countOf(First), 1U);
    EXPECT_EQ(entry(First).linkNodeId, First);
    EXPECT_EQ(entry(First).linkIndex, 0U);
    EXPECT_TRUE(entry(First).isLink);
    EXPECT_TRUE(entry(Second).isLink);
    EXPECT_EQ(entry(Second).linkNodeId, Second);
    EXPECT_EQ(entry(Second).linkIndex, 0U);
}

// --- Order of the checks

TEST_F(ArrayPropertyAdder, NothingToDoComesBeforeEveryOtherCheck) {
    const ColumnArray<float> nothing;
    ColumnProperty<float> noRows = threeFloats({{"a", 7U}});
    noRows.data = &nothing;
    noRows.width = 3;
    noRows.type = DatasetType(31);
    EXPECT_NO_THROW(add(std::move(noRows), idsOf({First})));
    const ColumnArray<float> negative(-1);
    ColumnProperty<float> negativeRows = threeFloats();
    negativeRows.data = &negative;
    EXPECT_NO_THROW(add(std::move(negativeRows), IdArray()));
    const TableArray<float> columnsWithoutRows(0, 5);
    TableProperty<float> rowsWithoutColumns;
    rowsWithoutColumns.data = &columnsWithoutRows;
    EXPECT_NO_THROW(add(std::move(rowsWithoutColumns), idsOf({First})));
    EXPECT_EQ(tree().GetCurrentId(), 2U);
    EXPECT_EQ(streamed(), 0U);
}

TEST_F(ArrayPropertyAdder, NegativeCountsAreAnUnderflow) {
    const ColumnArray<float> negativeColumn(-1);
    ColumnProperty<float> column = threeFloats();
    column.data = &negativeColumn;
    column.width = 3;
    EXPECT_TRUE(throws<UnderflowError>(NegativeCount, [&] { add(std::move(column), idsOf({First})); }));
    const TableArray<float> negativeTable(-2147483648LL, 3);
    TableProperty<float> table;
    table.data = &negativeTable;
    EXPECT_TRUE(throws<UnderflowError>(NegativeCount, [&] { add(std::move(table), idsOf({First})); }));
    const IdArray negativeIds(-1);
    EXPECT_TRUE(throws<UnderflowError>(NegativeCount, [&] { add(threeFloats(), negativeIds); }));
    EXPECT_EQ(streamed(), 0U);
}

// Elsewhere a count with bit 31 set is negative.
#if PTRDIFF_MAX > 0x7FFFFFFF
TEST_F(ArrayPropertyAdder, RowsAbove31BitsAreAnOverflowBeforeTheColumnsAreLookedAt) {
    // Without columns it takes no memory.
    const TableArray<float> rows(0x80000000LL, 0);
    TableProperty<float> table;
    table.data = &rows;
    EXPECT_TRUE(throws<OverflowError>(TooLargeCount, [&] { add(std::move(table), idsOf({First})); }));
    EXPECT_EQ(streamed(), 0U);
}
#endif

TEST_F(ArrayPropertyAdder, LargestCountOfRowsIsNoOverflow) {
    const TableArray<float> rows(0x7FFFFFFFLL, 0);
    TableProperty<float> table;
    table.data = &rows;
    EXPECT_TRUE(throws<InvalidArguments>(WrongColumns, [&] { add(std::move(table), idsOf({First})); }));
}

#if PTRDIFF_MAX > 0x7FFFFFFF
// Ids take 8 GiB of addresses, of which nothing is touched: all of them fail before the first is looked at.
TEST_F(ArrayPropertyAdder, IdsAbove31BitsAreAnOverflowBeforeTheColumnsAreLookedAtAndNotBelow) {
    ColumnProperty<float> wrong = threeFloats();
    wrong.width = 3;
    ColumnProperty<float> wrongToo = threeFloats();
    wrongToo.width = 3;
    try {
        const IdArray largest(0x7FFFFFFFLL);
        EXPECT_TRUE(throws<InvalidArguments>(WrongColumns, [&] { add(std::move(wrong), largest); }));
    } catch (const std::bad_alloc&) {
        GTEST_SKIP() << "needs 8 GiB of addresses";
    }
    const IdArray tooMany(0x80000000LL);
    EXPECT_TRUE(throws<OverflowError>(TooLargeCount, [&] { add(std::move(wrongToo), tooMany); }));
    EXPECT_EQ(streamed(), 0U);
}
#endif

TEST_F(ArrayPropertyAdder, ColumnsAreComparedWithTheWidthBeforeTheWrite) {
    ColumnProperty<float> column = threeFloats();
    column.width = 3;
    EXPECT_TRUE(throws<InvalidArguments>(WrongColumns, [&] { add(std::move(column), idsOf({First})); }));
    const TableArray<float> zeros = TableArray<float>::Zero(2, 2);
    TableProperty<float> table;
    table.data = &zeros;
    table.width = 3;
    EXPECT_TRUE(throws<InvalidArguments>(WrongColumns, [&] { add(std::move(table), idsOf({First})); }));
    EXPECT_EQ(streamed(), 0U);
    EXPECT_EQ(tree().GetCurrentId(), 2U);
}

TEST_F(ArrayPropertyAdder, VariableTypeIsLookedUpAfterTheWriteAndBeforeTheAttributes) {
    ColumnProperty<float> property = threeFloats({{"a", 7U}});
    property.type = DatasetType(31);
    EXPECT_TRUE(throws<InvalidArguments>(
        {3, "Can't guess result type for specified type", "Qel/Mox2/ArrayProperty", "geomTypeFrom"},
        [&] { add(std::move(property), idsOf({First})); }));
    EXPECT_EQ(streamed(), 12U);
    EXPECT_EQ(countOf(First), 0U);
}

TEST_F(ArrayPropertyAdder, PropertysAttributesAreConvertedAfterTheWriteEvenWithoutSteps) {
    EXPECT_TRUE(throws<InvalidArguments>(Support::RefusedAttribute, [&] {
        add(threeFloats({{"a", 7U}}), idsOf({First}), Steps());
    }));
    EXPECT_EQ(streamed(), 12U);
    EXPECT_EQ(tree().GetCurrentId(), 2U);
}

TEST_F(ArrayPropertyAdder, StepsAttributesAreConvertedBeforeTheCurrentNodeMoves) {
    const Steps steps = {StepData("A", {{"a", 7U}})};
    EXPECT_TRUE(
        throws<InvalidArguments>(Support::RefusedAttribute, [&] { add(threeFloats(), idsOf({99}), steps); }));
    EXPECT_EQ(tree().GetCurrentId(), 2U);
    EXPECT_EQ(streamed(), 12U);
}

TEST_F(ArrayPropertyAdder, AttributesOfALaterStepAreConvertedAlsoForANodeThatIsNoGeometry) {
    const Steps steps = {StepData("A", {}), StepData("B", {{"a", 7U}})};
    EXPECT_TRUE(throws<InvalidArguments>(Support::RefusedAttribute,
                                         [&] { add(threeFloats(), idsOf({RootId}), steps); }));
}

TEST_F(ArrayPropertyAdder, UnknownIdLeavesItselfCurrentAndEarlierPairsRecorded) {
    EXPECT_TRUE(throws<KeyNotFound>(UnknownId, [&] { add(threeFloats(), idsOf({First, 99, Second})); }));
    EXPECT_EQ(tree().GetCurrentId(), 99U);
    EXPECT_EQ(countOf(First), 1U);
    EXPECT_EQ(countOf(Second), 0U);
    EXPECT_EQ(streamed(), 12U);
}

TEST_F(ArrayPropertyAdder, EmptyStepListWritesAndRecordsNothing) {
    add(threeFloats(), idsOf({First}), Steps());
    EXPECT_EQ(streamed(), 12U);
    EXPECT_EQ(countOf(First), 0U);
    EXPECT_EQ(tree().GetCurrentId(), 2U);
}

} // namespace
