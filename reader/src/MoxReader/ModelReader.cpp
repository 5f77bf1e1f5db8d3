#include "MoxReader/ModelReader.h"

#include "MoxReader/ReadHelpers.h"

#include <utility>

namespace MoxReader {

namespace {

StreamReader requiredStream(const File& file, std::string_view name) {
    if (!file.hasStream(name)) {
        throw Error(ErrorCode::MissingStream, {.name = std::string(name)});
    }
    return file.stream(name);
}

void requireVersion(const Node& node, std::string_view version) {
    if (node.version != version) {
        throw Error(ErrorCode::UnsupportedRecordVersion);
    }
}

/// Reads what the node has in "Light Data", which sets its content to the alternative of its type.
void readDescriptor(Node& node, StreamReader& light) {
    if (node.lightPosition != light.position()) {
        throw Error(ErrorCode::BadPosition, light.place());
    }
    if (node.typeName == Format::GroupType) {
        requireVersion(node, Format::GroupVersion);
        node.content = readGroup(light);
    } else if (node.typeName == Format::ShapeType) {
        node.content = Shape{};
    } else if (node.typeName == Format::GeometryType) {
        requireVersion(node, Format::GeometryVersion);
        node.content = Geometry{readDatasets(light)};
    } else if (node.typeName == Format::NodeSetsType) {
        node.content = readNodeSetsDescriptor(light);
    } else if (!node.typeName.empty() && node.typeName != Format::PlainType) {
        throw Error(ErrorCode::UnknownNodeType);
    }
}

void readNodeAttributes(Node& node, StreamReader& attributes) {
    if (auto* group = std::get_if<Group>(&node.content)) {
        group->attributes = readAttributes(attributes);
    }
    if (auto* geometry = std::get_if<Geometry>(&node.content)) {
        for (auto& dataset : geometry->datasets) {
            dataset.attributes = readAttributes(attributes);
        }
    }
}

void readNodeMaterial(Node& node, StreamReader& resources) {
    if (auto* shape = std::get_if<Shape>(&node.content)) {
        shape->material = readMaterial(resources);
    }
}

/// Damage refuses the file also in blocks of which no byte was asked for: those that are empty or were passed over.
void checkUnreadBlocks(const File& file, const StreamReader& stream) {
    for (std::size_t i = 0; i < stream.blocks().size(); ++i) {
        if (!stream.isKnownSound(i)) {
            file.readBlock(stream.blocks()[i].id);
        }
    }
}

/// Reads each node's part of a stream in turn; the stream must then be used up.
template <class ReadPart>
void readParts(const File& file, std::string_view name, std::vector<Node>& nodes, const ReadPart& readPart) {
    auto stream = file.stream(name);
    for (auto& node : nodes) {
        inRecord([&] { readPart(node, stream); }, [&] { return describeNode(node.id); });
    }
    requireEnd(stream);
    checkUnreadBlocks(file, stream);
}

} // namespace

ModelReader::ModelReader(const File& file) : file_(file) {}

Model ModelReader::read() {
    readTree();
    readLightData();
    readAttributeLists();
    readMaterials();
    return Model(std::move(nodes_), readGlobal());
}

void ModelReader::readTree() {
    auto tree = requiredStream(file_, Format::TreeStream);
    for (auto& record : readNodeRecords(tree)) {
        nodes_.push_back(Node{std::move(record), {}});
    }
    checkUnreadBlocks(file_, tree);
}

void ModelReader::readLightData() {
    readParts(file_, Format::LightStream, nodes_, readDescriptor);
}

void ModelReader::readAttributeLists() {
    readParts(file_, Format::AttributesStream, nodes_, readNodeAttributes);
}

void ModelReader::readMaterials() {
    readParts(file_, Format::ResourcesStream, nodes_, readNodeMaterial);
}

GlobalInformation ModelReader::readGlobal() const {
    auto global = requiredStream(file_, Format::GlobalStream);
    auto information = readGlobalInformation(global);
    if (information.resultAttributeCount == 0) {
        checkUnreadBlocks(file_, global);
    }
    return information;
}

} // namespace MoxReader
