#include "api/Support/Failures.h"
#include "api/Support/OpenModel.h"
#include "api/Support/PublicNames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <vector>

namespace Api {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

using Ids = Array1d<unsigned int>;
using Dataset = MoxReader::Dataset;

Failure noName() {
    return failure<Qel::Exception::InvalidArguments>(3, "Can't guess result name for specified type",
                                                     "Qel/Mox2/ArrayProperty", "Qel::Mox2::ArrayProperty");
}

Failure noWidth() {
    return failure<Qel::Exception::InvalidArguments>(3, "Can't guess result width for specified type",
                                                     "Qel/Mox2/ArrayProperty", "Qel::Mox2::ArrayProperty");
}

Failure wrongColumns() {
    return failure<Qel::Exception::InvalidArguments>(3, "Invalid arguments", "Qel/Mox2/Adder/ArrayProperty",
                                                     "Qel::Mox2::Adder::ArrayProperty");
}

Failure negativeCount() {
    return failure<Qel::Exception::UnderflowError>(13, "Underflow error", "Qel/Mox2/Adder/ArrayProperty",
                                                   "Qel::Mox2::Adder::ArrayProperty");
}

Step stepOf(const std::string& name) {
    Step step;
    step.name = name;
    return step;
}

StepList stepsOf(const std::vector<std::string>& names) {
    StepList steps(names.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
        steps.set(i, stepOf(names[i]));
    }
    return steps;
}

template <typename T>
Attributes attribute(const std::string& key, const T& value) {
    Attributes attributes;
    attributes.set(key, value);
    return attributes;
}

void expectLink(const Dataset& dataset, unsigned int nodeId, unsigned int index) {
    EXPECT_TRUE(dataset.isLink) << dataset.key;
    EXPECT_EQ(dataset.linkNodeId, nodeId) << dataset.key;
    EXPECT_EQ(dataset.linkIndex, index) << dataset.key;
    EXPECT_THAT(dataset.attributes, IsEmpty()) << dataset.key;
}

// A root group (1) with two shapes (2 and 4) and their geometries (3 and 5).
class ArrayProperty : public OpenModel {
protected:
    static constexpr unsigned int RootId = 1;
    static constexpr unsigned int First = 3;
    static constexpr unsigned int Second = 5;

    ArrayProperty() {
        addRootAndShape();
        model.setCurrentNodeId(RootId);
        model.addNode(Shape, "other");
    }

    // A dataset of one number, which goes to the end of the stream.
    void addProbe() { model.addArrayProperty("probe", NodeScalar, Numbers({9}), First, Step()); }

    using Numbers = Array1d<float>;

    const Numbers three{std::vector<float>{1, 2, 3}};
};

// The position of the probe, and thus the number of bytes that the calls before it have put into the stream.
std::uint64_t bytesBefore(const SavedModel& file) {
    for (const Dataset& dataset : file.datasets(3)) {
        if (dataset.key == "probe") {
            return dataset.position;
        }
    }
    return ~std::uint64_t{0};
}

} // namespace

// --- The table of types

namespace {

struct TypeRow {
    int type;
    std::size_t width;
    const char* name; // Null for a type without a default name.
    unsigned int variableType;
};

class ArrayPropertyType : public OpenModel, public testing::WithParamInterface<TypeRow> {
protected:
    ArrayPropertyType() { addRootAndShape(); }

    const DatasetType type = DatasetType(GetParam().type);
    const std::size_t width = GetParam().width;
};

} // namespace

TEST_P(ArrayPropertyType, IsWrittenWithItsWidthAndVariableType) {
    model.addArrayProperty("name", type, Array2d<float>(2, width, 1.0F), 3U, Step());
    const SavedModel file = saved();
    const Dataset& dataset = file.datasets(3).at(0);
    EXPECT_EQ(dataset.width, width);
    EXPECT_EQ(dataset.variableType, GetParam().variableType);
    EXPECT_EQ(dataset.sizeInBytes, 2 * width * 4);
}

TEST_P(ArrayPropertyType, TakesNoOtherNumberOfColumns) {
    for (const std::size_t columns : {0U, 1U, 2U, 3U, 4U, 6U, 7U}) {
        if (columns != width) {
            const Array2d<float> data(2, columns, 1.0F);
            EXPECT_TRUE(
                fails([&] { model.addArrayProperty("name", type, data, 3U, Step()); }, wrongColumns()))
                << columns;
        }
    }
}

TEST_P(ArrayPropertyType, OneDimensionServesWidthOneAlone) {
    const auto add = [&] { model.addArrayProperty("name", type, Array1d<float>({1, 2}), 3U, Step()); };
    if (width == 1) {
        EXPECT_NO_THROW(add());
    } else {
        EXPECT_TRUE(fails(add, wrongColumns()));
    }
}

