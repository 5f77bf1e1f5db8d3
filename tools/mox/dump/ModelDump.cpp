#include "ModelDump.h"

#include "../common/datasetText.h"
#include "floatText.h"

#include <MoxReader/Format.h>

#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <zlib.h>

#include <algorithm>
#include <bit>
#include <iterator>
#include <span>
#include <variant>
#include <vector>

namespace MoxTool {

namespace {

std::string textJson(const std::string& text) {
    return jsonText(text).dump();
}

std::string numbersJson(std::span<const float> numbers) {
    std::vector<std::string> texts;
    for (const auto number : numbers) {
        texts.push_back(floatText(number));
    }
    return fmt::format("[{}]", fmt::join(texts, ","));
}

// The name of the member shows the kind.
struct AttributeMember {
    std::string operator()(std::uint32_t value) const { return fmt::format(R"("integer":{})", value); }
    std::string operator()(float value) const { return fmt::format(R"("float":{})", floatText(value)); }
    std::string operator()(double value) const { return fmt::format(R"("double":{})", floatText(value)); }
    std::string operator()(const std::string& value) const {
        return fmt::format(R"("text":{})", textJson(value));
    }
};

std::string attributeJson(const std::string& key, const MoxReader::AttributeValue& value) {
    return fmt::format(R"({{"key":{},{}}})", textJson(key), std::visit(AttributeMember{}, value));
}

std::string materialJson(const MoxReader::Material& material) {
    return fmt::format(R"({{"version":{},"diffuse":{},"specular":{},"emissive":{},"ambient":{},)"
                       R"("transparency":{},"shininess":{},"flag":{}}})",
                       textJson(material.version), numbersJson(material.diffuse),
                       numbersJson(material.specular), numbersJson(std::span(material.emissive).first<3>()),
                       numbersJson(material.ambient), floatText(material.transparency),
                       floatText(material.shininess), material.flag);
}

bool hasUnknownValues(const MoxReader::Dataset& dataset) {
    const auto isSet = [](float number) { return std::bit_cast<std::uint32_t>(number) != 0; };
    return dataset.boolA || dataset.boolB || dataset.boolC || isSet(dataset.floatA) || isSet(dataset.floatB);
}

std::string unknownJson(const MoxReader::Dataset& dataset) {
    return fmt::format("[{},{},{},{},{}]", dataset.boolA, dataset.boolB, floatText(dataset.floatA),
                       floatText(dataset.floatB), dataset.boolC);
}

Json placeJson(std::uint32_t nodeId, std::uint32_t index) {
    return {{"node", nodeId}, {"dataset", index}};
}

// A record that no block has claimed, as every writer leaves it.
bool isUnclaimed(const MoxReader::BlockRecord& block) {
    return block.name == MoxReader::Format::EmptyBlockName && block.number == (block.id + 1) % 256 &&
           block.length == 0 && block.flags == 0 && block.reserved == 0;
}

std::string blockJson(const MoxReader::BlockRecord& block) {
    return fmt::format(R"({{"id":{},"number":{},"name":{},"length":{},"flags":{},"reserved":{},)"
                       R"("position":{},"overwritten":{}}})",
                       block.id, block.number, textJson(block.name), block.length, block.flags,
                       block.reserved, block.position, block.isOverwritten);
}

std::string checksumOf(MoxReader::StreamReader& stream) {
    constexpr std::uint64_t Most = std::uint64_t{1} << 20U;
    auto checksum = crc32(0, nullptr, 0);
    while (!stream.atEnd()) {
        const auto part = stream.readBytes(std::min(Most, stream.remaining()));
        checksum = crc32(checksum, part.data(), static_cast<uInt>(part.size()));
    }
    return fmt::format("{:08x}", checksum);
}

void appendNumber(std::string& text, float number) {
    text += floatText(number);
}

void appendNumber(std::string& text, std::uint32_t number) {
    fmt::format_to(std::back_inserter(text), "{}", number);
}

template <typename Number>
std::string rowText(std::span<const Number> row) {
    std::string text;
    for (const auto number : row) {
        if (!text.empty()) {
            text += ',';
        }
        appendNumber(text, number);
    }
    return row.size() == 1 ? text : fmt::format("[{}]", text);
}

template <typename Number>
void writeRows(JsonStream& json, const std::vector<Number>& numbers, std::size_t width) {
    json.key("numbers");
    json.beginArray();
    for (std::size_t first = 0; first < numbers.size(); first += width) {
        json.rawValue(rowText(std::span(numbers).subspan(first, width)));
    }
    json.endArray();
}

} // namespace

ModelDump::ModelDump(const MoxReader::File& file, const MoxReader::Model& model, const Options& options,
                     JsonStream& json)
    : file_(file), model_(model), options_(options), json_(json), heavy_(file, model) {}

void ModelDump::write(const std::function<void(double)>& progress) {
    const auto& nodes = model_.nodes();
    json_.beginObject();
    member("fileVersion", jsonText(file_.version()));
    if (options_.storage) {
        writeBlocks();
        writeStreams();
    }
    writeSaves();
    json_.key("nodes");
    json_.beginArray();
    for (const auto& node : nodes) {
        progress(static_cast<double>(node.id) / static_cast<double>(nodes.size()));
        writeNode(node);
    }
    json_.endArray();
    json_.endObject();
}

void ModelDump::writeBlocks() {
    json_.key("blocks");
    json_.beginArray();
    for (const auto& block : file_.blocks()) {
        if (!isUnclaimed(block)) {
            json_.rawValue(blockJson(block));
        }
    }
    json_.endArray();
}

void ModelDump::writeStreams() {
    json_.key("streams");
    json_.beginArray();
    for (const auto& name : file_.streamNames()) {
        writeStream(name);
    }
    json_.endArray();
}

void ModelDump::writeStream(const std::string& name) {
    Json entry{{"name", jsonText(name)}};
    try {
        auto stream = file_.stream(name);
        if (stream.damage()) {
            throw MoxReader::Error(*stream.damage());
        }
        entry["bytes"] = stream.size();
        entry["crc32"] = checksumOf(stream);
    } catch (const MoxReader::Error& error) {
        entry = {{"name", jsonText(name)}, {"unreadable", noteDamage(error)}};
    }
    json_.value(entry);
}

void ModelDump::writeSaves() {
    const auto& global = model_.globalInformation();
    json_.key("saves");
    json_.beginArray();
    for (const auto& save : global.modifiers) {
        Json entry{{"version", jsonText(save.version)},
                   {"sourceName", jsonText(save.sourceName)},
                   {"sourceVersion", jsonText(save.sourceVersion)},
                   {"formatVersion", jsonText(save.formatVersion)},
                   {"date", jsonText(save.date)},
                   {"computer", jsonText(save.computer)},
                   {"user", jsonText(save.user)},
                   {"comment", jsonText(save.comment)}};
        if (options_.noDate) {
            entry.erase("date");
        }
        json_.value(entry);
    }
    json_.endArray();
    member("resultAttributes", global.resultAttributeCount);
}

void ModelDump::writeNode(const MoxReader::Node& node) {
    json_.beginObject();
    member("id", node.id);
    member("parent", node.parent);
    member("name", jsonText(node.name));
    member("type", jsonText(node.typeName));
    member("version", jsonText(node.version));
    if (options_.storage) {
        writeNodeStorage(node);
    }
    std::visit([this](const auto& content) { write(content); }, node.content);
    json_.endObject();
}

void ModelDump::writeNodeStorage(const MoxReader::Node& node) {
    member("previous", node.previous);
    member("next", node.next);
    const auto children = model_.children(node.id);
    member("children", std::vector(children.begin(), children.end()));
    member("descriptor", node.lightPosition);
}

void ModelDump::write(const MoxReader::Group& group) {
    rawMember("translation", numbersJson(group.translation));
    rawMember("rotation", numbersJson(group.rotation));
    rawMember("scale", numbersJson(group.scale));
    member("kind", group.kind);
    writeAttributes(group.attributes);
}

void ModelDump::write(const MoxReader::Shape& shape) {
    rawMember("material", materialJson(shape.material));
}

void ModelDump::write(const MoxReader::Geometry& geometry) {
    json_.key("datasets");
    json_.beginArray();
    for (const auto& dataset : geometry.datasets) {
        writeDataset(dataset);
    }
    json_.endArray();
}

void ModelDump::write(const MoxReader::NodeSets& descriptor) {
    member("setCount", descriptor.setCount);
    if (options_.storage) {
        member("bytes", descriptor.heavySize);
        member("position", descriptor.heavyPosition);
    }
    if (!options_.numbers) {
        return;
    }
    try {
        const auto sets = heavy_.readNodeSets(descriptor);
        json_.key("sets");
        json_.beginArray();
        for (const auto& set : sets) {
            json_.beginObject();
            member("name", jsonText(set.name));
            member("members", set.members);
            json_.endObject();
        }
        json_.endArray();
    } catch (const MoxReader::Error& error) {
        writeUnreadable(error);
    }
}

// A step without a name is not the same as no step.
void ModelDump::writeDataset(const MoxReader::Dataset& dataset) {
    json_.beginObject();
    member("name", jsonText(dataset.name));
    if (dataset.key.size() != dataset.name.size()) {
        member("step", jsonText(dataset.step));
    }
    member("type", variableTypeText(dataset));
    member("element", elementTypeText(dataset));
    member("vibration", dataset.vibration);
    if (dataset.isLink) {
        writeLink(dataset);
    } else {
        writeHolder(dataset);
    }
    json_.endObject();
}

void ModelDump::writeLink(const MoxReader::Dataset& link) {
    member("link", placeJson(link.linkNodeId, link.linkIndex));
    try {
        const auto& holder = model_.resolve(link);
        if (holder.nodeId != link.linkNodeId || holder.index != link.linkIndex) {
            member("holder", placeJson(holder.nodeId, holder.index));
        }
    } catch (const MoxReader::Error& error) {
        writeUnreadable(error);
    }
    if (!link.attributes.empty()) {
        writeAttributes(link.attributes);
    }
}

void ModelDump::writeHolder(const MoxReader::Dataset& dataset) {
    member("shape", Json{itemCount(dataset), dataset.width});
    member("bytes", dataset.sizeInBytes);
    if (options_.storage) {
        member("position", dataset.position);
    }
    if (hasUnknownValues(dataset)) {
        rawMember("unknown", unknownJson(dataset));
    }
    writeAttributes(dataset.attributes);
    if (options_.numbers) {
        writeNumbers(dataset);
    }
}

void ModelDump::writeAttributes(const MoxReader::Attributes& attributes) {
    json_.key("attributes");
    json_.beginArray();
    for (const auto& [key, value] : attributes) {
        json_.rawValue(attributeJson(key, value));
    }
    json_.endArray();
}

void ModelDump::writeNumbers(const MoxReader::Dataset& dataset) {
    try {
        if (dataset.elementTag == MoxReader::Format::FloatTag) {
            writeRows(json_, heavy_.readFloats(dataset), dataset.width);
        } else {
            writeRows(json_, heavy_.readUnsigned(dataset), dataset.width);
        }
    } catch (const MoxReader::Error& error) {
        writeUnreadable(error);
    }
}

void ModelDump::writeUnreadable(const MoxReader::Error& error) {
    member("unreadable", noteDamage(error));
}

// A system that fails to read is no property of the file.
std::string_view ModelDump::noteDamage(const MoxReader::Error& error) {
    if (error.code() == MoxReader::ErrorCode::ReadFailed) {
        throw MoxReader::Error(error);
    }
    if (!damage_) {
        damage_ = error;
    }
    return MoxReader::errorName(error.code());
}

void ModelDump::member(std::string_view key, const Json& value) {
    json_.key(key);
    json_.value(value);
}

void ModelDump::rawMember(std::string_view key, std::string_view text) {
    json_.key(key);
    json_.rawValue(text);
}

} // namespace MoxTool
