#include "closestWord.h"

#include <algorithm>
#include <cstddef>

namespace MoxTool {

namespace {

constexpr std::size_t LettersPerMistake = 3;

bool areSwapped(std::string_view a, std::string_view b, std::size_t i, std::size_t j) {
    return i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
}

// The optimal string alignment distance, by rows: each entry is that of the first i letters to the first j.
std::size_t mistakesBetween(std::string_view a, std::string_view b) {
    std::vector<std::vector<std::size_t>> rows(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
    for (std::size_t i = 0; i <= a.size(); ++i) {
        for (std::size_t j = 0; j <= b.size(); ++j) {
            if (i == 0 || j == 0) {
                rows[i][j] = i + j;
                continue;
            }
            const std::size_t change = a[i - 1] == b[j - 1] ? 0 : 1;
            rows[i][j] = std::min({rows[i - 1][j] + 1, rows[i][j - 1] + 1, rows[i - 1][j - 1] + change});
            if (areSwapped(a, b, i, j)) {
                rows[i][j] = std::min(rows[i][j], rows[i - 2][j - 2] + 1);
            }
        }
    }
    return rows.back().back();
}

std::string_view withoutDashes(std::string_view word) {
    return word.substr(std::min(word.find_first_not_of('-'), word.size()));
}

std::optional<std::string> onlyWordWithStart(std::string_view start, const std::vector<std::string>& known) {
    const auto fits = [start](const std::string& word) { return word.starts_with(start); };
    const bool isOne = !withoutDashes(start).empty() && std::ranges::count_if(known, fits) == 1;
    return isOne ? std::optional(*std::ranges::find_if(known, fits)) : std::nullopt;
}

} // namespace

std::optional<std::string> closestWord(std::string_view typed, const std::vector<std::string>& known) {
    const auto length = withoutDashes(typed).size();
    std::size_t fewest = length == 2 ? 2 : length / LettersPerMistake + 1;
    std::optional<std::string> closest;
    for (const auto& word : known) {
        // A word much longer needs no table, which a hostile one would make large.
        const auto longer = std::max(word.size(), typed.size()) - std::min(word.size(), typed.size());
        const auto mistakes = longer < fewest ? mistakesBetween(typed, word) : fewest;
        if (mistakes < fewest) {
            fewest = mistakes;
            closest = word;
        }
    }
    return closest ? closest : onlyWordWithStart(typed, known);
}

std::string didYouMean(std::string_view typed, const std::vector<std::string>& known) {
    const auto word = closestWord(typed, known);
    return word ? "; did you mean " + *word + "?" : "";
}

} // namespace MoxTool