TEST_P(ArrayPropertyType, HasItsDefaultNameOrNone) {
    const auto add = [&] { model.addArrayProperty(type, Array2d<float>(2, width, 1.0F), 3U, Step()); };
    if (GetParam().name == nullptr) {
        EXPECT_TRUE(fails(add, noName()));
    } else {
        add();
        EXPECT_EQ(saved().datasets(3).at(0).key, GetParam().name);
    }
}

INSTANTIATE_TEST_SUITE_P(
    AllTypes, ArrayPropertyType,
    testing::Values(TypeRow{0, 1, "Connectivity", 4}, TypeRow{1, 1, "Connectivity", 5},
                    TypeRow{2, 1, "Connectivity", 6}, TypeRow{3, 1, "Polylength", 9},
                    TypeRow{4, 1, "Polylength", 9}, TypeRow{5, 1, "Polylength", 9},
                    TypeRow{6, 1, "Part Elements", 4}, TypeRow{7, 1, "Part Elements", 5},
                    TypeRow{8, 1, "Part Elements", 6}, TypeRow{9, 3, "Coordinates", 1},
                    TypeRow{10, 1, nullptr, 12}, TypeRow{11, 3, nullptr, 13}, TypeRow{12, 6, nullptr, 14},
                    TypeRow{13, 6, nullptr, 15}, TypeRow{14, 1, nullptr, 16}, TypeRow{15, 3, nullptr, 17},
                    TypeRow{16, 6, nullptr, 18}, TypeRow{17, 6, nullptr, 19}, TypeRow{18, 1, nullptr, 20},
                    TypeRow{19, 3, nullptr, 21}, TypeRow{20, 6, nullptr, 22}, TypeRow{21, 6, nullptr, 23},
                    TypeRow{22, 1, nullptr, 24}, TypeRow{23, 1, nullptr, 25}, TypeRow{24, 3, nullptr, 26},
                    TypeRow{25, 6, nullptr, 27}, TypeRow{26, 6, nullptr, 28}, TypeRow{27, 1, "Node Ids", 12},
                    TypeRow{28, 1, "Element IDs", 16}, TypeRow{29, 3, "Displacement", 13},
                    TypeRow{30, 6, "Displacement", 14}),
    [](const auto& row) { return "Type" + std::to_string(row.param.type); });

TEST_F(ArrayProperty, UnknownTypeFailsWithTheNameOrWithTheWidth) {
    for (const int type : {31, -1, 0x7FFFFFFF}) {
        EXPECT_TRUE(
            fails([&] { model.addArrayProperty(DatasetType(type), three, First, Step()); }, noName()));
        EXPECT_TRUE(fails([&] { model.addArrayProperty("name", DatasetType(type), three, First, Step()); },
                          noWidth()));
    }
}

// --- The overloads

namespace {

template <typename ArrayT, typename IdsT, typename StepsT>
struct Overload {
    using Array = ArrayT;
    using NodeIds = IdsT;
    using Steps = StepsT;
};

template <typename T>
Array1d<T> threeNumbers(std::type_identity<Array1d<T>>) {
    return Array1d<T>({1, 2, 3});
}

template <typename T>
Array2d<T> threeNumbers(std::type_identity<Array2d<T>>) {
    return Array2d<T>(3, 1, {1, 2, 3});
}

unsigned int onlyId(std::type_identity<unsigned int>, unsigned int id) {
    return id;
}

Ids onlyId(std::type_identity<Ids>, unsigned int id) {
    return Ids({id});
}

Step onlyStep(std::type_identity<Step>) {
    return stepOf("S");
}

StepList onlyStep(std::type_identity<StepList>) {
    return stepsOf({"S"});
}

template <typename OverloadT>
class ArrayPropertyOverload : public ArrayProperty {
protected:
    static auto data() { return threeNumbers(std::type_identity<typename OverloadT::Array>()); }
    static auto ids() { return onlyId(std::type_identity<typename OverloadT::NodeIds>(), First); }
    static auto steps() { return onlyStep(std::type_identity<typename OverloadT::Steps>()); }

    static constexpr bool IsFloat = std::is_same_v<typename OverloadT::Array, Array1d<float>> ||
                                    std::is_same_v<typename OverloadT::Array, Array2d<float>>;

    void expectSaved(const std::string& key) {
        SavedModel file = saved();
        ASSERT_THAT(file.datasets(First), SizeIs(1));
        const Dataset& dataset = file.datasets(First)[0];
        EXPECT_EQ(dataset.key, key);
        EXPECT_EQ(dataset.elementTag, IsFloat ? 1 : 5);
        EXPECT_EQ(dataset.variableType, 12U);
        EXPECT_EQ(dataset.sizeInBytes, 12U);
        EXPECT_EQ(dataset.attributes, (MoxReader::Attributes{{"unit", "mm"}}));
        if (IsFloat) {
            EXPECT_THAT(file.floats(dataset), ElementsAre(1.0F, 2.0F, 3.0F));
        } else {
            EXPECT_THAT(file.integers(dataset), ElementsAre(1U, 2U, 3U));
        }
    }
};

using Overloads = testing::Types<
    Overload<Array1d<unsigned int>, unsigned int, Step>,
    Overload<Array1d<unsigned int>, unsigned int, StepList>, Overload<Array1d<unsigned int>, Ids, Step>,
    Overload<Array1d<unsigned int>, Ids, StepList>, Overload<Array1d<float>, unsigned int, Step>,
    Overload<Array1d<float>, unsigned int, StepList>, Overload<Array1d<float>, Ids, Step>,
    Overload<Array1d<float>, Ids, StepList>, Overload<Array2d<unsigned int>, unsigned int, Step>,
    Overload<Array2d<unsigned int>, unsigned int, StepList>, Overload<Array2d<unsigned int>, Ids, Step>,
    Overload<Array2d<unsigned int>, Ids, StepList>, Overload<Array2d<float>, unsigned int, Step>,
    Overload<Array2d<float>, unsigned int, StepList>, Overload<Array2d<float>, Ids, Step>,
    Overload<Array2d<float>, Ids, StepList>>;

} // namespace

