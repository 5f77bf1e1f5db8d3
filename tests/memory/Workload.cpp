#include "memory/Workload.h"

#include "memory/FailingAllocator.h"

#include <MoxReader/File.h>
#include <MoxReader/Format.h>
#include <MoxReader/HeavyData.h>
#include <MoxReader/Model.h>
#include <Qel/Exception/Exception.h>

#include <boost/exception/get_error_info.hpp>

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <iterator>
#include <new>
#include <stdexcept>
#include <typeinfo>
#include <utility>

namespace Memory {

using namespace Qel::Mox2;

namespace {

// Longer than any text that a std::string keeps without allocating.
const std::string LongText = "a text that needs memory of its own";
const std::string LongKey = "a key that needs memory of its own";
const std::string StepNames[] = {"Load 1, which has a long name", "Load 2, which has a long name"};

constexpr unsigned int Rows = 25;
constexpr unsigned int Columns = 3;
constexpr float Transparent = 0.25F;
constexpr unsigned int ShapesOfOneKind = 6;

const std::map<DatasetType, std::string> DefaultNames = {{NodeIds, "Node Ids"},
                                                         {ElementIds, "Element IDs"},
                                                         {DisplacementVector, "Displacement"},
                                                         {Coordinates, "Coordinates"}};

[[noreturn]] void complain(const std::string& what) {
    throw std::runtime_error(what);
}

void require(bool holds, const std::string& what) {
    if (!holds) {
        complain(what);
    }
}

bool isOutOfMemory(const std::exception& failure) {
    return dynamic_cast<const std::bad_alloc*>(&failure) != nullptr ||
           dynamic_cast<const Qel::Exception::MemoryAllocationException*>(&failure) != nullptr;
}

// A block's content is lost if there is no memory for its compressed form, before zlib is called or after.
bool hasLostABlock(const std::exception& failure, unsigned int compressionsBefore) {
    const auto* const file = boost::get_error_info<boost::throw_file>(failure);
    const bool inCompressor = file != nullptr && std::strstr(*file, "BlockZlibCompressor") != nullptr;
    const bool isOfABlock =
        dynamic_cast<const Qel::Exception::MemoryAllocationException*>(&failure) != nullptr;
    return inCompressor || (isOfABlock && FailingAllocator::compressions() != compressionsBefore);
}

template <typename T>
std::vector<T> values(std::size_t count) {
    std::vector<T> result(count);
    for (std::size_t i = 0; i < count; ++i) {
        result[i] = static_cast<T>(i * i * 7919 % 10007) / 2;
    }
    return result;
}

template <typename T>
std::vector<std::uint32_t> bitsOf(const std::vector<T>& numbers) {
    std::vector<std::uint32_t> bits;
    std::ranges::transform(numbers, std::back_inserter(bits),
                           [](T number) { return std::bit_cast<std::uint32_t>(number); });
    return bits;
}

// The paths of the shapes that get arrays, below a root and a group that exist.
std::vector<std::string> shapePaths() {
    std::vector<std::string> paths;
    for (unsigned int i = 0; i < 4 * ShapesOfOneKind; ++i) {
        paths.push_back("/the root of the assembly/the group of all shapes/the shape number " +
                        std::to_string(i));
    }
    return paths;
}

} // namespace

Workload::Workload(std::string workFolder) : folder_(std::move(workFolder)) {}

bool Workload::run() {
    attempt("Model", [&] { model_.emplace(); });
    makeValues();
    open(folder_ + "/first.mox");
    addNodes();
    addArrays();
    if (!close()) {
        return false;
    }
    if (!closeFailed_) {
        check(folder_ + "/first.mox");
    }
    mayFail_ = false;
    saveOnceMore(folder_ + "/second.mox");
    return true;
}

void Workload::saveOnceMore(const std::string& path) {
    open(path);
    addNodes();
    addArraysOf(*scalars_, 0, {NodeIds, ElementScalar, bitsOf(values<float>(Rows))});
    model_->close();
    check(path);
}

// --- Calls

bool Workload::succeeds(const std::string& call, const std::function<void()>& action) {
    const unsigned int compressions = FailingAllocator::compressions();
    try {
        if (mayFail_) {
            FailingAllocator::resume();
        }
        action();
        FailingAllocator::disarm();
        return true;
    } catch (const std::exception& failure) {
        FailingAllocator::disarm();
        require(mayFail_ && FailingAllocator::hasFailed() && isOutOfMemory(failure),
                call + " threw " + typeid(failure).name() + ": " + failure.what());
        mayFail_ = false;
        if (hasLostABlock(failure, compressions)) {
            arrays_.clear();
        }
        return false;
    }
}

void Workload::attempt(const std::string& call, const std::function<void()>& action,
                       const std::function<void()>& beforeRepeating) {
    if (!succeeds(call, action)) {
        beforeRepeating();
        require(succeeds(call + " once more", action), call + " fails once more");
    }
}

bool Workload::close() {
    closeFailed_ = !succeeds("close", [&] { model_->close(); });
    if (!closeFailed_) {
        return true;
    }
    try {
        model_->close();
        return true;
    } catch (const Qel::Exception::Exception&) {
        return false;
    }
}

// --- The values that calls are given

void Workload::makeValues() {
    makeAttributes();
    makeProperties();
    makeSteps();
    makeArrays();
}

void Workload::makeAttributes() {
    const auto floats = values<float>(20);
    const auto ints = values<int>(20);
    const auto unsigneds = values<unsigned int>(20);
    Attributes& all = attributes_;
    attempt("Attributes::set(const char*)", [&] { all.set("text", LongText.c_str()); });
    attempt("Attributes::set(std::string)", [&] { all.set(LongKey, LongText); });
    attempt("Attributes::set(float)", [&] { all.set("float", 1.5F); });
    attempt("Attributes::set(int)", [&] { all.set("int", -7); });
    std::optional<Attributes> others;
    attempt("Attributes", [&] { others.emplace(); });
    attempt("Attributes::set(unsigned)", [&] { others->set("unsigned", 7U); });
    attempt("Attributes::set(floats)", [&] { others->set("floats", floats); });
    attempt("Attributes::set(ints)", [&] { others->set("ints", ints); });
    attempt("Attributes::set(unsigneds)", [&] { others->set("unsigneds", unsigneds); });
    std::optional<Attributes> copy;
    attempt("Attributes(Attributes)", [&] { copy.emplace(*others); });
    attempt("Attributes::operator=", [&] { *copy = all; });
    attempt("Attributes::operator= once more", [&] { *others = *copy; });
    attempt("Attributes::operator= back", [&] { all = *others; });
}

void Workload::makeProperties() {
    attempt("NodeProperties::set(floats)", [&] {
        groupProperties_.set(Translation, std::vector<float>{1, 2, 3});
        groupProperties_.set(Rotation, std::vector<float>{0, 1, 0, 0.5F});
    });
    attempt("NodeProperties::set(float)", [&] { shapeProperties_.set(Transparency, Transparent); });
    NodeProperties others;
    attempt("NodeProperties::set(const char*)", [&] { others.set(Scale, LongText.c_str()); });
    attempt("NodeProperties::set(std::string)", [&] { others.set(Rotation, LongText); });
    attempt("NodeProperties::set(ints)", [&] { others.set(Translation, values<int>(20)); });
    attempt("NodeProperties::set(int)", [&] { others.set(Shininess, 1); });
    attempt("NodeProperties::set(bool)", [&] { others.set(ShapeSwitch, true); });
    std::optional<NodeProperties> copy;
    attempt("NodeProperties(NodeProperties)", [&] { copy.emplace(others); });
    attempt("NodeProperties::operator=", [&] { *copy = groupProperties_; });
    attempt("NodeProperties::operator= back", [&] { groupProperties_ = *copy; });
}

void Workload::makeSteps() {
    attempt("Step", [&] { step_ = Step{StepNames[0], attributes_}; });
    std::optional<StepList> list;
    attempt("StepList", [&] { list.emplace(2); });
    attempt("StepList::set", [&] { list->set(0, step_); });
    attempt("StepList::operator[]", [&] { step_ = (*list)[0]; });
    attempt("StepList::set once more", [&] { list->set(1, Step{StepNames[1], attributes_}); });
    attempt("StepList(StepList)", [&] { twoSteps_.emplace(*list); });
    attempt("StepList::operator=", [&] { *list = *twoSteps_; });
    attempt("StepList::operator= to a longer list", [&] {
        StepList longer(5);
        longer = *list;
        *twoSteps_ = longer;
    });
}

void Workload::makeArrays() {
    const std::vector<float> floats = values<float>(Rows);
    const std::vector<unsigned int> integers = values<unsigned int>(Rows);
    const std::vector<float> table = values<float>(Rows * Columns);
    const std::vector<unsigned int> integerTable = values<unsigned int>(Rows * Columns);
    attempt("Array1d(size, value)", [&] { scalars_ = Array1d<float>(Rows + 1, 1.5F); });
    attempt("Array1d::operator=", [&] { *scalars_ = Array1d<float>(floats); });
    attempt("Array1d(size)", [&] { numbers_.emplace(std::size_t{3}); });
    attempt("Array1d::operator= to a longer array", [&] { *numbers_ = Array1d<unsigned int>(integers); });
    attempt("Array1d(Array1d)", [&] { *numbers_ = Array1d<unsigned int>(*numbers_); });
    attempt("Array2d(rows, columns)", [&] { vectors_.emplace(Columns, Rows); });
    attempt("Array2d::operator= of another shape", [&] { *vectors_ = Array2d<float>(Rows, Columns, table); });
    attempt("Array2d(rows, columns, value)", [&] { numberTable_.emplace(2, 2, 7U); });
    attempt("Array2d::operator= to a larger table",
            [&] { *numberTable_ = Array2d<unsigned int>(Rows, Columns, integerTable); });
}

// --- The model

void Workload::open(const std::string& path) {
    nodeNames_.clear();
    arrays_.clear();
    const SaverOptions options{.overwrite = true, .sourceName = LongText, .sourceVersion = LongText};
    // A model whose file could not be opened has to be closed before it can be saved to another.
    attempt(
        "saveTo", [&] { model_->saveTo(path, options); }, [&] { model_->close(); });
}

void Workload::addNodes() {
    attempt("addNode(RootMarkedGroup)",
            [&] { model_->addNode(RootMarkedGroup, "the root of the assembly", attributes_); });
    attempt(
        "addNode(Group)", [&] { group_ = model_->addNode(Group, "the group of all shapes", attributes_); },
        [&] { model_->setCurrentNodeId(1); });
    nodeNames_ = {{1, "the root of the assembly"}, {group_, "the group of all shapes"}};
    attempt("setNodeData of a group", [&] { model_->setNodeData(group_, groupProperties_, attributes_); });
    attempt("addNode(Shape)", [&] { shape_ = model_->addNode(Shape, "a shape with a long name"); });
    nodeNames_[shape_] = "a shape with a long name";
    attempt("setNodeData of a shape", [&] { model_->setNodeData(shape_, shapeProperties_); });
    attempt("moveToParentNode", [&] { model_->moveToParentNode(); });
    attempt("setCurrentNodeId", [&] { model_->setCurrentNodeId(group_); });
    const std::vector<std::string> components = {"the root of the assembly", "the group of all shapes"};
    unsigned int found = 0;
    attempt("getNodeId(path)",
            [&] { found = model_->getNodeId("/the root of the assembly/the group of all shapes"); });
    require(found == group_, "getNodeId(path) doesn't find the group");
    attempt("getNodeId(components)", [&] { found = model_->getNodeId(components); });
    require(found == group_, "getNodeId(components) doesn't find the group");
    mergePaths();
}

void Workload::mergePaths() {
    const std::vector<std::string> paths = shapePaths();
    attempt("addAssemblyComponents(vector)", [&] { geometries_ = model_->addAssemblyComponents(paths); });
    std::map<std::string, Attributes> groups;
    groups["/the root of the assembly/the group made by a path/"] = attributes_;
    groups["/the root of the assembly/the group made by another path/"] = attributes_;
    std::optional<Array1d<unsigned int>> ids;
    attempt("addAssemblyComponents(map)", [&] { ids.emplace(model_->addAssemblyComponents(groups)); });
    nodeNames_[(*ids)[0]] = "the group made by a path";
    nodeNames_[(*ids)[1]] = "the group made by another path";
    for (std::size_t i = 0; i < paths.size(); ++i) {
        nodeNames_[(*geometries_)[i]] = "the shape number " + std::to_string(i);
    }
}

void Workload::addArrays() {
    const std::vector<std::uint32_t> floatTable = bitsOf(values<float>(Rows * Columns));
    const std::vector<std::uint32_t> integerTable = bitsOf(values<unsigned int>(Rows * Columns));
    addArraysOf(*scalars_, 0, {NodeIds, ElementScalar, bitsOf(values<float>(Rows))});
    addArraysOf(*numbers_, 1, {ElementIds, NodeScalar, bitsOf(values<unsigned int>(Rows))});
    addArraysOf(*vectors_, 2, {DisplacementVector, ElementVector, floatTable});
    addArraysOf(*numberTable_, 3, {Coordinates, NodeVector, integerTable});
}

template <typename ArrayT>
void Workload::addArraysOf(const ArrayT& array, unsigned int kind, const ArrayTypes& types) {
    const auto shapeAt = [&](unsigned int i) { return (*geometries_)[kind * ShapesOfOneKind + i]; };
    addArray(array, shapeAt(0), step_, types, {shapeAt(0)}, 1);
    addArray(array, shapeAt(1), *twoSteps_, types, {shapeAt(1)}, 2);
    const Array1d<unsigned int> firstPair{shapeAt(2), shapeAt(3)};
    addArray(array, firstPair, step_, types, {shapeAt(2), shapeAt(3)}, 1);
    const Array1d<unsigned int> secondPair{shapeAt(4), shapeAt(5)};
    addArray(array, secondPair, *twoSteps_, types, {shapeAt(4), shapeAt(5)}, 2);
}

template <typename ArrayT, typename IdsT, typename StepsT>
void Workload::addArray(const ArrayT& array, const IdsT& ids, const StepsT& steps, const ArrayTypes& types,
                        const std::vector<unsigned int>& nodes, unsigned int stepCount) {
    attempt("addArrayProperty(type)",
            [&] { model_->addArrayProperty(types.withDefaultName, array, ids, steps, attributes_); });
    expectArray(DefaultNames.at(types.withDefaultName), nodes, stepCount, types.bits);
    attempt("addArrayProperty(name)", [&] {
        model_->addArrayProperty("a name of the caller's choice", types.withoutName, array, ids, steps,
                                 attributes_);
    });
    expectArray("a name of the caller's choice", nodes, stepCount, types.bits);
}

void Workload::expectArray(const std::string& name, const std::vector<unsigned int>& nodes,
                           unsigned int stepCount, const std::vector<std::uint32_t>& bits) {
    for (const unsigned int node : nodes) {
        for (unsigned int i = 0; i < stepCount; ++i) {
            arrays_.push_back({node, name + '\x1e' + StepNames[i], bits});
        }
    }
}

// --- The file

void Workload::check(const std::string& path) const {
    const MoxReader::File file(path);
    const MoxReader::Model saved = MoxReader::readModel(file);
    for (const auto& [id, name] : nodeNames_) {
        require(saved.node(id).name == name,
                "node " + std::to_string(id) + " is called " + saved.node(id).name);
    }
    const MoxReader::Group& savedGroup = *saved.node(group_).group();
    require(savedGroup.translation == std::array{1.0F, 2.0F, 3.0F},
            "the group's translation is not that set");
    require(std::get<std::string>(savedGroup.attributes.at(LongKey)) == LongText,
            "the group's text is not that set");
    const MoxReader::Shape& savedShape = *saved.node(saved.node(shape_).parent).shape();
    require(savedShape.material.transparency == Transparent, "the shape's transparency is not that set");
    MoxReader::HeavyData heavy(file, saved);
    for (const SavedArray& array : arrays_) {
        checkArray(saved, heavy, array);
    }
}

void Workload::checkArray(const MoxReader::Model& saved, MoxReader::HeavyData& heavy,
                          const SavedArray& array) {
    const std::string place = "the array \"" + array.key + "\" of node " + std::to_string(array.node);
    const std::vector<MoxReader::Dataset>& datasets = saved.node(array.node).geometry()->datasets;
    const auto found = std::ranges::find(datasets, array.key, &MoxReader::Dataset::key);
    require(found != datasets.end(), place + " is missing");
    const bool isFloat = saved.resolve(*found).elementTag == MoxReader::Format::FloatTag;
    const std::vector<std::uint32_t> bits =
        isFloat ? bitsOf(heavy.readFloats(*found)) : heavy.readUnsigned(*found);
    require(bits == array.bits, place + " has other numbers");
}

} // namespace Memory
