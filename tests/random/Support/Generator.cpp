#include "random/Support/Generator.h"

#include "random/Support/narrowed.h"

#include <algorithm>
#include <array>
#include <bit>
#include <limits>
#include <numeric>
#include <utility>

namespace RandomUse {

namespace {

using namespace std::string_literals;

// How often each kind of action is chosen, in the order of the alternatives of Action. Destroying models and
// assigning them is rare, because it cuts sequences short or makes small leaks.
using Weights = std::array<unsigned, std::variant_size_v<Action>>;

const Weights& weightsOf(Kind kind) {
    //                                    save close destroy share node current parent find names data paths map
    //                                    array size
    static const Weights nodes = {4, 2, 1, 1, 40, 14, 16, 20, 8, 4, 14, 6, 2, 1};
    static const Weights data = {4, 2, 1, 1, 30, 4, 8, 3, 1, 60, 6, 2, 2, 1};
    static const Weights arrays = {4, 2, 1, 1, 22, 5, 10, 2, 1, 3, 5, 2, 60, 6};
    static const Weights everything = {6, 4, 2, 1, 30, 8, 10, 10, 4, 20, 10, 5, 24, 4};
    switch (kind) {
    case Kind::Nodes:
        return nodes;
    case Kind::Data:
        return data;
    case Kind::Arrays:
        return arrays;
    case Kind::Everything:
        break;
    }
    return everything;
}

// Nineteen full blocks before the close would be placed too low, which other tests cover.
constexpr unsigned MostArrays = 16;

constexpr std::uint64_t TwoTo32 = std::uint64_t{1} << 32;

unsigned widthOf(int type) {
    constexpr std::array<unsigned, 31> widths = {1, 1, 1, 1, 1, 1, 1, 1, 1, 3, 1, 3, 6, 6, 1, 3,
                                                 6, 6, 1, 3, 6, 6, 1, 1, 3, 6, 6, 1, 1, 3, 6};
    return type >= 0 && static_cast<std::size_t>(type) < widths.size()
               ? widths[static_cast<std::size_t>(type)]
               : 1;
}

} // namespace

Generator::Generator(unsigned seed, Kind kind) : random_(seed), kind_(kind), world_("", ModelCount) {}

unsigned Generator::below(unsigned bound) {
    return static_cast<unsigned>(random_() % bound);
}

template <typename Item>
const Item& Generator::anyOf(const std::vector<Item>& items) {
    return items[below(static_cast<unsigned>(items.size()))];
}

Sequence Generator::sequence() {
    Sequence calls;
    isFocused_ = oneIn(4);
    const unsigned count = 4 + below(below(4) == 0 ? 60 : 24);
    while (calls.size() < count) {
        calls.push_back(next());
        world_.play(calls.back());
    }
    return calls;
}

// Mostly of the first model. Before anything else is called, it is mostly opened.
Call Generator::next() {
    constexpr unsigned largePart = 4;
    const bool isFirstModel = kind_ == Kind::Everything ? !oneIn(2) : !oneIn(largePart * 2);
    const unsigned model = isFirstModel ? 0 : 1 + below(ModelCount - 1);
    tree_ = world_.models[model].tree();
    if (tree_ == nullptr && !oneIn(largePart)) {
        return {model, saveTo(model)};
    }
    return {model, action(model)};
}

std::size_t Generator::anyKindOfAction() {
    const Weights& weights = weightsOf(kind_);
    unsigned place = below(std::accumulate(weights.begin(), weights.end(), 0U));
    std::size_t kind = 0;
    while (place >= weights[kind]) {
        place -= weights[kind];
        ++kind;
    }
    return kind;
}

Action Generator::action(unsigned model) {
    switch (anyKindOfAction()) {
    case 0:
        return saveTo(model);
    case 1:
        return Close{};
    case 2:
        return Destroy{};
    case 3:
        return Share{};
    case 5:
        return SetCurrentNodeId{nodeId()};
    case 6:
        return MoveToParentNode{};
    case 7: {
        const std::optional<std::string> separates = separator();
        return GetNodeId{path(separates.value_or("/")), separates};
    }
    case 8: {
        std::vector<std::string> names = namesTo(nodeId());
        if (oneIn(4)) {
            names.push_back(name());
        }
        return GetNodeIdOfNames{names};
    }
    case 9:
        return setNodeData();
    case 10:
        return addPaths();
    case 11:
        return addPathsWithAttributes();
    case 12:
        return arrays_++ < MostArrays ? addArray() : addNode();
    case 13:
        return setBlockSize();
    default:
        return addNode();
    }
}

// --- Files

Action Generator::saveTo(unsigned model) {
    static const std::vector<std::string> unopenable = {"", ".", "missing/file.mox"};
    SaveTo call;
    call.file = oneIn(25) ? anyOf(unopenable) : std::to_string(model) + (oneIn(4) ? "-b" : "-a") + ".mox";
    call.overwrite = !oneIn(3);
    call.sourceName = oneIn(3) ? "" : name();
    call.sourceVersion = oneIn(3) ? "" : name();
    call.sourceComment = oneIn(3) ? "" : name();
    return call;
}

// No number that makes buffers grow by gigabytes.
Action Generator::setBlockSize() {
    static const std::vector<std::string> values = {
        "0",     "1",  "40",         "100",        "  300", "+500", "1000",  "4096",    "",           "abc",
        "12abc", "-1", "4294967295", "4294967296", "65536", "-0x",  "00099", "1048576", "99999999999"};
    return oneIn(3) ? SetBlockSize{} : SetBlockSize{anyOf(values)};
}

// --- Names

std::string Generator::name() {
    static const std::vector<std::string> common = {"a", "b", "c", "part", "a b"};
    static const std::vector<std::string> odd = {"",
                                                 "/",
                                                 "a/b",
                                                 "/a",
                                                 "a/",
                                                 ":",
                                                 "::",
                                                 "a::b",
                                                 "b\x1e",
                                                 "\x1e",
                                                 "a\x1e"
                                                 "b",
                                                 "\xff\xfe",
                                                 "\xc3\xa9",
                                                 "a\0b"s,
                                                 "\0"s,
                                                 "\n",
                                                 "Vibration",
                                                 "A",
                                                 " ",
                                                 "Shape",
                                                 "Group",
                                                 "a",
                                                 "//"};
    if (oneIn(200)) {
        return std::string(oneIn(4) ? 70000 : 300, 'x');
    }
    return oneIn(6) ? anyOf(odd) : anyOf(common);
}

// Below a root of another name paths mostly fail.
std::string Generator::pathName() {
    static const std::vector<std::string> common = {"a", "b", "c", "part"};
    return oneIn(10) ? name() : anyOf(common);
}

std::string Generator::arrayName() {
    static const std::vector<std::string> names = {"T", "S", "Displacement", "Connectivity", "Coordinates"};
    static const std::vector<std::string> odd = {"",
                                                 "T\x1e"
                                                 "1",
                                                 "\x1e",
                                                 "T\x1e",
                                                 "\xff",
                                                 "T\0"s,
                                                 "Node Ids"};
    return oneIn(6) ? anyOf(odd) : anyOf(names);
}

std::optional<std::string> Generator::separator() {
    static const std::vector<std::string> separators = {"/",  "/",  "::", ".",     "\x1e", "a",
                                                        "ab", "//", "",   "/\0x"s, "\0"s};
    if (oneIn(3)) {
        return anyOf(separators);
    }
    return {};
}

std::vector<std::string> Generator::namesTo(unsigned int id) {
    std::vector<std::string> names;
    if (tree_ == nullptr || id == 0 || id > tree_->nodes().size()) {
        return names;
    }
    while (id != 0) {
        names.push_back(tree_->nodes()[id - 1].name);
        id = tree_->nodes()[id - 1].parent;
    }
    std::reverse(names.begin(), names.end());
    return names;
}

std::string Generator::pathOf(unsigned int id, const std::string& separator) {
    std::string path;
    for (const std::string& component : namesTo(id)) {
        path += separator + component;
    }
    return path;
}

// Of a node, of a node to be, or odd in one way.
std::string Generator::path(const std::string& separator) {
    std::string path = pathOf(nodeId(), separator);
    for (unsigned further = below(4); further > 0 && !oneIn(3); --further) {
        path += separator + pathName();
    }
    switch (below(16)) {
    case 0:
        path += separator;
        break;
    case 1:
        path += separator + separator;
        break;
    case 2:
        path = path.substr(std::min<std::size_t>(1, path.size()));
        break;
    case 3:
        path = path.substr(0, path.size() - std::min<std::size_t>(1, path.size()));
        break;
    case 4:
        path = separator + path;
        break;
    case 5:
        if (!path.empty()) {
            path[below(static_cast<unsigned>(path.size()))] =
                anyOf(std::vector<char>{'X', '/', ':', 'a', '\x1e'});
        }
        break;
    case 6:
        path = separator + pathName();
        break;
    case 7:
        path.insert(below(static_cast<unsigned>(path.size() + 1)), separator);
        break;
    default:
        break;
    }
    return path;
}

// --- Nodes

unsigned int Generator::nodeId() {
    const auto count = tree_ != nullptr ? static_cast<unsigned int>(tree_->nodes().size()) : 1;
    if (oneIn(12)) {
        return anyOf(std::vector<unsigned int>{0, count + 1, count + 2, 0xFFFFFFFF, 0x80000000, count});
    }
    return 1 + below(count);
}

unsigned int Generator::geometryId() {
    if (tree_ == nullptr || oneIn(12)) {
        return nodeId();
    }
    std::vector<unsigned int> geometries;
    for (unsigned int id = 1; id <= tree_->nodes().size(); ++id) {
        if (tree_->nodes()[id - 1].kind == NodeKind::Geometry) {
            geometries.push_back(id);
        }
    }
    if (geometries.empty()) {
        return nodeId();
    }
    return isFocused_ ? geometries.front() : anyOf(geometries);
}

Action Generator::addNode() {
    constexpr int shape = 4;
    AddNode call;
    if (oneIn(12)) {
        call.type = anyOf(std::vector<int>{-1, 0, 1, 2, 5, std::numeric_limits<int>::max()});
    } else if (tree_ != nullptr && tree_->nodes().front().kind == NodeKind::Unset) {
        call.type = oneIn(8) ? shape : 1 + static_cast<int>(below(3));
    } else {
        call.type = 3 + static_cast<int>(below(2));
    }
    call.name = name();
    call.attributes = optionalAttributes();
    return call;
}

Action Generator::addPaths() {
    AddPaths call;
    call.separator = separator();
    for (unsigned count = below(6); count > 0; --count) {
        call.paths.push_back(oneIn(15) ? "" : path(call.separator.value_or("/")));
        if (oneIn(8)) {
            call.paths.push_back(call.paths.front());
        }
    }
    return call;
}

Action Generator::addPathsWithAttributes() {
    AddPathsWithAttributes call;
    call.separator = separator();
    for (unsigned count = below(4); count > 0; --count) {
        call.paths.emplace_back(path(call.separator.value_or("/")), attributes());
    }
    return call;
}

// --- Values

float Generator::number() {
    static const std::vector<float> odd = {0.0F,
                                           -0.0F,
                                           0.16F,
                                           std::numeric_limits<float>::infinity(),
                                           std::numeric_limits<float>::quiet_NaN(),
                                           std::numeric_limits<float>::denorm_min(),
                                           std::numeric_limits<float>::max()};
    return oneIn(8) ? anyOf(odd) : static_cast<float>(below(2000)) / 64.0F - 7.0F;
}

std::vector<float> Generator::numbers() {
    std::vector<float> result(oneIn(6) ? below(8) : 3 + below(2));
    std::generate(result.begin(), result.end(), [this] { return number(); });
    return result;
}

std::string Generator::text() {
    static const std::vector<unsigned> lengths = {0, 1, 254, 255, 256, 257, 600};
    static const std::vector<std::string> vibrations = {"Vibration", "Vibration", "vibration", "Vibration ",
                                                        "Vibratio"};
    if (oneIn(3)) {
        return anyOf(vibrations);
    }
    return oneIn(4) ? std::string(anyOf(lengths), 'y') : name();
}

AttributeValue Generator::attributeValue() {
    if (oneIn(20)) {
        switch (below(4)) {
        case 0:
            return below(100);
        case 1:
            return numbers();
        case 2:
            return std::vector<int>(below(3), -7);
        default:
            return std::vector<unsigned int>(below(3), 7);
        }
    }
    switch (below(4)) {
    case 0:
        return static_cast<int>(below(1000)) - 500;
    case 1:
        return number();
    case 2:
        return text();
    default:
        return CText{text()};
    }
}

AttributePairs Generator::attributes() {
    static const std::vector<std::string> keys = {
        "k",          "key 2", "Time",   "Category",   "Complex",   "Contents", "DataType",
        "DataSource", "Link.", "Link.x", "Link",       "Structure", "link.x",   "complex",
        "",           "a\0b"s, "\xff",   "Structured", "z",         "Category"};
    AttributePairs pairs;
    for (unsigned count = below(5); count > 0; --count) {
        pairs.emplace_back(oneIn(150) ? name() : anyOf(keys), attributeValue());
    }
    return pairs;
}

std::optional<AttributePairs> Generator::optionalAttributes() {
    if (oneIn(3)) {
        return {};
    }
    return attributes();
}

PropertyValue Generator::propertyValue(int key) {
    constexpr int lastColor = 6;
    if (oneIn(14)) {
        switch (below(6)) {
        case 0:
            return static_cast<int>(below(3));
        case 1:
            return number();
        case 2:
            return oneIn(2);
        case 3:
            return name();
        case 4:
            return CText{name()};
        default:
            return std::vector<int>(3, 1);
        }
    }
    if (key > lastColor) {
        return number();
    }
    std::vector<float> values = numbers();
    if (key == 1 && !oneIn(4)) {
        values.resize(4);
    } else if (key != 1 && !oneIn(6)) {
        values.resize(3);
    }
    return values;
}

Action Generator::setNodeData() {
    SetNodeData call;
    call.id = nodeId();
    const bool isKnown = tree_ != nullptr && call.id != 0 && call.id <= tree_->nodes().size();
    const bool isGroup = isKnown && tree_->nodes()[call.id - 1].kind == NodeKind::Group;
    for (unsigned count = below(5); count > 0; --count) {
        int key = isGroup ? static_cast<int>(below(3)) : 3 + static_cast<int>(below(7));
        if (oneIn(15)) {
            key = anyOf(std::vector<int>{-1, 0, 1, 5, 10, 11, std::numeric_limits<int>::min(), 300});
        }
        call.properties.emplace_back(key, propertyValue(key));
    }
    call.attributes = optionalAttributes();
    return call;
}

// --- Arrays

Action Generator::addArray() {
    static const std::vector<int> odd = {-1, 31, 32, 1000, std::numeric_limits<int>::min()};
    static const std::vector<int> named = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 27, 28, 29, 30};
    AddArray call;
    if (oneIn(4)) {
        call.type = oneIn(8) ? anyOf(std::vector<int>{10, 17, 26, 31, -1}) : anyOf(named);
    } else {
        call.name = arrayName();
        call.type = oneIn(25) ? anyOf(odd) : static_cast<int>(below(31));
    }
    call.isFloat = oneIn(2);
    chooseShape(call);
    chooseIds(call);
    chooseSteps(call);
    call.attributes = optionalAttributes();
    return call;
}