TYPED_TEST_SUITE(ArrayPropertyOverload, Overloads);

TYPED_TEST(ArrayPropertyOverload, WithoutNameRecordsTheNumbersUnderTheDefaultName) {
    this->model.addArrayProperty(NodeIds, this->data(), this->ids(), this->steps(), attribute("unit", "mm"));
    this->expectSaved("Node Ids\x1eS");
}

TYPED_TEST(ArrayPropertyOverload, WithNameRecordsTheNumbersUnderTheName) {
    this->model.addArrayProperty("name", NodeScalar, this->data(), this->ids(), this->steps(),
                                 attribute("unit", "mm"));
    this->expectSaved("name\x1eS");
}

// --- Numbers

TEST_F(ArrayProperty, TwoDimensionsGoOutInRowMajorOrder) {
    model.addArrayProperty(Coordinates, Array2d<float>(2, 3, {1, 2, 3, 4, 5, 6}), First, Step());
    SavedModel file = saved();
    EXPECT_THAT(file.floats(file.datasets(First).at(0)), ElementsAre(1, 2, 3, 4, 5, 6));
}

TEST_F(ArrayProperty, PayloadIsComponentByComponentInBytePlanes) {
    const Array2d<unsigned int> data(
        2, 3, {0xA3A2A1A0, 0xB3B2B1B0, 0xC3C2C1C0, 0xD3D2D1D0, 0xE3E2E1E0, 0xF3F2F1F0});
    model.addArrayProperty(Coordinates, data, First, Step());
    EXPECT_EQ(saved().stream("Heavy Data"),
              (std::vector<std::uint8_t>{0xA0, 0xD0, 0xA1, 0xD1, 0xA2, 0xD2, 0xA3, 0xD3, //
                                         0xB0, 0xE0, 0xB1, 0xE1, 0xB2, 0xE2, 0xB3, 0xE3, //
                                         0xC0, 0xF0, 0xC1, 0xF1, 0xC2, 0xF2, 0xC3, 0xF3}));
}

TEST_F(ArrayProperty, NextPositionIsAfterAllNumbersOfTheLast) {
    model.addArrayProperty(Coordinates, Array2d<float>(5, 3, 1.0F), First, Step());
    model.addArrayProperty(NodeIds, Ids({1, 2}), First, Step());
    model.addArrayProperty(ElementIds, Ids({1, 2}), First, Step());
    const SavedModel file = saved();
    EXPECT_EQ(file.datasets(First).at(0).position, 0U);
    EXPECT_EQ(file.datasets(First).at(1).position, 60U);
    EXPECT_EQ(file.datasets(First).at(2).position, 68U);
}

TEST_F(ArrayProperty, NumbersAreWrittenOnceForManyIdsAndSteps) {
    model.addArrayProperty("T", NodeScalar, three, Ids({First, Second}), stepsOf({"A", "B", "C"}));
    addProbe();
    EXPECT_EQ(bytesBefore(saved()), 12U);
}

