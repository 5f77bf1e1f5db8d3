#include "ViewPage.h"

#include "../common/Failure.h"
#include "blockText.h"
#include "pageSource.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>

namespace MoxTool {

namespace {

Json finite(double number) {
    return std::isfinite(number) ? Json(number) : Json(nullptr);
}

Json rangesOf(const ViewModel::ResultBlock& block) {
    auto ranges = Json::array();
    for (const auto& [least, greatest] : block.ranges) {
        ranges.push_back({finite(least), finite(greatest)});
    }
    return ranges;
}

} // namespace

ViewPage::Contents ViewPage::write(std::ostream& out, const std::string& path) {
    out_ = &out;
    out << pageSource().head;
    putMesh(path);
    putResults();
    putDescription();
    out << pageSource().tail;
    return contents_;
}

void ViewPage::putMesh(const std::string& path) {
    for (const auto& array : model_.meshArrays()) {
        if (!putBlock(array.name, array.bytes)) {
            throw Failure(path, fmt::format("has a surface too large for a page of {} MB; choose parts with "
                                            "--part, or use --serve",
                                            mostBytes_ / 1000000));
        }
    }
}

// Once a result finds no room, none that follows is tried, so that what is left out can be foreseen.
void ViewPage::putResults() {
    bool isFull = false;
    for (const auto& [step, field] : resultsInOrder()) {
        if (!isFull) {
            const auto block = model_.resultBlock(model_.fields()[field], step);
            const auto name = ViewModel::resultBlockName(field, step);
            isFull = !putBlock(name, block.bytes);
            if (!isFull) {
                ranges_[name] = rangesOf(block);
            }
        }
        ++(isFull ? contents_.leftOut : contents_.results);
    }
}

/// @return pairs of a step and a field.
std::vector<std::pair<std::size_t, std::size_t>> ViewPage::resultsInOrder() const {
    std::vector<std::pair<std::size_t, std::size_t>> results;
    std::size_t last = 0;
    for (std::size_t field = 0; field < model_.fields().size(); ++field) {
        for (const auto step : model_.fields()[field].steps) {
            results.emplace_back(step, field);
            last = step == ResultField::NoStep ? last : std::max(last, step);
        }
    }
    const auto rank = [last](std::size_t step) {
        return step == ResultField::NoStep ? 0 : step == last ? 1 : step + 2;
    };
    std::stable_sort(results.begin(), results.end(), [&](const auto& left, const auto& right) {
        return rank(left.first) < rank(right.first);
    });
    return results;
}

bool ViewPage::putBlock(const std::string& name, std::string_view bytes) {
    const auto text = base64(deflated(bytes));
    if (contents_.bytes + text.size() > mostBytes_) {
        return false;
    }
    contents_.bytes += text.size();
    *out_ << "<script type=\"application/octet-stream;base64\" id=\"block-" << name << "\">" << text
          << "</script>\n";
    return true;
}

void ViewPage::putDescription() {
    auto description = model_.description();
    description["ranges"] = ranges_;
    if (contents_.leftOut > 0) {
        description["notes"].push_back(
            fmt::format("{} of {} results are left out, since the page would exceed {} MB; mox view --serve "
                        "shows them all, --max-size makes room, --step and --dataset choose",
                        contents_.leftOut, contents_.leftOut + contents_.results, mostBytes_ / 1000000));
    }
    *out_ << "<script type=\"application/json\" id=\"model\">" << pageJson(description) << "</script>\n";
}

std::string pageJson(const Json& value) {
    std::string text;
    for (const auto character : value.dump(-1, ' ', true)) {
        switch (character) {
        case '<':
            text += "\\u003c";
            break;
        case '>':
            text += "\\u003e";
            break;
        case '&':
            text += "\\u0026";
            break;
        default:
            text += character;
        }
    }
    return text;
}

} // namespace MoxTool
