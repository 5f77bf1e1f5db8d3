#include "PackedGeometry.h"

#include "toAttributeList.h"

#include <cstring>
#include <string_view>
#include <type_traits>

namespace MoxTool {

namespace {

using MoxReader::Dataset;
using QelMox::DatasetEntry;
using QelUtil::AttributeValue;

// Values one after the other, each as it is in memory. Nothing but this file reads them.
class Packer {
public:
    explicit Packer(std::string& bytes) : bytes_(bytes) {}

    template <typename T>
    requires std::is_arithmetic_v<T>
    void put(T number) { bytes_.append(reinterpret_cast<const char*>(&number), sizeof(number)); }

    void put(std::string_view text) {
        put(static_cast<std::uint32_t>(text.size()));
        bytes_.append(text);
    }

private:
    std::string& bytes_;
};

class Unpacker {
public:
    explicit Unpacker(std::string_view bytes) : bytes_(bytes) {}

    bool atEnd() const { return bytes_.empty(); }

    template <typename T>
    T get() {
        T number;
        std::memcpy(&number, bytes_.data(), sizeof(number));
        bytes_.remove_prefix(sizeof(number));
        return number;
    }

    std::string_view getText() {
        const auto size = get<std::uint32_t>();
        const auto text = bytes_.substr(0, size);
        bytes_.remove_prefix(size);
        return text;
    }

private:
    std::string_view bytes_;
};

bool hasFixedFields(const Dataset& dataset) {
    return dataset.boolA || dataset.boolB || dataset.boolC || dataset.floatA != 0 || dataset.floatB != 0;
}

void packAttributes(Packer& packer, const MoxReader::Attributes& attributes) {
    packer.put(static_cast<std::uint32_t>(attributes.size()));
    for (const auto& [key, value] : attributes) {
        packer.put(std::string_view(key));
        packer.put(static_cast<std::uint8_t>(value.index()));
        std::visit(
            [&packer](const auto& content) {
                if constexpr (std::is_arithmetic_v<std::decay_t<decltype(content)>>) {
                    packer.put(content);
                } else {
                    packer.put(std::string_view(content));
                }
            },
            value);
    }
}

AttributeValue unpackValue(Unpacker& unpacker) {
    switch (unpacker.get<std::uint8_t>()) {
    case AttributeValue::Integer:
        return AttributeValue(unpacker.get<std::uint32_t>());
    case AttributeValue::Float:
        return AttributeValue(unpacker.get<float>());
    case AttributeValue::Double:
        return AttributeValue(unpacker.get<double>());
    default:
        return textValue(std::string(unpacker.getText()));
    }
}

void packNumbers(Packer& packer, const DatasetRecord& record) {
    packer.put(record.numbers.sizeInBytes);
    packer.put(record.numbers.width);
    packer.put(record.position);
    packer.put(hasFixedFields(record.numbers));
    if (hasFixedFields(record.numbers)) {
        packer.put(record.numbers.boolA);
        packer.put(record.numbers.boolB);
        packer.put(record.numbers.floatA);
        packer.put(record.numbers.floatB);
        packer.put(record.numbers.boolC);
    }
}

void unpackNumbers(Unpacker& unpacker, DatasetEntry& entry) {
    entry.values.sizeInBytes = unpacker.get<std::uint32_t>();
    entry.values.width = unpacker.get<std::uint8_t>();
    entry.position = unpacker.get<std::uint64_t>();
    if (unpacker.get<bool>()) {
        entry.values.boolA = unpacker.get<bool>();
        entry.values.boolB = unpacker.get<bool>();
        entry.values.floatA = unpacker.get<float>();
        entry.values.floatB = unpacker.get<float>();
        entry.values.boolC = unpacker.get<bool>();
    }
}

void unpackEntry(Unpacker& unpacker, QelMox::Geometry& geometry) {
    const std::string key(unpacker.getText());
    DatasetEntry& entry = geometry.GetDataset(geometry.FindOrAddDataset(key));
    entry.variableType = static_cast<QelMox::VariableType>(unpacker.get<std::uint32_t>());
    entry.values.elementTag = unpacker.get<std::uint8_t>();
    entry.vibration = unpacker.get<bool>();
    entry.isLink = unpacker.get<bool>();
    if (entry.isLink) {
        entry.linkNodeId = unpacker.get<std::uint32_t>();
        entry.linkIndex = unpacker.get<std::uint32_t>();
    } else {
        unpackNumbers(unpacker, entry);
    }
    const auto attributes = unpacker.get<std::uint32_t>();
    for (std::uint32_t i = 0; i < attributes; ++i) {
        const std::string attribute(unpacker.getText());
        entry.attributes.insert_or_assign(attribute, unpackValue(unpacker));
    }
}

void skipEntry(Unpacker& unpacker) {
    QelMox::Geometry ignored{std::string()};
    unpackEntry(unpacker, ignored);
}

} // namespace

void PackedGeometry::add(const DatasetRecord& record) {
    Packer packer(open_);
    packer.put(std::string_view(record.dataset.key));
    packer.put(record.numbers.variableType);
    packer.put(record.numbers.elementTag);
    packer.put(record.dataset.vibration);
    packer.put(record.isLink);
    if (record.isLink) {
        packer.put(record.linkNodeId);
        packer.put(record.linkIndex);
    } else {
        packNumbers(packer, record);
    }
    packAttributes(packer, record.attributes);
    ++count_;
}

void PackedGeometry::endPiece() {
    if (!open_.empty()) {
        pieces_.emplace_back(open_.data(), open_.size());
        std::string().swap(open_);
    }
}

std::vector<std::string> PackedGeometry::keys() const {
    std::vector<std::string> all;
    for (const auto& piece : pieces_) {
        for (Unpacker unpacker(piece); !unpacker.atEnd();) {
            auto next = unpacker;
            all.emplace_back(next.getText());
            skipEntry(unpacker);
        }
    }
    return all;
}

void PackedGeometry::WriteTn(QelTnf::BlockStream& lightData, QelTnf::BlockStream& heavyData,
                             QelTnf::BlockStream& attributes) const {
    QelMox::Geometry whole(GetName());
    for (const auto& piece : pieces_) {
        for (Unpacker unpacker(piece); !unpacker.atEnd();) {
            unpackEntry(unpacker, whole);
        }
    }
    whole.WriteTn(lightData, heavyData, attributes);
}

} // namespace MoxTool