TEST_F(ArrayProperty, CallersObjectsAreNotChanged) {
    const std::string name = "T";
    const Numbers column({1, 2, 3});
    const Array2d<unsigned int> table(2, 3, {10, 20, 30, 40, 50, 60});
    const Ids ids({First, Second});
    Step step = stepOf("A");
    step.attributes.set("time", 0.5F);
    step.attributes.set("Link.dropped", 1);
    StepList steps(1);
    steps.set(0, step);
    Attributes attributes = attribute("unit", "mm");
    attributes.set("Complex", 1);
    model.addArrayProperty(name, NodeScalar, column, ids, steps, attributes);
    model.addArrayProperty("U", NodeVector, table, ids, step, attributes);
    EXPECT_EQ(name, "T");
    ASSERT_EQ(column.size(), 3U);
    EXPECT_EQ(std::vector<float>(&column[0], &column[0] + 3), (std::vector<float>{1, 2, 3}));
    ASSERT_EQ(table.rows(), 2U);
    ASSERT_EQ(table.cols(), 3U);
    EXPECT_EQ(std::vector<unsigned int>(&table(0, 0), &table(0, 0) + 6),
              (std::vector<unsigned int>{10, 20, 30, 40, 50, 60}));
    ASSERT_EQ(ids.size(), 2U);
    EXPECT_EQ(ids[0], 3U);
    EXPECT_EQ(ids[1], 5U);
    EXPECT_EQ(steps[0].name, "A");
    EXPECT_EQ(step.name, "A");
    // Groups keep all attributes, and so show what the objects still hold.
    model.setCurrentNodeId(RootId);
    const std::vector<Attributes> held = {attributes, step.attributes, steps[0].attributes};
    for (const Attributes& each : held) {
        model.addNode(Group, "probe", each);
    }
    const SavedModel file = saved();
    const MoxReader::Attributes ofStep = {{"Link.dropped", 1U}, {"time", 0.5F}};
    EXPECT_EQ(file.group(6).attributes, (MoxReader::Attributes{{"Complex", 1U}, {"unit", "mm"}}));
    EXPECT_EQ(file.group(7).attributes, ofStep);
    EXPECT_EQ(file.group(8).attributes, ofStep);
}

TEST_F(ArrayProperty, NumbersHaveLeftTheCallersHandsWhenTheCallReturns) {
    Numbers data({1, 2, 3});
    model.addArrayProperty("T", NodeScalar, data, First, Step());
    data[0] = 9;
    data = Numbers();
    SavedModel file = saved();
    EXPECT_THAT(file.floats(file.datasets(First).at(0)), ElementsAre(1, 2, 3));
}

TEST_F(ArrayProperty, TwoDimensionsOfOneColumnServeWidthOne) {
    model.addArrayProperty(NodeIds, Array2d<unsigned int>(3, 1, {1, 2, 3}), First, Step());
    EXPECT_EQ(saved().datasets(First).at(0).width, 1);
}

TEST_F(ArrayProperty, FloatVectorAndUnsignedConnectivityHaveTheirTagsInTheHighByte) {
    model.addArrayProperty("V", NodeVector, Array2d<float>(1, 3, 0.0F), First, Step());
    model.addArrayProperty(Connectivity0, Ids({0}), First, Step());
    const std::vector<std::uint8_t> light = saved().stream("Light Data");
    // After the group's 41 bytes: the count, then 4 + 1 bytes of key and the type.
    EXPECT_EQ(std::vector<std::uint8_t>(light.begin() + 50, light.begin() + 54),
              (std::vector<std::uint8_t>{0x0D, 0, 0, 0x01}));
    // After the first entry's remaining 26 bytes: 4 + 12 bytes of key and the type.
    EXPECT_EQ(std::vector<std::uint8_t>(light.begin() + 96, light.begin() + 100),
              (std::vector<std::uint8_t>{0x04, 0, 0, 0x05}));
}

// --- Nothing to do

TEST_F(ArrayProperty, EmptyIdsOrNoRowsWriteNothingEvenIfTheColumnsDontFit) {
    model.addArrayProperty(Coordinates, Array2d<float>(2, 5, 1.0F), Ids(), Step());
    model.addArrayProperty(Coordinates, Array2d<float>(0, 5), First, Step());
    model.addArrayProperty(Coordinates, Numbers(), First, Step());
    addProbe();
    const SavedModel file = saved();
    EXPECT_EQ(bytesBefore(file), 0U);
    EXPECT_THAT(file.datasets(First), SizeIs(1));
}

TEST_F(ArrayProperty, NothingToDoLeavesTheCurrentNodeAndConvertsNoAttributes) {
    model.setCurrentNodeId(2);
    model.addArrayProperty(NodeIds, Numbers(), First, Step(), attribute("count", 7U));
    model.addArrayProperty(NodeIds, three, Ids(), Step(), attribute("count", 7U));
    model.addNode(Group, "below the shape");
    EXPECT_EQ(saved().node(6).parent, 2U);
}

TEST_F(ArrayProperty, EmptyStepListWritesTheNumbersAndRecordsNothing) {
    model.setCurrentNodeId(2);
    model.addArrayProperty("T", NodeScalar, three, Ids({First, Second}), StepList());
    EXPECT_EQ(model.addNode(Group, "below the shape"), 6U);
    addProbe();
    const SavedModel file = saved();
    EXPECT_EQ(bytesBefore(file), 12U);
    EXPECT_THAT(file.datasets(First), SizeIs(1));
    EXPECT_THAT(file.datasets(Second), IsEmpty());
    EXPECT_EQ(file.node(6).parent, 2U);
}

// --- Keys and links

TEST_F(ArrayProperty, StepNameStandsAfterTheSeparatorInTheKey) {
    model.addArrayProperty(DisplacementVector, Array2d<float>(1, 3, 0.0F), First, stepOf("Step1"));
    model.addArrayProperty(DisplacementVector, Array2d<float>(1, 3, 0.0F), First, Step());
    const SavedModel file = saved();
    EXPECT_EQ(file.datasets(First).at(0).key, std::string("Displacement\x1eStep1"));
    EXPECT_EQ(file.datasets(First).at(1).key, "Displacement");
}

