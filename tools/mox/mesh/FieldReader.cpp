#include "FieldReader.h"

#include <algorithm>
#include <limits>

namespace MoxTool {

std::vector<double> FieldReader::read(const ResultField& field, const MoxReader::Dataset& holder) {
    if (field.isInteger) {
        const auto numbers = heavy_.readUnsigned(holder);
        return {numbers.begin(), numbers.end()};
    }
    const auto numbers = heavy_.readFloats(holder);
    return {numbers.begin(), numbers.end()};
}

std::vector<double> FieldReader::readAll(const ResultField& field, std::size_t step) {
    const auto items = field.place == ResultPlace::Nodes ? mesh_.nodeCount() : mesh_.elementCount();
    std::vector<double> table(items * field.width, std::numeric_limits<double>::quiet_NaN());
    if (field.place == ResultPlace::Nodes) {
        readNodes(field, step, table);
    } else {
        readElements(field, step, table);
    }
    return table;
}

void FieldReader::readNodes(const ResultField& field, std::size_t step, std::vector<double>& table) {
    for (std::size_t group = 0; group < mesh_.nodeGroups.size(); ++group) {
        const auto* source = field.source(step, group);
        if (source == nullptr) {
            continue;
        }
        const auto numbers = read(field, *source);
        std::copy(numbers.begin(), numbers.end(),
                  table.begin() + static_cast<std::ptrdiff_t>(mesh_.nodeGroups[group].first * field.width));
    }
}

void FieldReader::readElements(const ResultField& field, std::size_t step, std::vector<double>& table) {
    auto target = table.begin();
    std::vector<double> numbers;
    const MoxReader::Dataset* loaded = nullptr;
    for (const auto& block : mesh_.blocks) {
        const auto* source = field.source(step, block.part);
        if (source != nullptr && source != loaded) {
            numbers = read(field, *source);
        }
        loaded = source == nullptr ? loaded : source;
        for (const auto row : block.rows) {
            if (source != nullptr) {
                std::copy_n(numbers.begin() + static_cast<std::ptrdiff_t>(row * field.width), field.width,
                            target);
            }
            target += static_cast<std::ptrdiff_t>(field.width);
        }
    }
}

} // namespace MoxTool
