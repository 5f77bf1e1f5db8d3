#include "smallModels.h"

#include "Support/EnvironmentGuard.h"
#include "Support/NumberedArrays.h"

#include <Qel/Mox/NodeSets.h>
#include <Qel/Mox/Tree.h>
#include <Qel/Mox2/Model.h>

#include <limits>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace Golden {

using namespace Qel::Mox2;

namespace {

using Column = Array1d<float>;
using Indices = Array1d<unsigned int>;

constexpr int LargestInt = std::numeric_limits<int>::max();
constexpr int SmallestInt = std::numeric_limits<int>::min();
constexpr float Infinity = std::numeric_limits<float>::infinity();
constexpr float NotANumber = std::numeric_limits<float>::quiet_NaN();
constexpr float LargestFloat = std::numeric_limits<float>::max();
constexpr float SmallestFloat = std::numeric_limits<float>::denorm_min();

void open(Model& model, const std::string& path) {
    model.saveTo(path, {.overwrite = true, .sourceName = "golden", .sourceVersion = "1"});
}

/// Opens a model with a group and, below it, a shape. Returns the id for arrays.
unsigned int openWithPart(Model& model, const std::string& path) {
    open(model, path);
    model.addNode(Group, "root");
    return model.addNode(Shape, "part");
}

Attributes attribute(const std::string& key, const std::string& value) {
    Attributes attributes;
    attributes.set(key, value);
    return attributes;
}

Step stepAt(const std::string& name, float time) {
    Step step{name, {}};
    step.attributes.set("Time", time);
    return step;
}

/// As many rows of different numbers as asked for.
Array2d<float> rowsOf(unsigned int rows, unsigned int columns) {
    Array2d<float> array(rows, columns, 0.0F);
    for (unsigned int row = 0; row < rows; ++row) {
        for (unsigned int column = 0; column < columns; ++column) {
            array(row, column) = static_cast<float>(row) + 0.125F * static_cast<float>(column);
        }
    }
    return array;
}

/// Adds an array of numbers that hardly compress.
void addNumberedArray(Model& model, unsigned int part, unsigned int number, unsigned int length) {
    model.addArrayProperty("T" + std::to_string(number), NodeScalar,
                           Indices(Support::numbersOfArray(number, length)), part, Step());
}

} // namespace

// A root without a type, and two streams.
void saveEmptyModel(const std::string& path) {
    Model model;
    model.saveTo(path, {.overwrite = true});
    model.close();
}

// The only shape without a geometry.
void saveRootShape(const std::string& path) {
    Model model;
    open(model, path);
    model.addNode(Shape, "alone");
    model.close();
}

void saveGroups(const std::string& path) {
    Model model;
    open(model, path);
    const auto root = model.addNode(RootGroup, "root");
    NodeProperties everything;
    everything.set(Translation, std::vector<float>{-1.5F, 0.0F, 1e-5F});
    everything.set(Rotation, std::vector<float>{0.6F, 0.8F, 0.0F, 3.1415927F});
    everything.set(Scale, std::vector<float>{2.0F, 0.1F, -1.0F});
    model.setNodeData(model.addNode(Group, "all"), everything, attribute("set", "later"));

    model.setCurrentNodeId(root);
    model.addNode(Group, "twin");
    model.moveToParentNode();
    model.addNode(Group, "twin");
    model.addAssemblyComponents(std::vector<std::string>{"/root/a/b/", "/root/a/b/c/", "/root/a/leaf"});
    model.addAssemblyComponents(std::vector<std::string>{":root:d:e"}, ":");
    model.close();
}