TEST_F(ArrayProperty, FirstOfTwoGeometriesHoldsTheNumbersAndTheSecondLinksToIt) {
    model.addArrayProperty(NodeIds, Ids({7}), First, Step());
    model.addArrayProperty("T", NodeScalar, three, Ids({First, Second}), Step(), attribute("unit", "K"));
    SavedModel file = saved();
    const Dataset& holder = file.datasets(First).at(1);
    EXPECT_FALSE(holder.isLink);
    EXPECT_EQ(holder.attributes, (MoxReader::Attributes{{"unit", "K"}}));
    const Dataset& link = file.datasets(Second).at(0);
    expectLink(link, First, 1);
    EXPECT_EQ(link.variableType, 12U);
    EXPECT_THAT(file.floats(link), ElementsAre(1, 2, 3));
}

TEST_F(ArrayProperty, LaterStepsLinkToTheFirst) {
    model.addArrayProperty("T", NodeScalar, three, First, stepsOf({"A", "B", "C"}));
    const SavedModel file = saved();
    ASSERT_THAT(file.datasets(First), SizeIs(3));
    EXPECT_FALSE(file.datasets(First)[0].isLink);
    expectLink(file.datasets(First)[1], First, 0);
    expectLink(file.datasets(First)[2], First, 0);
}

TEST_F(ArrayProperty, IdsAndStepsAreWorkedThroughIdById) {
    model.addArrayProperty("T", NodeScalar, three, Ids({Second, First}), stepsOf({"A", "B"}));
    const SavedModel file = saved();
    EXPECT_FALSE(file.datasets(Second).at(0).isLink);
    EXPECT_EQ(file.datasets(Second).at(0).key, std::string("T\x1e"
                                                           "A"));
    expectLink(file.datasets(Second).at(1), Second, 0);
    expectLink(file.datasets(First).at(0), Second, 0);
    expectLink(file.datasets(First).at(1), Second, 0);
}

TEST_F(ArrayProperty, IdOfANonGeometryInTheMiddleGetsNoEntryAndDisturbsNoLink) {
    model.addArrayProperty("T", NodeScalar, three, Ids({RootId, First, 2, 4, Second}), Step());
    const SavedModel file = saved();
    ASSERT_THAT(file.datasets(First), SizeIs(1));
    ASSERT_THAT(file.datasets(Second), SizeIs(1));
    EXPECT_FALSE(file.datasets(First)[0].isLink);
    expectLink(file.datasets(Second)[0], First, 0);
}

TEST_F(ArrayProperty, IdsOfNonGeometriesAloneWriteTheNumbersAndRecordNothing) {
    model.addArrayProperty("T", NodeScalar, three, Ids({RootId, 2}), Step());
    addProbe();
    const SavedModel file = saved();
    EXPECT_EQ(bytesBefore(file), 12U);
    EXPECT_THAT(file.datasets(First), SizeIs(1));
}

TEST_F(ArrayProperty, CurrentNodeIsTheLastIdAlsoIfThatIsNoGeometry) {
    model.addArrayProperty("T", NodeScalar, three, Ids({First, Second}), Step());
    EXPECT_EQ(model.addNode(Group, "below the geometry"), 6U);
    model.addArrayProperty("T", NodeScalar, three, Ids({First, RootId}), Step());
    EXPECT_EQ(model.addNode(Group, "below the root"), 7U);
    const SavedModel file = saved();
    EXPECT_EQ(file.node(6).parent, Second);
    EXPECT_EQ(file.node(7).parent, RootId);
}

TEST_F(ArrayProperty, SameKeyTwiceReusesTheEntry) {
    Attributes first = attribute("kept", 1);
    first.set("replaced", 2);
    model.addArrayProperty("T", NodeScalar, three, First, Step(), first);
    Attributes second = attribute("replaced", 3);
    second.set("added", 4);
    model.addArrayProperty("T", NodeVector, Array2d<unsigned int>(1, 3, {7, 8, 9}), First, Step(), second);
    SavedModel file = saved();
    ASSERT_THAT(file.datasets(First), SizeIs(1));
    const Dataset& dataset = file.datasets(First)[0];
    EXPECT_EQ(dataset.variableType, 13U);
    EXPECT_EQ(dataset.elementTag, 5);
    EXPECT_EQ(dataset.width, 3);
    EXPECT_EQ(dataset.position, 12U);
    EXPECT_EQ(dataset.attributes, (MoxReader::Attributes{{"added", 4U}, {"kept", 1U}, {"replaced", 3U}}));
    EXPECT_THAT(file.integers(dataset), ElementsAre(7U, 8U, 9U));
}

