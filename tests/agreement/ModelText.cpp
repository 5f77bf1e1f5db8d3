#include "ModelText.h"

#include <fmt/format.h>
#include <zlib.h>

#include <bit>
#include <cmath>
#include <iterator>
#include <variant>

namespace {

std::uint32_t checksum(std::span<const std::uint8_t> bytes) {
    return static_cast<std::uint32_t>(crc32(0, bytes.data(), static_cast<uInt>(bytes.size())));
}

} // namespace

ModelText::ModelText(const MoxReader::File& file)
    : file_(file), model_(MoxReader::readModel(file)), heavy_(file, model_) {
    addLine(file.version());
    addBlocks();
    for (const auto& name : file.streamNames()) {
        addStream(name);
    }
    addGlobalInformation();
    for (const auto& node : model_.nodes()) {
        addNode(node);
    }
}

void ModelText::addBlocks() {
    for (const auto& block : file_.blocks()) {
        addLine(block.id, block.number, block.length, block.flags, block.reserved, block.position,
                block.isOverwritten, std::string_view(block.name));
    }
}

void ModelText::addStream(const std::string& name) {
    const auto add = [&] {
        auto stream = file_.stream(name);
        if (stream.damage()) {
            throw *stream.damage();
        }
        const auto content = stream.readBytes(stream.size());
        addLine(name, content.size(), checksum(content));
    };
    if (name == MoxReader::Format::HeavyStream) {
        addIfWhole(add);
    } else {
        add();
    }
}

template <class Add>
void ModelText::addIfWhole(const Add& add) {
    try {
        add();
    } catch (const MoxReader::Error&) {
        isWhole_ = false;
        addLine(std::string_view("lost"));
    }
}

void ModelText::addGlobalInformation() {
    const auto& global = model_.globalInformation();
    for (const auto& info : global.modifiers) {
        addLine(info.version, info.sourceName, info.sourceVersion, info.formatVersion, info.date,
                info.computer, info.user, info.comment);
    }
    addLine(global.resultAttributeCount);
}

void ModelText::addNode(const MoxReader::Node& node) {
    addLine(node.id, node.parent, node.previous, node.next, node.firstChild, node.lastChild, node.name,
            node.typeName, node.version, node.lightPosition);
    for (const auto child : model_.children(node.id)) {
        addLine(child);
    }
    std::visit([this](const auto& content) { addContent(content); }, node.content);
}

void ModelText::addContent(const MoxReader::Group& group) {
    addLine(std::span<const float>(group.translation), std::span<const float>(group.rotation),
            std::span<const float>(group.scale), group.kind);
    addAttributes(group.attributes);
}

void ModelText::addContent(const MoxReader::Shape& shape) {
    const auto& material = shape.material;
    addLine(material.version, std::span<const float>(material.diffuse),
            std::span<const float>(material.specular), std::span<const float>(material.emissive).first<3>(),
            std::span<const float>(material.ambient), material.transparency, material.shininess,
            material.flag);
}

void ModelText::addContent(const MoxReader::Geometry& geometry) {
    for (const auto& dataset : geometry.datasets) {
        addDataset(dataset);
    }
}

void ModelText::addContent(const MoxReader::NodeSets& descriptor) {
    addLine(descriptor.setCount, descriptor.heavyPosition, descriptor.heavySize);
    addIfWhole([&] {
        for (const auto& set : heavy_.readNodeSets(descriptor)) {
            addLine(set.name);
            for (const auto& [first, second] : set.members) {
                addLine(first, second);
            }
        }
    });
}

void ModelText::addDataset(const MoxReader::Dataset& dataset) {
    addLine(dataset.nodeId, dataset.index, dataset.key, dataset.name, dataset.step, dataset.variableType,
            dataset.elementTag, dataset.isLink, dataset.linkNodeId, dataset.linkIndex, dataset.sizeInBytes,
            dataset.width, dataset.boolA, dataset.boolB, dataset.floatA, dataset.floatB, dataset.boolC,
            dataset.position, dataset.vibration);
    addAttributes(dataset.attributes);
    if (dataset.isLink) {
        addHolder(dataset);
    } else {
        addNumbers(dataset);
    }
}

void ModelText::addHolder(const MoxReader::Dataset& link) {
    try {
        const auto& holder = model_.resolve(link);
        addLine(holder.nodeId, holder.index);
    } catch (const MoxReader::Error&) {
        addLine(std::string_view("no end"));
    }
}

void ModelText::addNumbers(const MoxReader::Dataset& dataset) {
    addIfWhole([&] {
        if (dataset.elementTag == MoxReader::Format::FloatTag) {
            addBytes(std::span<const float>(heavy_.readFloats(dataset)));
        } else {
            addBytes(std::span<const std::uint32_t>(heavy_.readUnsigned(dataset)));
        }
        text_ += '\n';
    });
}

void ModelText::addAttributes(const MoxReader::Attributes& attributes) {
    for (const auto& [key, value] : attributes) {
        const std::string_view name = key;
        std::visit([&, kind = value.index()](const auto& held) { addLine(name, kind, held); }, value);
    }
}

template <class... Words>
void ModelText::addLine(const Words&... words) {
    (addWord(words), ...);
    text_ += '\n';
}

template <std::integral T>
void ModelText::addWord(T number) {
    fmt::format_to(std::back_inserter(text_), "{} ", std::uint64_t{number});
}

void ModelText::addWord(std::string_view text) {
    text_ += '"';
    for (const char character : text) {
        const bool isPlain = character >= ' ' && character <= '~' && character != '"' && character != '\\';
        if (isPlain) {
            text_ += character;
        } else {
            fmt::format_to(std::back_inserter(text_), "\\x{:02x}", static_cast<unsigned char>(character));
        }
    }
    text_ += "\" ";
}

// Not every reader preserves the other bits of a NaN.
void ModelText::addWord(float number) {
    if (std::isnan(number)) {
        text_ += "nan ";
    } else {
        fmt::format_to(std::back_inserter(text_), "{:08x} ", std::bit_cast<std::uint32_t>(number));
    }
}

void ModelText::addWord(double number) {
    if (std::isnan(number)) {
        text_ += "nan ";
    } else {
        fmt::format_to(std::back_inserter(text_), "{:016x} ", std::bit_cast<std::uint64_t>(number));
    }
}

void ModelText::addWord(std::span<const float> numbers) {
    for (const auto number : numbers) {
        addWord(number);
    }
}

template <class T>
void ModelText::addBytes(std::span<const T> numbers) {
    for (const auto number : numbers) {
        fmt::format_to(std::back_inserter(text_), "{:08x}", std::bit_cast<std::uint32_t>(number));
    }
}