void saveMaterials(const std::string& path) {
    Model model;
    open(model, path);
    model.addNode(Group, "root");
    const auto ids = model.addAssemblyComponents(
        std::vector<std::string>{"/root/initial", "/root/all", "/root/dimmed", "/root/four"});
    NodeProperties all;
    all.set(DiffuseColor, std::vector<float>{0.1F, 0.2F, 0.3F});
    all.set(SpecularColor, std::vector<float>{0.4F, 0.5F, 0.6F});
    all.set(EmissiveColor, std::vector<float>{0.7F, 0.8F, 0.9F});
    all.set(AmbientColor, std::vector<float>{1.0F, 0.0F, 0.5F});
    all.set(Transparency, 0.25F);
    all.set(Shininess, 1.0F);
    model.setNodeData(ids[1], all);
    NodeProperties dimmed;
    dimmed.set(AmbientIntensity, 0.5F);
    dimmed.set(DiffuseColor, std::vector<float>{1.0F, 0.5F, 0.25F});
    model.setNodeData(ids[2], dimmed);
    NodeProperties four;
    four.set(DiffuseColor, std::vector<float>{0.0F, 0.0F, 1.0F, 0.5F});
    model.setNodeData(ids[3], four);
    model.close();
}

void saveAttributes(const std::string& path) {
    Attributes attributes;
    attributes.set("", "an empty key");
    attributes.set("int largest", LargestInt);
    attributes.set("int smallest", SmallestInt);
    attributes.set("int minus one", -1);
    attributes.set("float nan", NotANumber);
    attributes.set("float infinite", -Infinity);
    attributes.set("float largest", LargestFloat);
    attributes.set("float smallest", SmallestFloat);
    attributes.set("float minus zero", -0.0F);
    attributes.set("text empty", "");
    attributes.set("text quoted", "\"a\\b\"\n\t\x01\x7F");
    attributes.set("text in UTF-8", "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x99\x82");
    attributes.set("text in Latin-1", "\xE4");
    attributes.set("text that is cut", std::string(255, '-') + "\xC3\xA4.");
    attributes.set("key\n\xFF", 1);
    Model model;
    open(model, path);
    model.addNode(Group, "root", attributes);
    model.addNode(Group, "replaced", attribute("kind", "text"));
    Attributes number;
    number.set("kind", 7);
    model.setNodeData(2, NodeProperties(), number);

    const auto part = model.addNode(Shape, "part", attribute("ignored", "on shapes"));
    Attributes described = attribute("Unit", "mm");
    described.set("Time", "of the array");
    described.set("DataType", "dropped");
    described.set("Link.any", "dropped");
    model.addArrayProperty("field", NodeScalar, Column{1, 2}, part, stepAt("s", 0.1F), described);
    model.close();
}

// A row of each type, under its default name where it has one.
void saveTypes(const std::string& path) {
    Model model;
    const auto part = openWithPart(model, path);
    const std::map<DatasetType, unsigned int> columns = {
        {NodeScalar, 1},    {NodeVector, 3},  {NodeSixA, 6},      {NodeSixB, 6},      {ElementScalar, 1},
        {ElementVector, 3}, {ElementSixA, 6}, {ElementSixB, 6},   {ThirdScalar, 1},   {ThirdVector, 3},
        {ThirdSixA, 6},     {ThirdSixB, 6},   {FourthScalarA, 1}, {FourthScalarB, 1}, {FourthVector, 3},
        {FourthSixA, 6},    {FourthSixB, 6},
    };
    for (const auto& [type, count] : columns) {
        model.addArrayProperty(std::to_string(type), type, rowsOf(1, count), part, Step());
    }
    model.addArrayProperty(DisplacementVector, rowsOf(1, 3), part, Step());
    model.addArrayProperty(DisplacementSix, rowsOf(1, 6), part, Step{"six", {}});
    model.addArrayProperty("unsigned", NodeVector, Array2d<unsigned int>(1, 3, {1, 2, 3}), part, Step());
    model.close();
}

