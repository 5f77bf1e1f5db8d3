#include <Qel/Mox2/Model.h>

#include <Qel/Mox2/Adder/ArrayProperty.h>
#include <Qel/Mox2/Adder/Components.h>
#include <Qel/Mox2/Adder/Node.h>
#include <Qel/Mox2/ArrayStorage.h>
#include <Qel/Mox2/AttributeMap.h>
#include <Qel/Mox2/Database.h>
#include <Qel/Mox2/Extractor/NodeId.h>
#include <Qel/Mox2/Modifier/CurrentNodeId.h>
#include <Qel/Mox2/Modifier/NodeData.h>
#include <Qel/Mox2/Modifier/UpMover.h>
#include <Qel/Mox2/PropertyMap.h>
#include <Qel/Mox2/Saver.h>
#include <Qel/Mox2/StepData.h>

#include <type_traits>
#include <utility>

namespace Qel::Mox2 {

namespace {

// Not used in names, so that they can hold any other separator.
constexpr char ComponentSeparator = '\x1e';

template <typename ArrayT>
struct PropertyFor;
template <typename T>
struct PropertyFor<Array1d<T>> {
    using Type = ColumnProperty<T>;
};
template <typename T>
struct PropertyFor<Array2d<T>> {
    using Type = TableProperty<T>;
};

// A list of one id and one of one step for the whole library, overwritten by every call: a single id or step
// takes the same path as several.
const IdArray& oneId(unsigned int id) {
    static IdArray ids = IdArray::Zero(1);
    ids[0] = id;
    return ids;
}

const std::vector<StepData>& oneStep(const std::string& name, const AttributeMap& attributes) {
    static std::vector<StepData> steps(1);
    steps.front().name = name;
    steps.front().attributes = attributes;
    return steps;
}

template <typename Paths>
Array1d<unsigned int> mergePaths(Database& database, const Paths& paths, const std::string& separator) {
    Adder::Components<Paths, IdArray> adder(paths, separator);
    adder.update(database);
    const IdArray& ids = adder.result();
    Array1d<unsigned int> result(static_cast<std::size_t>(ids.size()));
    result.copy_from(ids.data());
    return result;
}

} // namespace

Model::Model() : database_(new Database) {}

// The former database is left as it is: nothing counts the models that share it.
Model& Model::operator=(const Model& other) = default;

Model::~Model() {
    database_->close();
    delete std::exchange(database_, nullptr);
}

void Model::saveTo(const std::string& path, const SaverOptions& options) {
    const std::string format = "qeli_mox";
    Saver(Base::SaveTarget{.path = path, .format = format}, options).open(*database_);
}

void Model::close() {
    database_->close();
}

const std::string& Model::defaultPathSeparator() {
    static const std::string separator = "/";
    return separator;
}

const Attributes& Model::emptyAttributes() {
    static const Attributes attributes;
    return attributes;
}

unsigned int Model::addNode(NodeType type, const std::string& name, const Attributes& attributes) {
    Adder::Node adder(type, name, *attributes.map_);
    adder.update(*database_);
    return adder.result();
}

void Model::setCurrentNodeId(unsigned int id) {
    Modifier::CurrentNodeId(id).update(*database_);
}

void Model::moveToParentNode() {
    Modifier::UpMover().update(*database_);
}

unsigned int Model::getNodeId(const std::string& path, const std::string& separator) {
    return Extractor::NodeId(path, separator).extract(*database_);
}

unsigned int Model::getNodeId(const std::vector<std::string>& components) {
    std::string path;
    for (const std::string& component : components) {
        path += ComponentSeparator + component;
    }
    return getNodeId(path, std::string(1, ComponentSeparator));
}

void Model::setNodeData(unsigned int id, const NodeProperties& properties, const Attributes& attributes) {
    Modifier::NodeData(id, *properties.map_, *attributes.map_).update(*database_);
}

Array1d<unsigned int> Model::addAssemblyComponents(const std::vector<std::string>& paths,
                                                   const std::string& separator) {
    return mergePaths(*database_, paths, separator);
}

Array1d<unsigned int> Model::addAssemblyComponents(const std::map<std::string, Attributes>& paths,
                                                   const std::string& separator) {
    std::map<std::string, AttributeMap> maps;
    for (const auto& [path, attributes] : paths) {
        maps.emplace_hint(maps.end(), path, *attributes.map_);
    }
    return mergePaths(*database_, maps, separator);
}

template <typename ArrayT, typename IdsT, typename StepsT>
void Model::addArrayProperty(DatasetType type, const ArrayT& data, const IdsT& ids, const StepsT& steps,
                             const Attributes& attributes) {
    addArrayProperty(PropertyFor<ArrayT>::Type::nameFrom(type), type, data, ids, steps, attributes);
}

template <typename ArrayT, typename IdsT, typename StepsT>
void Model::addArrayProperty(const std::string& name, DatasetType type, const ArrayT& data, const IdsT& ids,
                             const StepsT& steps, const Attributes& attributes) {
    using Property = typename PropertyFor<ArrayT>::Type;
    Property property;
    property.data = data.storage_;
    property.attributes = *attributes.map_;
    property.name = name;
    property.type = type;
    property.width = Property::widthFrom(type);

    const IdArray& allIds = [&]() -> const IdArray& {
        if constexpr (std::is_same_v<IdsT, unsigned int>) {
            return oneId(ids);
        } else {
            return *ids.storage_;
        }
    }();
    const std::vector<StepData>& allSteps = [&]() -> const std::vector<StepData>& {
        if constexpr (std::is_same_v<StepsT, Step>) {
            return oneStep(steps.name, *steps.attributes.map_);
        } else {
            return *steps.steps_;
        }
    }();
    Adder::ArrayProperty<Property, IdArray, std::vector<StepData>>(std::move(property), allIds, allSteps)
        .update(*database_);
}

#define MOXWRITER_ARRAY_PROPERTY(ArrayT, IdsT, StepsT)                                                       \
    template MOXWRITER_EXPORT void Model::addArrayProperty(DatasetType, const ArrayT&, const IdsT&,          \
                                                           const StepsT&, const Attributes&);                \
    template MOXWRITER_EXPORT void Model::addArrayProperty(const std::string&, DatasetType, const ArrayT&,   \
                                                           const IdsT&, const StepsT&, const Attributes&);
#define MOXWRITER_ARRAY_PROPERTIES(ArrayT)                                                                   \
    MOXWRITER_ARRAY_PROPERTY(ArrayT, unsigned int, Step)                                                     \
    MOXWRITER_ARRAY_PROPERTY(ArrayT, unsigned int, StepList)                                                 \
    MOXWRITER_ARRAY_PROPERTY(ArrayT, Array1d<unsigned int>, Step)                                            \
    MOXWRITER_ARRAY_PROPERTY(ArrayT, Array1d<unsigned int>, StepList)

MOXWRITER_ARRAY_PROPERTIES(Array1d<unsigned int>)
MOXWRITER_ARRAY_PROPERTIES(Array1d<float>)
MOXWRITER_ARRAY_PROPERTIES(Array2d<unsigned int>)
MOXWRITER_ARRAY_PROPERTIES(Array2d<float>)

} // namespace Qel::Mox2
