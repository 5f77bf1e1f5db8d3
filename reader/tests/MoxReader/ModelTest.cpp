#include "MoxReader/Model.h"

#include "Support/ExpectError.h"
#include "Support/SampleModel.h"

using MoxReader::Attributes;
using MoxReader::ErrorCode;
using MoxReader::File;
using MoxReader::Model;

namespace {

Model modelOf(const SampleModel& sample) {
    return readModel(File(sample.file().source()));
}

/// The sample with one record of its tree changed.
template <class Change>
SampleModel withRecord(std::size_t id, const Change& change) {
    auto records = sampleRecords();
    change(records[id - 1]);
    SampleModel sample;
    sample.tree = treeStream(records);
    return sample;
}

template <class Change>
MoxReader::Error errorOfRecord(std::size_t id, const Change& change) {
    return errorOf([&] { modelOf(withRecord(id, change)); });
}

} // namespace

TEST(Model, NodesComeInOrderOfTheirIds) {
    const auto model = modelOf({});
    ASSERT_EQ(5u, model.nodes().size());
    EXPECT_EQ("Root", model.root().name);
    EXPECT_EQ("Sets", model.node(4).name);
    EXPECT_EQ(2u, model.node(3).parent);
    EXPECT_EQ((std::vector<std::uint32_t>{2, 4, 5}),
              std::vector<std::uint32_t>(model.children(1).begin(), model.children(1).end()));
    expectError(ErrorCode::NoSuchNode, [&] { model.node(0); });
    expectError(ErrorCode::NoSuchNode, [&] { model.children(6); });
}

TEST(Model, AGroupHasItsPlacementAndAttributes) {
    const auto model = modelOf({});
    const auto* group = model.root().group();
    ASSERT_NE(nullptr, group);
    EXPECT_EQ((std::array{1.0f, 2.0f, 3.0f}), group->translation);
    EXPECT_EQ((std::array{0.0f, 0.0f, 1.0f, 0.5f}), group->rotation);
    EXPECT_EQ((std::array{4.0f, 5.0f, 6.0f}), group->scale);
    EXPECT_EQ(1, group->kind);
    EXPECT_EQ((Attributes{{"a", std::uint32_t{7}}, {"b", "text"}, {"c", 1.5f}, {"d", 2.25}}),
              group->attributes);
}

TEST(Model, AShapeHasItsMaterial) {
    const auto model = modelOf({});
    ASSERT_NE(nullptr, model.node(2).shape());
    EXPECT_EQ(0.75f, model.node(2).shape()->material.shininess);
}

TEST(Model, AGeometryHasItsDatasetsWithTheirAttributes) {
    const auto model = modelOf({});
    ASSERT_NE(nullptr, model.node(3).geometry());
    const auto& datasets = model.node(3).geometry()->datasets;
    ASSERT_EQ(4u, datasets.size());
    EXPECT_EQ("Connectivity", datasets[1].name);
    EXPECT_EQ("Stress", datasets[2].name);
    EXPECT_EQ("Step1", datasets[2].step);
    EXPECT_TRUE(datasets[2].vibration);
    EXPECT_EQ((Attributes{{"unit", "MPa"}}), datasets[2].attributes);
    EXPECT_TRUE(datasets[3].isLink);
    EXPECT_EQ(3u, datasets[3].nodeId);
    EXPECT_EQ(3u, datasets[3].index);
}

TEST(Model, NodeSetsHaveTheirDescriptor) {
    const auto model = modelOf({});
    ASSERT_NE(nullptr, model.node(4).nodeSets());
    EXPECT_EQ(2u, model.node(4).nodeSets()->setCount);
    EXPECT_EQ(40u, model.node(4).nodeSets()->heavyPosition);
}

TEST(Model, APlainNodeHasNothing) {
    const auto model = modelOf({});
    EXPECT_TRUE(std::holds_alternative<std::monostate>(model.node(5).content));
}

TEST(Model, GlobalInformationSaysWhoSavedTheFile) {
    const auto model = modelOf({});
    ASSERT_EQ(1u, model.globalInformation().modifiers.size());
    EXPECT_EQ("App", model.globalInformation().modifiers[0].sourceName);
    EXPECT_EQ("note", model.globalInformation().modifiers[0].comment);
}

TEST(Model, ARootThatWasNeverSetIsANodeWithoutTypeInAFileOfTwoStreams) {
    TestFile file;
    file.compressed("Mox Tree", treeStream({{1, 0, 0, 0, 0, 0, "", "", "", 0}}));
    file.compressed("Global Information", SampleModel().global);
    const auto model = readModel(File(file.source()));
    ASSERT_EQ(1u, model.nodes().size());
    EXPECT_EQ("", model.root().typeName);
    EXPECT_TRUE(std::holds_alternative<std::monostate>(model.root().content));
}

TEST(Model, StreamsMayBeSplitIntoManyBlocks) {
    const SampleModel sample;
    TestFile file;
    for (const auto byte : sample.light) {
        file.compressed("Light Data", {byte});
    }
    for (const auto byte : sample.tree) {
        file.compressed("Mox Tree", {byte});
    }
    file.compressed("Attributes", sample.attributes).compressed("Resources", sample.resources);
    file.compressed("Global Information", sample.global);
    const auto model = readModel(File(file.source()));
    EXPECT_EQ("Plain", model.node(5).name);
    EXPECT_EQ("Step2", model.node(3).geometry()->datasets[3].step);
}

