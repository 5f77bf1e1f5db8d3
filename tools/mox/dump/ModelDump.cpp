#include "ModelDump.h"

#include "../common/Terminal.h"
#include "../common/datasetText.h"
#include "../common/numberText.h"

#include <MoxReader/Format.h>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <array>
#include <cmath>
#include <iterator>

namespace MoxTool {

namespace {

template <std::size_t Size>
Json jsonNumbers(const std::array<float, Size>& numbers, std::size_t count = Size) {
    Json list = Json::array();
    for (std::size_t i = 0; i < count; ++i) {
        list.push_back(jsonNumber(numbers[i]));
    }
    return list;
}

// The name of the member shows the kind.
struct AttributeMember {
    Json& object;

    void operator()(std::uint32_t value) const { object["integer"] = value; }
    void operator()(float value) const { object["float"] = jsonNumber(value); }
    void operator()(double value) const { object["double"] = jsonNumber(value); }
    void operator()(const std::string& value) const { object["text"] = jsonText(value); }
};

Json jsonAttribute(const std::string& key, const MoxReader::AttributeValue& value) {
    Json attribute{{"key", jsonText(key)}};
    std::visit(AttributeMember{attribute}, value);
    return attribute;
}

Json jsonMaterial(const MoxReader::Material& material) {
    return {
        {"version", jsonText(material.version)},       {"diffuse", jsonNumbers(material.diffuse)},
        {"specular", jsonNumbers(material.specular)},  {"emissive", jsonNumbers(material.emissive, 3)},
        {"ambient", jsonNumbers(material.ambient)},    {"transparency", jsonNumber(material.transparency)},
        {"shininess", jsonNumber(material.shininess)}, {"flag", material.flag},
    };
}

bool hasUnknownValues(const MoxReader::Dataset& dataset) {
    return dataset.boolA || dataset.boolB || dataset.boolC || dataset.floatA != 0 || dataset.floatB != 0;
}

void appendNumber(std::string& text, float number) {
    text += std::isfinite(number) ? numberText(number) : '"' + numberText(number) + '"';
}

void appendNumber(std::string& text, std::uint32_t number) {
    fmt::format_to(std::back_inserter(text), "{}", number);
}

template <typename Number>
std::string rowText(const Number* row, std::size_t width) {
    std::string text;
    for (std::size_t i = 0; i < width; ++i) {
        text += i == 0 ? "" : ",";
        appendNumber(text, row[i]);
    }
    return width == 1 ? text : "[" + text + "]";
}

template <typename Number>
void writeRows(JsonStream& json, const std::vector<Number>& numbers, std::size_t width) {
    json.beginArray();
    for (std::size_t first = 0; first < numbers.size(); first += width) {
        json.rawValue(rowText(&numbers[first], width));
    }
    json.endArray();
}

} // namespace

ModelDump::ModelDump(const OpenModel& opened, const Options& options, JsonStream& json)
    : opened_(opened), options_(options), json_(json), heavy_(opened.file(), opened.model()) {}

void ModelDump::write(Terminal& terminal) {
    const auto& nodes = opened_.model().nodes();
    json_.beginObject();
    member("fileVersion", jsonText(opened_.file().version()));
    writeSaves();
    json_.key("nodes");
    json_.beginArray();
    for (const auto& node : nodes) {
        terminal.progress("dumping", static_cast<double>(node.id) / static_cast<double>(nodes.size()));
        writeNode(node);
    }
    json_.endArray();
    json_.endObject();
}

void ModelDump::writeSaves() {
    const auto& global = opened_.model().globalInformation();
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
    std::visit([this](const auto& content) { write(content); }, node.content);
    json_.endObject();
}

void ModelDump::write(const MoxReader::Group& group) {
    member("translation", jsonNumbers(group.translation));
    member("rotation", jsonNumbers(group.rotation));
    member("scale", jsonNumbers(group.scale));
    member("kind", group.kind);
    writeAttributes(group.attributes);
}

void ModelDump::write(const MoxReader::Shape& shape) {
    member("material", jsonMaterial(shape.material));
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
    if (!options_.numbers) {
        return;
    }
    json_.key("sets");
    json_.beginArray();
    for (const auto& set : heavy_.readNodeSets(descriptor)) {
        json_.beginObject();
        member("name", jsonText(set.name));
        member("members", set.members);
        json_.endObject();
    }
    json_.endArray();
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
        member("link", {{"node", dataset.linkNodeId}, {"dataset", dataset.linkIndex}});
    } else {
        writeHolder(dataset);
    }
    json_.endObject();
}

void ModelDump::writeHolder(const MoxReader::Dataset& dataset) {
    member("shape", Json{itemCount(dataset), dataset.width});
    member("bytes", dataset.sizeInBytes);
    if (hasUnknownValues(dataset)) {
        member("unknown", {dataset.boolA, dataset.boolB, jsonNumber(dataset.floatA),
                           jsonNumber(dataset.floatB), dataset.boolC});
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
        json_.value(jsonAttribute(key, value));
    }
    json_.endArray();
}

void ModelDump::writeNumbers(const MoxReader::Dataset& dataset) {
    json_.key("numbers");
    if (dataset.elementTag == MoxReader::Format::FloatTag) {
        writeRows(json_, heavy_.readFloats(dataset), dataset.width);
    } else {
        writeRows(json_, heavy_.readUnsigned(dataset), dataset.width);
    }
}

void ModelDump::member(std::string_view key, const Json& value) {
    json_.key(key);
    json_.value(value);
}

} // namespace MoxTool