// Elements of one, two and three dimensions: a line, a triangle beside a pentagon, and a pyramid.
void saveMesh(const std::string& path) {
    Model model;
    open(model, path);
    model.addNode(Group, "root");
    const auto ids =
        model.addAssemblyComponents(std::vector<std::string>{"/root/lines", "/root/faces", "/root/solids"});
    model.addArrayProperty(
        Coordinates, Array2d<float>(6, 3, {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 0.5F, 0.5F, 1, -1, 0.5F, 0}),
        ids, Step());
    model.addArrayProperty(NodeIds, Indices{10, 20, 30, 40, 50, 60}, ids, Step());
    model.addArrayProperty(Connectivity0, Indices{0, 1}, ids[0], Step());
    model.addArrayProperty(Polylength0, Indices{2}, ids[0], Step());
    model.addArrayProperty(Connectivity1, Indices{1, 2, 4, 0, 1, 2, 3, 5}, ids[1], Step());
    model.addArrayProperty(Polylength1, Indices{3, 5}, ids[1], Step());
    model.addArrayProperty(Connectivity2, Indices{0, 1, 2, 3, 4}, ids[2], Step());
    model.addArrayProperty(Polylength2, Indices{5}, ids[2], Step());
    model.addArrayProperty(ElementIds, Indices{7, 8}, ids[1], Step());
    model.addArrayProperty("Lines of part 1", PartElements0, Indices{0}, ids[0], Step());
    model.addArrayProperty("Faces of part 1", PartElements1, Indices{1, 0}, ids[1], Step());
    model.addArrayProperty("Solids of part 1", PartElements2, Indices{0}, ids[2], Step());
    model.close();
}

// No step, a step without a name, steps whose names hold the separator, and a mode shape.
void saveSteps(const std::string& path) {
    Model model;
    const auto part = openWithPart(model, path);
    model.addArrayProperty("plain", NodeScalar, Column{1}, part, Step());
    model.addArrayProperty("nameless", NodeScalar, Column{2}, part, Step{"", attribute("of", "the step")});
    model.addArrayProperty("A", NodeScalar, Column{3}, part,
                           Step{"B\x1E"
                                "C",
                                {}});
    model.addArrayProperty("A\x1E"
                           "B",
                           NodeScalar, Column{4}, part, Step{"D", {}});
    StepList steps(3);
    steps.set(0, stepAt("first", 0.0F));
    steps.set(1, stepAt("second", 0.5F));
    model.addArrayProperty("field", NodeScalar, Column{5}, part, steps, attribute("Unit", "K"));
    Step mode{"Mode 1", {}};
    mode.attributes.set("Frequency", 12.5F);
    model.addArrayProperty("Mode shape", NodeVector, rowsOf(2, 3), part, mode,
                           attribute("Category", "Vibration"));
    model.addArrayProperty("no mode shape", NodeScalar, Column{6}, part, Step(),
                           attribute("Category", "vibration"));
    model.addArrayProperty("nowhere", NodeScalar, Column{7}, part, StepList(0));
    model.close();
}

// Links to another geometry, a link whose key is given again, and a dataset that becomes a link.
void saveLinks(const std::string& path) {
    Model model;
    open(model, path);
    model.addNode(Group, "root");
    const auto ids = model.addAssemblyComponents(std::vector<std::string>{"/root/a", "/root/b", "/root/c"});
    model.addArrayProperty("shared", NodeScalar, Column{1, 2}, ids, Step(), attribute("Unit", "mm"));
    model.addArrayProperty("again", NodeScalar, Column{3}, ids, Step());
    model.addArrayProperty("again", NodeScalar, Column{4}, ids[1], Step(), attribute("given", "again"));
    model.addArrayProperty("late", NodeScalar, Column{5}, ids[2], Step());
    model.addArrayProperty("late", NodeScalar, Column{6}, ids, Step());
    model.addArrayProperty("late", NodeScalar, Column{7}, ids[0], Step());
    model.close();
}

void saveNames(const std::string& path) {
    Model model;
    model.saveTo(path, {.overwrite = true, .sourceName = "\xC3\xA4 \"quoted\"", .sourceVersion = "\xFF"});
    model.addNode(Group, "");
    const std::vector<std::string> names = {
        "a/b",      "a:b",          "\"\\\b\f\n\r\t\x1B[2J\x7F",  "\xC3\xBC\xE2\x82\xAC", "\xFC",
        "\xC0\x80", "\xED\xA0\x80", std::string("zero\0byte", 9), std::string(300, 'x'),  " "};
    for (const auto& name : names) {
        model.setCurrentNodeId(1);
        model.addNode(Group, name);
    }
    model.setCurrentNodeId(1);
    const auto part = model.addNode(Shape, "\xFF");
    model.addArrayProperty("\xE4\n", NodeScalar, Column{1}, part, Step{"\xF6", {}});
    model.close();
}