TEST(Model, ResolveFollowsLinks) {
    const auto model = modelOf({});
    const auto& datasets = model.node(3).geometry()->datasets;
    EXPECT_EQ(&datasets[2], &model.resolve(datasets[3]));
    EXPECT_EQ(&datasets[0], &model.resolve(datasets[0]));
}

TEST(Model, ResolveWorksAfterTheModelHasMoved) {
    auto first = modelOf({});
    const auto model = std::move(first);
    const auto& datasets = model.node(3).geometry()->datasets;
    EXPECT_EQ(&datasets[2], &model.resolve(datasets[3]));
}

TEST(Model, ResolveReportsALinkThatLeadsNowhere) {
    SampleModel sample;
    sample.light = patched(sample.light, 212 - 9, Bytes().u32(3).u32(4));
    const auto missing = modelOf(sample);
    const auto error = errorOf([&] { missing.resolve(missing.node(3).geometry()->datasets[3]); });
    EXPECT_EQ(ErrorCode::BadLinkTarget, error.code());
    EXPECT_EQ("dataset 3 of node 3", error.place().record);

    sample.light = patched(sample.light, 212 - 9, Bytes().u32(3).u32(3));
    const auto ring = modelOf(sample);
    expectError(ErrorCode::LinkCycle, [&] { ring.resolve(ring.node(3).geometry()->datasets[3]); });
}

TEST(Model, WithoutItsTreeOrItsGlobalInformationAFileIsNoModel) {
    const SampleModel sample;
    TestFile noTree;
    noTree.compressed("Global Information", sample.global);
    const auto error = errorOf([&] { readModel(File(noTree.source())); });
    EXPECT_EQ(ErrorCode::MissingStream, error.code());
    EXPECT_EQ("Mox Tree", error.place().name);

    TestFile noGlobal;
    noGlobal.compressed("Mox Tree", treeStream({{1, 0, 0, 0, 0, 0, "", "", "", 0}}));
    EXPECT_EQ("Global Information", errorOf([&] { readModel(File(noGlobal.source())); }).place().name);
}

TEST(Model, AnUnknownTypeIsAnErrorThatNamesTheNode) {
    const auto error = errorOfRecord(5, [](auto& record) { record.type = "Mode"; });
    EXPECT_EQ(ErrorCode::UnknownNodeType, error.code());
    EXPECT_EQ("node 5", error.place().record);
}

TEST(Model, GroupsAndGeometriesOfOtherVersionsAreNotRead) {
    EXPECT_EQ(ErrorCode::UnsupportedRecordVersion,
              errorOfRecord(1, [](auto& record) { record.version = "0.5"; }).code());
    EXPECT_EQ(ErrorCode::UnsupportedRecordVersion,
              errorOfRecord(3, [](auto& record) { record.version = "0.6"; }).code());
}

TEST(Model, TheVersionsOfOtherTypesDoNotMatter) {
    EXPECT_NO_THROW(modelOf(withRecord(2, [](auto& record) { record.version = "9"; })));
    EXPECT_NO_THROW(modelOf(withRecord(4, [](auto& record) { record.version = "9"; })));
    EXPECT_NO_THROW(modelOf(withRecord(5, [](auto& record) { record.version = ""; })));
}

TEST(Model, AnErrorInADatasetNamesTheDatasetAndItsNode) {
    SampleModel sample;
    sample.light = patched(sample.light, 211, {2});
    const auto error = errorOf([&] { modelOf(sample); });
    EXPECT_EQ(ErrorCode::BadValue, error.code());
    EXPECT_EQ("dataset 3 of node 3", error.place().record);
    EXPECT_EQ("Light Data", error.place().name);
    EXPECT_EQ(211u, error.place().streamOffset);
}

TEST(Model, ADescriptorMustStandWhereTheOneBeforeEnds) {
    const auto error = errorOfRecord(3, [](auto& record) { record.light = 42; });
    EXPECT_EQ(ErrorCode::BadPosition, error.code());
    EXPECT_EQ("node 3", error.place().record);
    EXPECT_EQ(41u, error.place().streamOffset);
}

TEST(Model, IdsMustRunFromOneWithoutGaps) {
    EXPECT_EQ(ErrorCode::BadNodeId, errorOfRecord(1, [](auto& record) { record.id = 2; }).code());
    EXPECT_EQ(ErrorCode::BadNodeId, errorOfRecord(5, [](auto& record) { record.id = 6; }).code());
    EXPECT_EQ(ErrorCode::BadNodeId, errorOf([] { Model({}, {}); }).code());
}

TEST(Model, LinksOfTheTreeMustAgree) {
    EXPECT_EQ(ErrorCode::BadTreeLink, errorOfRecord(3, [](auto& record) { record.parent = 4; }).code());
    EXPECT_EQ(ErrorCode::BadTreeLink, errorOfRecord(2, [](auto& record) { record.next = 5; }).code());
}

TEST(Model, EachStreamMustBeUsedUp) {
    for (auto stream : {&SampleModel::tree, &SampleModel::light, &SampleModel::attributes,
                        &SampleModel::resources, &SampleModel::global}) {
        SampleModel sample;
        (sample.*stream).push_back(0);
        expectError(ErrorCode::TrailingStreamBytes, [&] { modelOf(sample); });
    }
}

TEST(Model, ABlockWithLostContentAtTheEndOfAStreamIsAnError) {
    auto file = SampleModel().file();
    file.raw("Light Data", {}, 0x01);
    expectError(ErrorCode::ContentLost, [&] { readModel(File(file.source())); });
}
