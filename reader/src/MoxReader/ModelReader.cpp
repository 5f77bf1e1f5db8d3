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

/// Reads each node's part of a stream in turn; the stream must then be used up.
template <class ReadPart>
void readParts(std::vector<Node>& nodes, StreamReader stream, const ReadPart& readPart) {
    for (auto& node : nodes) {
        inRecord([&] { readPart(node, stream); }, [&] { return describeNode(node.id); });
    }
    requireEnd(stream);
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
}

void ModelReader::readLightData() {
    readParts(nodes_, file_.stream(Format::LightStream), readDescriptor);
}

void ModelReader::readAttributeLists() {
    readParts(nodes_, file_.stream(Format::AttributesStream), readNodeAttributes);
}

void ModelReader::readMaterials() {
    readParts(nodes_, file_.stream(Format::ResourcesStream), readNodeMaterial);
}

GlobalInformation ModelReader::readGlobal() const {
    auto global = requiredStream(file_, Format::GlobalStream);
    return readGlobalInformation(global);
}

} // namespace MoxReader
