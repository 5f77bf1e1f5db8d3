#include "ModelScan.h"

#include "../common/visibleText.h"
#include "BlockCheck.h"

#include <MoxReader/Attributes.h>
#include <MoxReader/Material.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>

namespace MoxTool {

namespace {

using MoxReader::Dataset;
using MoxReader::Geometry;
using MoxReader::Node;
using MoxReader::StreamReader;
namespace Format = MoxReader::Format;

/// The node types, and the version of each where it is fixed.
struct KnownType {
    std::string_view name;
    std::string_view version;
};

constexpr std::string_view AnyVersion = "*";
constexpr std::array KnownTypes = {
    KnownType{"", ""}, // a root that was never set
    KnownType{Format::PlainType, Format::PlainVersion},
    KnownType{Format::GroupType, Format::GroupVersion},
    KnownType{Format::ShapeType, Format::ShapeVersion},
    KnownType{Format::GeometryType, Format::GeometryVersion},
    KnownType{Format::NodeSetsType, AnyVersion},
};

template <std::size_t Count>
bool areFinite(const std::array<float, Count>& values, std::size_t count = Count) {
    return std::all_of(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(count),
                       [](float value) { return std::isfinite(value); });
}

// The fourth value of the emissive colour can be any bits.
bool isFinite(const MoxReader::Material& material) {
    return areFinite(material.diffuse) && areFinite(material.specular) && areFinite(material.emissive, 3) &&
           areFinite(material.ambient) && std::isfinite(material.transparency) &&
           std::isfinite(material.shininess);
}

FindingPlace placeIn(const StreamReader& stream, std::uint64_t offset,
                     std::optional<std::uint32_t> node = {}) {
    return {.stream = stream.name(), .streamOffset = offset, .node = node};
}

std::uint64_t sizeOf(const MoxReader::ModifierInfo& info) {
    std::uint64_t size = 4;
    for (const auto* text : {&info.version, &info.sourceName, &info.sourceVersion, &info.formatVersion,
                             &info.date, &info.computer, &info.user, &info.comment}) {
        size += 4 + text->size();
    }
    return size;
}

bool hasFixedForm(const MoxReader::GlobalInformation& global, std::uint64_t streamSize) {
    std::uint64_t size = 4 + 4; // the two counts
    for (const auto& info : global.modifiers) {
        if (info.version != Format::ModifierVersion || info.formatVersion != Format::SupportedVersion) {
            return false;
        }
        size += sizeOf(info);
    }
    return !global.modifiers.empty() && global.resultAttributeCount == 0 && size == streamSize;
}

} // namespace

ModelScan::ModelScan(const MoxReader::File& file, FindingList& findings) : file_(file), findings_(findings) {}

void ModelScan::run() {
    scan(Format::TreeStream, &ModelScan::scanTree);
    scan(Format::LightStream, &ModelScan::scanLightData);
    scan(Format::AttributesStream, &ModelScan::scanAttributes);
    scan(Format::ResourcesStream, &ModelScan::scanMaterials);
    scan(Format::GlobalStream, &ModelScan::scanGlobalInformation);
}

void ModelScan::scan(std::string_view name, StreamScan scanStream) {
    auto stream = file_.stream(name);
    (this->*scanStream)(stream);
    addSoundBlocks(soundBlocks_, stream);
}

/// @return whether the work was completed.
template <class Work>
bool ModelScan::attempt(const Work& work, std::optional<std::uint32_t> node) {
    try {
        work();
        return true;
    } catch (const MoxReader::Error& error) {
        if (error.code() == MoxReader::ErrorCode::ReadFailed) {
            throw;
        }
        blockFailed_ = isBlockDamage(error.code());
        findings_.addError(error, node);
        return false;
    }
}

void ModelScan::checkEnd(const StreamReader& stream) {
    if (stream.damage()) {
        findings_.addError(*stream.damage());
    } else if (!stream.atEnd()) {
        findings_.add(RuleId::BytesLeftOver, fmt::format("{} bytes", stream.remaining()),
                      placeIn(stream, stream.position()));
    }
}

void ModelScan::scanTree(StreamReader& tree) {
    if (tree.blocks().empty()) {
        findings_.add(RuleId::StreamMissing, "there is no tree", {.stream = std::string(Format::TreeStream)});
        return;
    }
    treeWhole_ = attempt([&] {
        const auto count = tree.readCount(Format::NodeRecordMinSize);
        if (count == 0) {
            findings_.add(RuleId::Count, "the tree has no node", placeIn(tree, 0));
        }
        for (std::uint32_t i = 0; i < count; ++i) {
            scanned_.push_back(Node{MoxReader::readNodeRecord(tree), {}});
        }
        checkEnd(tree);
    });
    for (const auto& node : scanned_) {
        checkKind(node);
    }
}

void ModelScan::checkKind(const Node& node) {
    const auto id = idOf(node);
    const auto known = std::ranges::find(KnownTypes, std::string_view(node.typeName), &KnownType::name);
    const bool isUnset = node.typeName.empty();
    if (known == KnownTypes.end() || (isUnset && (id != 1 || !node.name.empty()))) {
        findings_.add(RuleId::NodeType, fmt::format("type \"{}\"", visibleText(node.typeName)), {.node = id});
    } else if (known->version != AnyVersion && node.version != known->version) {
        findings_.add(RuleId::NodeVersion,
                      fmt::format("version \"{}\" of a \"{}\"", visibleText(node.version), node.typeName),
                      {.node = id});
    }
}

// After a descriptor that can't be read, the place that the next node states is used, provided that it lies
// further on; so nothing is read twice.
void ModelScan::scanLightData(StreamReader& light) {
    descriptorsWhole_ = treeWhole_;
    bool inStep = true;
    for (auto& node : scanned_) {
        const auto id = idOf(node);
        if (inStep && node.lightPosition != light.position()) {
            findings_.add(RuleId::DescriptorPlace,
                          fmt::format("it says {} instead of {}", node.lightPosition, light.position()),
                          placeIn(light, light.position(), id));
        }
        if (!inStep && !seekDescriptor(light, node, id)) {
            continue;
        }
        inStep = attempt([&] { scanDescriptor(light, node, id); }, id);
        descriptorsWhole_ = descriptorsWhole_ && inStep;
        if (!inStep && blockFailed_) {
            return;
        }
    }
    if (inStep && treeWhole_) {
        checkEnd(light);
    }
}

bool ModelScan::seekDescriptor(StreamReader& light, const Node& node, std::uint32_t id) {
    if (node.lightPosition >= light.position() && node.lightPosition <= light.size()) {
        light.seek(node.lightPosition);
        return true;
    }
    findings_.add(RuleId::NotChecked, "its descriptor could not be found", {.node = id});
    return false;
}

void ModelScan::scanDescriptor(StreamReader& light, Node& node, std::uint32_t id) {
    const auto start = light.position();
    if (node.typeName == Format::GroupType) {
        const auto group = MoxReader::readGroup(light);
        if (group.kind > 1 || (group.kind == 1 && id != 1)) {
            findings_.add(RuleId::GroupKind, fmt::format("it is {}", group.kind), placeIn(light, start, id));
        }
        if (!areFinite(group.translation) || !areFinite(group.rotation) || !areFinite(group.scale)) {
            findings_.add(RuleId::LooksNotFinite, "a transform", placeIn(light, start, id));
        }
        node.content = group;
    } else if (node.typeName == Format::ShapeType) {
        node.content = MoxReader::Shape{};
    } else if (node.typeName == Format::GeometryType) {
        scanGeometry(light, node, id);
    } else if (node.typeName == Format::NodeSetsType) {
        node.content = MoxReader::readNodeSetsDescriptor(light);
        if (light.position() - start != 4 + Format::NodeSetsDescriptorSize) {
            findings_.add(RuleId::NodeSetsRecord, "the descriptor has not 16 bytes",
                          placeIn(light, start, id));
        }
    } else if (!node.typeName.empty() && node.typeName != Format::PlainType) {
        // The type has been reported; the length of a descriptor of unknown type is unknown too.
        throw MoxReader::Error(MoxReader::ErrorCode::UnknownNodeType, light.place());
    }
}

void ModelScan::scanGeometry(StreamReader& light, Node& node, std::uint32_t id) {
    auto& datasets = node.content.emplace<Geometry>().datasets;
    const auto count = light.readCount(Format::DatasetMinSize);
    for (std::uint32_t index = 0; index < count; ++index) {
        auto dataset = MoxReader::readDataset(light);
        dataset.nodeId = id;
        dataset.index = index;
        datasets.push_back(std::move(dataset));
    }
}

void ModelScan::scanAttributes(StreamReader& attributes) {
    if (!descriptorsWhole_) {
        findings_.add(RuleId::NotChecked, "without all descriptors the attributes can't be told apart",
                      placeIn(attributes, 0));
        return;
    }
    attempt([&] {
        for (const auto& node : scanned_) {
            scanNodeAttributes(attributes, node, idOf(node));
        }
        checkEnd(attributes);
    });
}

void ModelScan::scanNodeAttributes(StreamReader& attributes, const Node& node, std::uint32_t id) {
    if (node.group() != nullptr) {
        scanAttributeRecord(attributes, id, nullptr);
    }
    if (node.geometry() == nullptr) {
        return;
    }
    for (const auto& dataset : node.geometry()->datasets) {
        scanAttributeRecord(attributes, id, &dataset);
    }
}

// The reader returns attributes in order, whatever their order in the file; so the keys are read again here.
void ModelScan::checkKeyOrder(StreamReader& attributes, std::uint64_t start, const FindingPlace& place) {
    const auto end = attributes.position();
    attributes.seek(start);
    const auto keys = attributes.readStrings();
    attributes.seek(end);
    const auto early = std::ranges::is_sorted_until(keys);
    if (early != keys.end()) {
        findings_.add(
            RuleId::AttributeOrder,
            fmt::format("\"{}\" stands after \"{}\"", visibleText(*early), visibleText(*std::prev(early))),
            place);
    }
}

// Contradictory lists have been read to their end, so that the next record can follow.
void ModelScan::scanAttributeRecord(StreamReader& attributes, std::uint32_t id, const Dataset* dataset) {
    const auto start = attributes.position();
    auto place = placeIn(attributes, start, id);
    if (dataset != nullptr) {
        place.dataset = dataset->index;
        place.key = dataset->key;
    }
    try {
        const auto read = MoxReader::readAttributes(attributes);
        if (dataset != nullptr && dataset->isLink && !read.empty()) {
            findings_.add(RuleId::LinkAttributes, fmt::format("it has {}", read.size()), place);
        }
        if (read.size() > 1) {
            checkKeyOrder(attributes, start, place);
        }
    } catch (const MoxReader::Error& error) {
        if (error.code() != MoxReader::ErrorCode::BadAttributes) {
            throw;
        }
        findings_.add(RuleId::AttributeRecord, std::string(MoxReader::errorText(error.code())), place);
    }
}

// All records have the same size, so an unreadable one does not hide the next.
void ModelScan::scanMaterials(StreamReader& resources) {
    for (const auto& node : scanned_) {
        if (node.typeName != Format::ShapeType) {
            continue;
        }
        const auto id = idOf(node);
        const auto start = resources.position();
        if (attempt([&] { scanMaterial(resources, id); }, id)) {
            continue;
        }
        if (blockFailed_ || start + Format::MaterialSize > resources.size()) {
            return;
        }
        resources.seek(start + Format::MaterialSize);
    }
    if (treeWhole_) {
        checkEnd(resources);
    }
}

void ModelScan::scanMaterial(StreamReader& resources, std::uint32_t id) {
    const auto start = resources.position();
    const auto material = MoxReader::readMaterial(resources);
    const auto size = resources.position() - start;
    const auto place = placeIn(resources, start, id);
    if (material.version != Format::MaterialVersion || size != Format::MaterialSize || material.flag != 1) {
        findings_.add(RuleId::MaterialRecord,
                      fmt::format("version \"{}\", {} bytes, flag {}", visibleText(material.version), size,
                                  material.flag),
                      place);
    }
    if (!isFinite(material)) {
        findings_.add(RuleId::LooksNotFinite, "a material", place);
    }
}

void ModelScan::scanGlobalInformation(StreamReader& global) {
    if (global.blocks().empty()) {
        findings_.add(RuleId::StreamMissing, "nothing says who saved the file",
                      {.stream = std::string(Format::GlobalStream)});
        return;
    }
    attempt([&] {
        const auto information = MoxReader::readGlobalInformation(global);
        if (!hasFixedForm(information, global.size())) {
            findings_.add(RuleId::GlobalRecord, "a record has another version, size or format version",
                          placeIn(global, 0));
        }
    });
}

} // namespace MoxTool
