#include "ResultCollector.h"

#include "../common/attributeValue.h"
#include "../common/datasetText.h"
#include "AttributeNames.h"
#include "columnNames.h"
#include "meshDatasets.h"

#include <MoxReader/Format.h>

#include <fmt/core.h>

#include <algorithm>

namespace MoxTool {

using MoxReader::Dataset;

namespace {

bool fitsItsType(const Dataset& dataset, const Dataset& holder) {
    const auto* type = MoxReader::Format::findVariableType(dataset.variableType);
    return type != nullptr && holder.width == type->width;
}

struct StepOfResults {
    ModelStep step;
    std::uint64_t position; // of its first numbers
};

} // namespace

ResultCollector::ResultCollector(const MoxReader::Model& model, const ModelChoice& choice,
                                 const ModelMesh& mesh, ConversionSummary& summary)
    : model_(model), choice_(choice), mesh_(mesh), summary_(summary) {}

ModelResults ResultCollector::collect() {
    collectSteps();
    for (std::size_t part = 0; part < mesh_.parts.size(); ++part) {
        addPart(part);
    }
    listSkipped();
    return std::move(results_);
}

// A link from another step shares the numbers of that step, but not its attributes.
void ResultCollector::collectSteps() {
    std::map<std::string, std::size_t> places;
    std::vector<StepOfResults> found;
    for (const auto& part : mesh_.parts) {
        for (const auto& dataset : part.geometry->geometry()->datasets) {
            if (dataset.step.empty() || resultPlaceOf(dataset) == ResultPlace::Nowhere ||
                !choice_.takesDataset(dataset)) {
                continue;
            }
            const auto& holder = model_.resolve(dataset);
            const auto [place, isNew] = places.emplace(dataset.step, found.size());
            if (isNew) {
                found.push_back({{dataset.step, {}, {}, {}, false}, holder.position});
            }
            auto& step = found[place->second];
            step.position = std::min(step.position, holder.position);
            if (holder.step == dataset.step) {
                step.step.describe(holder);
            }
        }
    }
    std::stable_sort(found.begin(), found.end(),
                     [](const auto& left, const auto& right) { return left.position < right.position; });
    for (const auto& step : found) {
        stepPlaces_.emplace(step.step.name, results_.steps.size());
        results_.steps.push_back(step.step);
    }
}

void ResultCollector::addPart(std::size_t partIndex) {
    const auto& geometry = *mesh_.parts[partIndex].geometry;
    const std::set meshDatasets = {findCoordinates(geometry), findConnectivity(geometry),
                                   findPolylength(geometry)};
    for (const auto& dataset : geometry.geometry()->datasets) {
        if (!meshDatasets.contains(&dataset) && choice_.takesDataset(dataset)) {
            addDataset(partIndex, dataset);
        }
    }
}

void ResultCollector::addDataset(std::size_t partIndex, const Dataset& dataset) {
    const auto place = resultPlaceOf(dataset);
    if (place == ResultPlace::Nowhere) {
        others_.insert(fmt::format("{} [{}]", dataset.name, variableTypeText(dataset)));
        return;
    }
    const auto& holder = model_.resolve(dataset);
    const auto target = place == ResultPlace::Nodes ? mesh_.parts[partIndex].nodeGroup : partIndex;
    if (!fitsItsType(dataset, holder) || itemCount(holder) != itemsOf(mesh_, place, target)) {
        misfits_.insert(fmt::format("{} of {}", dataset.name, mesh_.parts[partIndex].geometry->name));
        return;
    }
    const auto step = dataset.step.empty() ? ResultField::NoStep : stepPlaces_.at(dataset.step);
    auto& field = results_.fields[fieldOf(dataset, holder)];
    field.sources.emplace(ResultField::Source{step, target}, &holder);
    field.targets.insert(target);
}

std::size_t ResultCollector::fieldOf(const Dataset& dataset, const Dataset& holder) {
    ResultField field;
    field.place = resultPlaceOf(dataset);
    field.name = dataset.name;
    field.variableType = dataset.variableType;
    field.width = holder.width;
    field.isInteger = holder.elementTag == MoxReader::Format::UnsignedTag;
    field.isStatic = dataset.step.empty();
    field.components = componentNames(holder);
    const FieldKey key{field.place,       field.name,     (field.variableType << 8U) | holder.width,
                       holder.elementTag, field.isStatic, field.components};
    const auto [place, isNew] = fieldPlaces_.emplace(key, results_.fields.size());
    if (isNew) {
        results_.fields.push_back(std::move(field));
    }
    return place->second;
}

void ResultCollector::listSkipped() {
    summary_.addSkipped("datasets that are no results on nodes or elements",
                        {others_.begin(), others_.end()});
    summary_.addSkipped("results that fit neither nodes nor elements", {misfits_.begin(), misfits_.end()});
}

} // namespace MoxTool
