#include "MoxReader/Dataset.h"

#include "MoxReader/ReadHelpers.h"

namespace MoxReader {

namespace {

void splitKey(Dataset& dataset) {
    const auto separator = dataset.key.find(Format::StepSeparator);
    dataset.name = dataset.key.substr(0, separator);
    if (separator != std::string::npos) {
        dataset.step = dataset.key.substr(separator + 1);
    }
}

void splitTypeWord(Dataset& dataset, std::uint32_t word) {
    constexpr std::uint32_t TypeMask = (1u << Format::ElementTagShift) - 1;
    const bool hasTag = word != Format::UntaggedType;
    dataset.variableType = hasTag ? word & TypeMask : word;
    dataset.elementTag =
        hasTag ? static_cast<std::uint8_t>(word >> Format::ElementTagShift) : std::uint8_t{0};
}

void readLink(Dataset& dataset, StreamReader& light) {
    dataset.linkNodeId = light.readNumber<std::uint32_t>();
    dataset.linkIndex = light.readNumber<std::uint32_t>();
}

void readArray(Dataset& dataset, StreamReader& light) {
    dataset.sizeInBytes = light.readNumber<std::uint32_t>();
    dataset.width = light.readNumber<std::uint8_t>();
    dataset.boolA = light.readBool();
    dataset.boolB = light.readBool();
    dataset.floatA = light.readNumber<float>();
    dataset.floatB = light.readNumber<float>();
    dataset.boolC = light.readBool();
    dataset.position = light.readNumber<std::uint64_t>();
}

} // namespace

Dataset readDataset(StreamReader& light) {
    Dataset dataset;
    dataset.key = light.readString();
    splitKey(dataset);
    splitTypeWord(dataset, light.readNumber<std::uint32_t>());
    dataset.isLink = light.readBool();
    if (dataset.isLink) {
        readLink(dataset, light);
    } else {
        readArray(dataset, light);
    }
    dataset.vibration = light.readBool();
    return dataset;
}

std::vector<Dataset> readDatasets(StreamReader& light) {
    const auto count = light.readCount(Format::DatasetMinSize);
    std::vector<Dataset> datasets;
    for (std::uint32_t i = 0; i < count; ++i) {
        datasets.push_back(
            inRecord([&] { return readDataset(light); }, [&] { return "dataset " + std::to_string(i); }));
    }
    return datasets;
}

} // namespace MoxReader