TEST_F(ArrayProperty, EntryThatWasALinkStaysOneWithItsOldTarget) {
    model.addArrayProperty("T", NodeScalar, three, Ids({First, Second}), Step());
    model.addArrayProperty("T", ElementScalar, Numbers({9}), Second, Step());
    const SavedModel file = saved();
    const Dataset& dataset = file.datasets(Second).at(0);
    EXPECT_TRUE(dataset.isLink);
    EXPECT_EQ(dataset.linkNodeId, First);
    EXPECT_EQ(dataset.linkIndex, 0U);
    EXPECT_EQ(dataset.variableType, 16U);
}

TEST_F(ArrayProperty, EntryThatWasALinkTakesANewTargetAsALaterPair) {
    model.addArrayProperty("T", NodeScalar, three, Ids({First, Second}), Step());
    model.addArrayProperty("T", ElementScalar, Numbers({7, 8}), Second, stepsOf({"S", ""}));
    SavedModel file = saved();
    ASSERT_THAT(file.datasets(Second), SizeIs(2));
    const Dataset& former = file.datasets(Second)[0];
    EXPECT_EQ(former.key, "T");
    expectLink(former, Second, 1);
    EXPECT_EQ(former.variableType, 16U);
    EXPECT_THAT(file.floats(former), ElementsAre(7, 8));
}

// The starting point of the test above.
TEST_F(ArrayProperty, LinkThatIsNotUsedAgainKeepsItsTarget) {
    model.addArrayProperty("T", NodeScalar, three, Ids({First, Second}), Step());
    model.addArrayProperty("T", ElementScalar, Numbers({7, 8}), Second, stepsOf({"S", "R"}));
    const SavedModel file = saved();
    expectLink(file.datasets(Second).at(0), First, 0);
}

TEST_F(ArrayProperty, EmptyNameGivesAKeyOfTheSeparatorAndTheStepOrAnEmptyOne) {
    model.addArrayProperty("", NodeScalar, three, First, stepOf("A"));
    model.addArrayProperty("", NodeScalar, three, First, Step());
    const SavedModel file = saved();
    ASSERT_THAT(file.datasets(First), SizeIs(2));
    EXPECT_EQ(file.datasets(First)[0].key, std::string("\x1e"
                                                       "A"));
    EXPECT_EQ(file.datasets(First)[1].key, "");
}

TEST_F(ArrayProperty, TwoUnnamedStepsGiveAnEntryThatLinksToItself) {
    model.addArrayProperty("T", NodeScalar, three, First, StepList(2));
    const SavedModel file = saved();
    ASSERT_THAT(file.datasets(First), SizeIs(1));
    EXPECT_EQ(file.datasets(First)[0].key, "T");
    expectLink(file.datasets(First)[0], First, 0);
}

TEST_F(ArrayProperty, OneIdTwiceGivesAnEntryThatLinksToItself) {
    model.addArrayProperty("T", NodeScalar, three, Ids({First, First}), Step(), attribute("unit", "K"));
    const SavedModel file = saved();
    ASSERT_THAT(file.datasets(First), SizeIs(1));
    expectLink(file.datasets(First)[0], First, 0);
}

// --- Attributes

TEST_F(ArrayProperty, StepAttributesAreInsertedAndThePropertysValueWins) {
    Attributes ofProperty = attribute("both", "property");
    ofProperty.set("own", 1);
    Step step = stepOf("S");
    step.attributes.set("both", "step");
    step.attributes.set("time", 0.5F);
    model.addArrayProperty("T", NodeScalar, three, First, step, ofProperty);
    EXPECT_EQ(saved().datasets(First).at(0).attributes,
              (MoxReader::Attributes{{"both", "property"}, {"own", 1U}, {"time", 0.5F}}));
}

TEST_F(ArrayProperty, AttributesOfOneStepDontReachTheNext) {
    Step step = stepOf("A");
    step.attributes.set("time", 0.5F);
    StepList steps(2);
    steps.set(0, stepOf("B"));
    steps.set(1, step);
    model.addArrayProperty("T", NodeScalar, three, First, step);
    model.addArrayProperty("T", NodeScalar, three, Second, steps);
    const SavedModel file = saved();
    EXPECT_EQ(file.datasets(First).at(0).attributes, (MoxReader::Attributes{{"time", 0.5F}}));
    EXPECT_THAT(file.datasets(Second).at(0).attributes, IsEmpty());
}

TEST_F(ArrayProperty, SingleIdAndStepOfOneCallDontReachTheNext) {
    Step step = stepOf("A");
    step.attributes.set("time", 0.5F);
    model.addArrayProperty("T", NodeScalar, three, First, step);
    model.addArrayProperty("U", NodeScalar, three, Second, Step());
    const SavedModel file = saved();
    ASSERT_THAT(file.datasets(First), SizeIs(1));
    ASSERT_THAT(file.datasets(Second), SizeIs(1));
    EXPECT_EQ(file.datasets(Second)[0].key, "U");
    EXPECT_THAT(file.datasets(Second)[0].attributes, IsEmpty());
    EXPECT_FALSE(file.datasets(Second)[0].isLink);
}

