#include "races/Support/NumberedModel.h"

#include <MoxReader/File.h>
#include <MoxReader/HeavyData.h>
#include <MoxReader/Model.h>
#include <Qel/Exception/Exception.h>
#include <Qel/Mox2/Model.h>

#include <gtest/gtest.h>

#include <map>
#include <numeric>
#include <stdexcept>
#include <vector>

namespace Races {

namespace {

using namespace Qel::Mox2;

constexpr unsigned ShapeCount = 20;
constexpr unsigned ArrayCount = 6;
constexpr unsigned RowCount = 3000;

std::string shapeName(unsigned number, unsigned shape) {
    return "shape " + std::to_string(number) + '.' + std::to_string(shape);
}

// The root is 1; each shape and its geometry take two ids.
unsigned geometryId(unsigned shape) {
    return 3 + 2 * shape;
}

std::vector<unsigned int> numbersOf(unsigned number, unsigned array) {
    std::vector<unsigned int> numbers(RowCount);
    std::iota(numbers.begin(), numbers.end(), number * 1000000 + array * 10000);
    return numbers;
}

SaverOptions optionsOf(unsigned number) {
    SaverOptions options;
    options.overwrite = true;
    options.sourceName = "model " + std::to_string(number);
    return options;
}

void addShapes(Model& model, unsigned number) {
    for (unsigned shape = 0; shape < ShapeCount; ++shape) {
        model.setCurrentNodeId(1);
        EXPECT_EQ(geometryId(shape), model.addNode(Shape, shapeName(number, shape)));
        NodeProperties properties;
        properties.set(DiffuseColor, std::vector<float>{static_cast<float>(number), 0.5F, 0.25F});
        properties.set(AmbientIntensity, 0.5F);
        model.setNodeData(geometryId(shape), properties);
        model.moveToParentNode();
        EXPECT_EQ(geometryId(shape) - 1, model.getNodeId("/root/" + shapeName(number, shape)));
        EXPECT_EQ(geometryId(shape) - 1, model.getNodeId({"root", shapeName(number, shape)}));
    }
}

void mergePaths(Model& model, unsigned number) {
    const Array1d<unsigned int> ids =
        model.addAssemblyComponents({"/root/" + shapeName(number, 0), "/root/g/"});
    EXPECT_EQ(geometryId(0), ids[0]);
    Attributes attributes;
    attributes.set("number", static_cast<int>(number));
    const std::map<std::string, Attributes> paths = {{"::root::g::", attributes}};
    EXPECT_EQ(ids[1], model.addAssemblyComponents(paths, "::")[0]);
    model.setNodeData(ids[1], NodeProperties(), attributes);
}

// Exceptions and what they hold are made on both threads too.
void failInCalls(Model& model, const std::string& path) {
    EXPECT_THROW(model.saveTo(path, SaverOptions()), Qel::Exception::InvalidObjectState);
    EXPECT_THROW(model.addNode(RootGroup, "second root"), Qel::Exception::InvalidArguments);
    EXPECT_THROW(model.setCurrentNodeId(Model::INVALID_ID), Qel::Exception::OutOfBounds);
    EXPECT_THROW(model.getNodeId(Model::defaultPathSeparator() + "root"), std::out_of_range);
    EXPECT_THROW(model.addAssemblyComponents({"/another root/a"}), Qel::Exception::NotYetImplemented);
    NodeProperties properties;
    properties.set(ShapeSwitch, true);
    EXPECT_THROW(model.setNodeData(2, properties), Qel::Exception::TemplateSpecializationNotDefined);
}

void fillTree(Model& model, const std::string& path, unsigned number) {
    Attributes attributes;
    attributes.set("number", static_cast<int>(number));
    attributes.set("text", "of model " + std::to_string(number));
    model.saveTo(path, optionsOf(number));
    model.addNode(Group, "root", attributes);
    addShapes(model, number);
    mergePaths(model, number);
    failInCalls(model, path);
}

void expectShapes(const MoxReader::Model& model, unsigned number) {
    for (unsigned shape = 0; shape < ShapeCount; ++shape) {
        const MoxReader::Node& node = model.node(geometryId(shape) - 1);
        EXPECT_EQ(shapeName(number, shape), node.name);
        ASSERT_NE(nullptr, node.shape());
        EXPECT_EQ(static_cast<float>(number), node.shape()->material.diffuse[0]);
        EXPECT_EQ(0.5F, node.shape()->material.ambient[3]);
    }
}

void expectTreeIn(const MoxReader::Model& model, unsigned number) {
    const MoxReader::AttributeValue expected = std::uint32_t{number};
    EXPECT_EQ("model " + std::to_string(number), model.globalInformation().modifiers.at(0).sourceName);
    ASSERT_EQ(2 + 2 * ShapeCount, model.nodes().size());
    ASSERT_NE(nullptr, model.root().group());
    EXPECT_EQ(expected, model.root().group()->attributes.at("number"));
    expectShapes(model, number);
    EXPECT_EQ("g", model.nodes().back().name);
    ASSERT_NE(nullptr, model.nodes().back().group());
    EXPECT_EQ(expected, model.nodes().back().group()->attributes.at("number"));
}

} // namespace

void NumberedModel::saveTree() const {
    Model model;
    fillTree(model, path_, number_);
    model.close();
}

void NumberedModel::saveTreeAndArrays(std::mutex& oneAtATime) const {
    Model model;
    fillTree(model, path_, number_);
    for (unsigned array = 0; array < ArrayCount; ++array) {
        const std::lock_guard<std::mutex> lock(oneAtATime);
        const Step step{"step " + std::to_string(array), Attributes()};
        model.addArrayProperty("numbers", NodeScalar, Array1d<unsigned int>(numbersOf(number_, array)),
                               geometryId(array), step);
    }
    model.close();
}

void NumberedModel::expectTree() const {
    const MoxReader::File file(path_);
    expectTreeIn(readModel(file), number_);
}

void NumberedModel::expectTreeAndArrays() const {
    const MoxReader::File file(path_);
    const MoxReader::Model model = readModel(file);
    expectTreeIn(model, number_);
    MoxReader::HeavyData heavy(file, model);
    for (unsigned array = 0; array < ArrayCount; ++array) {
        const MoxReader::Geometry* const geometry = model.node(geometryId(array)).geometry();
        ASSERT_NE(nullptr, geometry);
        ASSERT_EQ(1U, geometry->datasets.size());
        EXPECT_EQ("step " + std::to_string(array), geometry->datasets[0].step);
        EXPECT_EQ(numbersOf(number_, array), heavy.readUnsigned(geometry->datasets[0]));
    }
}

} // namespace Races