void Generator::chooseShape(AddArray& array) {
    static const std::vector<std::uint64_t> rows = {1, 1, 2, 3, 5, 17, 40, 100};
    static const std::vector<std::uint64_t> oddRows = {0,           0,       TwoTo32 + 3, TwoTo32 / 2,
                                                       TwoTo32 - 1, TwoTo32, 2000};
    static const std::vector<std::uint64_t> oddCols = {0, 1,           2,           3,          4,
                                                       6, TwoTo32 + 3, TwoTo32 / 2, TwoTo32 - 1};
    const unsigned width = widthOf(array.type);
    array.isTable = width > 1 ? !oneIn(20) : oneIn(2);
    array.rows = oneIn(10) ? anyOf(oddRows) : anyOf(rows);
    array.cols = oneIn(12) ? anyOf(oddCols) : width;
    array.making = static_cast<Making>(below(MakingCount));
    const std::int64_t rowCount = narrowed(array.rows);
    const std::int64_t colCount = array.isTable ? narrowed(array.cols) : 1;
    if (rowCount > 0 && colCount > 0) {
        array.bits.resize(static_cast<std::size_t>(rowCount * colCount));
        const unsigned start = below(1000);
        const auto step = static_cast<std::uint32_t>(oneIn(2) ? 1 : random_());
        for (std::size_t i = 0; i < array.bits.size(); ++i) {
            array.bits[i] = start + static_cast<std::uint32_t>(i) * step;
        }
    }
}

void Generator::chooseIds(AddArray& array) {
    array.isSingleId = oneIn(2);
    array.isNegativeIdCount = !array.isSingleId && oneIn(40);
    if (array.isNegativeIdCount) {
        return;
    }
    for (unsigned count = array.isSingleId ? 1 : below(5); count > 0; --count) {
        array.ids.push_back(geometryId());
    }
}

void Generator::chooseSteps(AddArray& array) {
    static const std::vector<std::string> names = {"", "1", "2", "Step1", "x\x1ey", "\x1e"};
    array.isSingleStep = oneIn(2);
    for (unsigned count = array.isSingleStep ? 1 : below(4); count > 0; --count) {
        array.steps.push_back({anyOf(names), oneIn(2) ? AttributePairs() : attributes()});
    }
}

} // namespace RandomUse