TEST_F(ArrayProperty, CategoryVibrationMarksTheEntryAndReservedKeysAreDropped) {
    Attributes attributes = attribute("Category", "Vibration");
    for (const char* const key :
         {"Complex", "Contents", "DataSource", "DataType", "Structure", "Link.", "Link.any"}) {
        attributes.set(key, 1);
    }
    for (const char* const key : {"Link", "link.any", "complex", "Complex ", "DataTyp"}) {
        attributes.set(key, 1);
    }
    model.addArrayProperty("T", NodeScalar, three, First, Step(), attributes);
    const SavedModel file = saved();
    EXPECT_TRUE(file.datasets(First).at(0).vibration);
    EXPECT_EQ(file.datasets(First).at(0).attributes, (MoxReader::Attributes{{"Category", "Vibration"},
                                                                            {"Complex ", 1U},
                                                                            {"DataTyp", 1U},
                                                                            {"Link", 1U},
                                                                            {"complex", 1U},
                                                                            {"link.any", 1U}}));
}

TEST_F(ArrayProperty, CategoryInLowerCaseOrAsIntegerIsNoVibration) {
    model.addArrayProperty("T", NodeScalar, three, First, Step(), attribute("Category", "vibration"));
    model.addArrayProperty("U", NodeScalar, three, First, Step(), attribute("Category", 1));
    const SavedModel file = saved();
    EXPECT_FALSE(file.datasets(First).at(0).vibration);
    EXPECT_FALSE(file.datasets(First).at(1).vibration);
}

// --- Failures in their order

TEST(ArrayPropertyOfEmptyModel, NameAndWidthFailBeforeTheState) {
    Model model;
    const Array1d<float> data({1});
    EXPECT_TRUE(fails([&] { model.addArrayProperty(NodeScalar, data, 3U, Step()); }, noName()));
    EXPECT_TRUE(fails([&] { model.addArrayProperty("T", DatasetType(31), data, 3U, Step()); }, noWidth()));
    EXPECT_TRUE(fails([&] { model.addArrayProperty("T", NodeScalar, data, 3U, Step()); }, fileNotOpen()));
}

TEST(ArrayPropertyOfEmptyModel, StateFailsBeforeThereIsNothingToDo) {
    Model model;
    EXPECT_TRUE(fails([&] { model.addArrayProperty(NodeIds, Array1d<float>(), 3U, Step()); }, fileNotOpen()));
    EXPECT_TRUE(
        fails([&] { model.addArrayProperty(NodeIds, Array1d<float>({1}), Ids(), Step()); }, fileNotOpen()));
}

TEST_F(ArrayProperty, NothingToDoComesBeforeNegativeCounts) {
    EXPECT_NO_THROW(model.addArrayProperty(NodeIds, Numbers(0x80000000), Ids(), Step()));
    EXPECT_NO_THROW(model.addArrayProperty(NodeIds, Numbers(), Ids(0x80000000), Step()));
}

TEST_F(ArrayProperty, NegativeCountIsAnUnderflowBeforeTheColumnsAreLookedAt) {
    EXPECT_TRUE(
        fails([&] { model.addArrayProperty(NodeIds, Numbers(0x80000000), First, Step()); }, negativeCount()));
    EXPECT_TRUE(fails([&] { model.addArrayProperty(Coordinates, Numbers(0xFFFFFFFF), First, Step()); },
                      negativeCount()));
    EXPECT_TRUE(
        fails([&] { model.addArrayProperty(Coordinates, Array2d<float>(0x80000000, 5), First, Step()); },
              negativeCount()));
    EXPECT_TRUE(
        fails([&] { model.addArrayProperty(NodeIds, three, Ids(0x80000000), Step()); }, negativeCount()));
    addProbe();
    EXPECT_EQ(bytesBefore(saved()), 0U);
}

TEST_F(ArrayProperty, ColumnsFailBeforeTheWrite) {
    EXPECT_TRUE(fails([&] { model.addArrayProperty(Coordinates, three, First, Step(), attribute("a", 7U)); },
                      wrongColumns()));
    EXPECT_TRUE(
        fails([&] { model.addArrayProperty(Coordinates, Array2d<unsigned int>(2, 2, 1U), First, Step()); },
              wrongColumns()));
    addProbe();
    EXPECT_EQ(bytesBefore(saved()), 0U);
}

TEST_F(ArrayProperty, RefusedPropertyAttributesComeAfterTheWriteAndRecordNothing) {
    model.setCurrentNodeId(2);
    const Attributes refused = attribute("a", 7U);
    EXPECT_TRUE(fails([&] { model.addArrayProperty("T", NodeScalar, three, First, Step(), refused); },
                      attributeRefused()));
    EXPECT_TRUE(fails([&] { model.addArrayProperty("T", NodeScalar, three, First, StepList(), refused); },
                      attributeRefused()));
    EXPECT_EQ(model.addNode(Group, "below the shape"), 6U);
    addProbe();
    const SavedModel file = saved();
    EXPECT_EQ(bytesBefore(file), 24U);
    EXPECT_THAT(file.datasets(First), SizeIs(1));
    EXPECT_EQ(file.node(6).parent, 2U);
}

