#include "ValueSurvey.h"

#include "../common/datasetText.h"

#include <algorithm>

namespace MoxTool {

namespace {

std::vector<ValueTally> tallyNumbers(const Numbers& numbers, std::size_t width) {
    std::vector<ValueTally> components(width);
    std::visit(
        [&](const auto& values) {
            for (std::size_t row = 0; row * width < values.size(); ++row) {
                for (std::size_t i = 0; i < width; ++i) {
                    components[i].add(static_cast<double>(values[row * width + i]),
                                      static_cast<std::uint32_t>(row));
                }
            }
        },
        numbers);
    return components;
}

} // namespace

ValueSurvey::ValueSurvey(NumberFile& file, const ModelSteps& steps, const StepFilter& filter, bool bySteps,
                         Terminal& terminal)
    : file_(file), steps_(steps), filter_(filter), bySteps_(bySteps), terminal_(terminal) {}

std::vector<ValueRow> ValueSurvey::run() {
    collect();
    sortUses();
    read();
    sortRows();
    return std::move(rows_);
}

void ValueSurvey::collect() {
    for (const auto& node : file_.model().nodes()) {
        if (node.geometry() == nullptr) {
            continue;
        }
        for (const auto& dataset : node.geometry()->datasets) {
            if (filter_.takes(dataset)) {
                addUse(dataset);
            }
        }
    }
}

void ValueSurvey::addUse(const Dataset& dataset) {
    const auto& holder = file_.holder(dataset);
    if (itemCount(holder) == 0) {
        return;
    }
    const auto step = dataset.step.empty() ? ValuePlace::NoStep : *steps_.find(dataset.step);
    const auto row = rowOf(dataset, holder, step);
    if (known_.emplace(&holder, row).second) {
        uses_.push_back({&holder, row, dataset.nodeId, step});
    }
}

std::size_t ValueSurvey::rowOf(const Dataset& dataset, const Dataset& holder, std::size_t step) {
    const auto stepOfRow = bySteps_ ? step : ValuePlace::NoStep;
    names_.try_emplace(dataset.name, names_.size());
    const auto [place, isNew] = places_.try_emplace(
        {dataset.name, dataset.variableType, holder.elementTag, holder.width, stepOfRow}, rows_.size());
    if (isNew) {
        const auto shown = stepOfRow == ValuePlace::NoStep ? std::nullopt : std::optional(stepOfRow);
        rows_.push_back({&dataset, &holder, shown, std::vector<ValueTally>(holder.width)});
    }
    return place->second;
}

void ValueSurvey::sortUses() {
    std::ranges::stable_sort(uses_, {}, [](const Use& use) {
        return std::tuple(use.holder->position, use.holder->nodeId, use.holder->index);
    });
}

void ValueSurvey::read() {
    const Dataset* last = nullptr;
    std::vector<ValueTally> components;
    for (const auto& use : uses_) {
        if (use.holder != last) {
            terminal_.progress("reading numbers",
                               static_cast<double>(&use - uses_.data()) / static_cast<double>(uses_.size()));
            components = tallyNumbers(file_.read(*use.holder), use.holder->width);
            last = use.holder;
        }
        for (std::size_t i = 0; i < components.size(); ++i) {
            rows_[use.row].components[i].add(components[i], use.node, use.step);
        }
    }
    terminal_.clearProgress();
}

void ValueSurvey::sortRows() {
    std::ranges::stable_sort(rows_, {}, [this](const ValueRow& row) {
        return std::pair(names_.at(row.first->name), row.step ? *row.step + 1 : 0);
    });
}

} // namespace MoxTool