void saveNumbers(const std::string& path) {
    Model model;
    const auto part = openWithPart(model, path);
    model.addArrayProperty("floats", NodeScalar,
                           Column{0.0F, -0.0F, 1.0F, 0.1F, -1.0F / 3, 16777216.0F, 1e15F, 1e16F, 0.0001F,
                                  0.00001F, 0x1p87F, 0x1p-126F, LargestFloat, SmallestFloat, Infinity,
                                  -Infinity, NotANumber},
                           part, Step());
    model.addArrayProperty("integers", NodeScalar, Indices{0, 1, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF}, part,
                           Step());
    model.addArrayProperty("columns", NodeSixA, rowsOf(2, 6), part, Step());
    model.addArrayProperty("no rows", NodeScalar, Column(), part, Step());
    model.close();
}

// What no call of the model makes, but a save writes: sets, a plain node, attributes of double precision, and
// the records of earlier saves.
void saveNodeSets(const std::string& path) {
    constexpr int writing = 0;
    QelMox::Tree tree;
    tree.SetStreamFile(path, 1, &writing);
    tree.SetRootGroup("root", {{"pi", QelUtil::AttributeValue(3.141592653589793)},
                               {"tiny", QelUtil::AttributeValue(5e-324)}});
    const float number = 1.0F;
    tree.WriteStreamDataset(&number, 1, 1); // The sets do not begin at 0.
    auto sets = std::make_unique<QelMox::NodeSets>("sets");
    sets->sets = {{"top", {{1, 10}, {2, 20}}}, {"", {}}, {"\xFF", {{3, 0xFFFFFFFF}}}};
    tree.AddChildNode(std::move(sets));
    tree.SetCurrentId(1);
    tree.AddChildNode(std::make_unique<QelMox::NodeSets>("none"));
    tree.SetCurrentId(1);
    tree.AddChildNode(std::make_unique<QelMox::Node>("plain"));
    tree.ModifierInfos = {{.SourceName = "first",
                           .SourceVersion = "0.9",
                           .FormatVersion = "1.3",
                           .Date = "Thu Jan 01 00:00:00 1970 UTC",
                           .Computer = "host",
                           .User = "user",
                           .Comment = "made"}};
    tree.CurrentModifier.SourceName = "second";
    tree.SaveFile(tree.File, "changed");
}

// Each stream has several blocks, but there are not enough for an Index Block.
void saveSmallBlocks(const std::string& path) {
    const Support::EnvironmentGuard blockSize(Support::BlockSizeVariable, "100");
    Model model;
    const auto part = openWithPart(model, path);
    for (unsigned int i = 0; i < 3; ++i) {
        addNumberedArray(model, part, i, 15);
    }
    model.close();
}

// Blocks of 8 bytes while arrays are added: 18 arrays have a block each, and block 18 has two, so that the
// Index Block after it has its place in time.
void saveIndexBlock(const std::string& path) {
    Model model;
    {
        const Support::EnvironmentGuard blockSize(Support::BlockSizeVariable, "8");
        const auto part = openWithPart(model, path);
        for (unsigned int i = 0; i < 22; ++i) {
            addNumberedArray(model, part, i, i < 18 ? 2 : 1);
        }
    }
    const Support::EnvironmentGuard noBlockSize(Support::BlockSizeVariable);
    model.close();
}

// Each array has a block of its own, so the blocks after the Index Block lie too low. The table covers the
// first of them; the other and the tree are whole.
void saveLowBlocks(const std::string& path) {
    Model model;
    {
        const Support::EnvironmentGuard blockSize(Support::BlockSizeVariable, "4");
        const auto part = openWithPart(model, path);
        for (unsigned int i = 0; i < 21; ++i) {
            addNumberedArray(model, part, i, i == 19 ? 1200 : 1);
        }
    }
    const Support::EnvironmentGuard noBlockSize(Support::BlockSizeVariable);
    model.close();
}

} // namespace Golden