TEST_F(ArrayProperty, RefusedStepAttributesComeBeforeTheCurrentNodeMoves) {
    model.setCurrentNodeId(2);
    Step refused = stepOf("A");
    refused.attributes.set("a", 7U);
    EXPECT_TRUE(
        fails([&] { model.addArrayProperty("T", NodeScalar, three, First, refused); }, attributeRefused()));
    EXPECT_TRUE(
        fails([&] { model.addArrayProperty("T", NodeScalar, three, 99U, refused); }, attributeRefused()));
    EXPECT_EQ(model.addNode(Group, "below the shape"), 6U);
    EXPECT_EQ(saved().node(6).parent, 2U);
}

TEST_F(ArrayProperty, PairsBeforeARefusedStepStayRecorded) {
    StepList steps = stepsOf({"A", "B"});
    Step refused = stepOf("B");
    refused.attributes.set("a", 7U);
    steps.set(1, refused);
    EXPECT_TRUE(fails(
        [&] {
            model.addArrayProperty("T", NodeScalar, three, Ids({First, Second}), steps);
        },
        attributeRefused()));
    EXPECT_EQ(model.addNode(Group, "below the geometry"), 6U);
    SavedModel file = saved();
    ASSERT_THAT(file.datasets(First), SizeIs(1));
    EXPECT_THAT(file.floats(file.datasets(First)[0]), ElementsAre(1, 2, 3));
    EXPECT_THAT(file.datasets(Second), IsEmpty());
    EXPECT_EQ(file.node(6).parent, First);
}

// --- Ids that are not in the tree

class ArrayPropertyOfUnknownId : public ArrayProperty, public testing::WithParamInterface<unsigned int> {
protected:
    ArrayPropertyOfUnknownId() {
        EXPECT_TRUE(fails(
            [&] {
                model.addArrayProperty("T", NodeScalar, three, Ids({First, GetParam(), Second}), Step());
            },
            currentNodeUnknown()));
    }
};

TEST_P(ArrayPropertyOfUnknownId, NumbersAndEarlierPairsStay) {
    addProbe();
    SavedModel file = saved();
    EXPECT_EQ(bytesBefore(file), 12U);
    EXPECT_THAT(file.floats(file.datasets(First).at(0)), ElementsAre(1, 2, 3));
    EXPECT_THAT(file.datasets(Second), IsEmpty());
}

TEST_P(ArrayPropertyOfUnknownId, CallsFromTheCurrentNodeFailWithNothingChanged) {
    EXPECT_TRUE(fails([&] { model.moveToParentNode(); }, currentNodeUnknown()));
    EXPECT_TRUE(fails([&] { model.addNode(Group, "lost"); }, currentNodeUnknown()));
    EXPECT_TRUE(fails([&] { model.addNode(Shape, "lost"); }, currentNodeUnknown()));
    model.setCurrentNodeId(RootId);
    EXPECT_EQ(model.addNode(Group, "added"), 6U);
    EXPECT_EQ(saved().nodeCount(), 6U);
}

TEST_P(ArrayPropertyOfUnknownId, SetCurrentNodeIdRepairsTheCurrentNode) {
    model.setCurrentNodeId(2);
    model.addNode(Group, "added");
    EXPECT_EQ(saved().node(6).parent, 2U);
}

TEST_P(ArrayPropertyOfUnknownId, GetNodeIdRepairsTheCurrentNode) {
    EXPECT_EQ(model.getNodeId("/root/other"), 4U);
    model.addNode(Group, "added");
    EXPECT_EQ(saved().node(6).parent, RootId);
}

TEST_P(ArrayPropertyOfUnknownId, SetNodeDataRepairsTheCurrentNode) {
    model.setNodeData(4, NodeProperties());
    model.addNode(Group, "added");
    EXPECT_EQ(saved().node(6).parent, 4U);
}

TEST_P(ArrayPropertyOfUnknownId, AssemblyComponentsRepairTheCurrentNode) {
    EXPECT_EQ(model.addAssemblyComponents(std::vector<std::string>{"/root/x/"})[0], 6U);
    model.addNode(Group, "added");
    EXPECT_EQ(saved().node(7).parent, 6U);
}

TEST_P(ArrayPropertyOfUnknownId, AnotherArrayRepairsTheCurrentNode) {
    model.addArrayProperty("U", NodeScalar, three, Second, Step());
    model.addNode(Group, "added");
    EXPECT_EQ(saved().node(6).parent, Second);
}

TEST_P(ArrayPropertyOfUnknownId, FileCanStillBeFinished) {
    EXPECT_NO_THROW(model.close());
    EXPECT_EQ(SavedModel(path).nodeCount(), 5U);
}

INSTANTIATE_TEST_SUITE_P(ZeroTheNextAndTheLargest, ArrayPropertyOfUnknownId,
                         testing::Values(0U, 6U, 0xFFFFFFFFU));

} // namespace Api
