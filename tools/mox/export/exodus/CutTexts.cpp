#include "CutTexts.h"

#include "../../common/utf8.h"

#include <fmt/core.h>

namespace MoxTool {

namespace {

// As much of a text as a message shows, cut between characters.
std::string beginning(const std::string& text) {
    std::size_t end = 40;
    if (text.size() <= end) {
        return text;
    }
    while (end > 0 && isUtf8Continuation(text[end])) {
        --end;
    }
    return text.substr(0, end) + "...";
}

} // namespace

std::string CutTexts::cut(const std::string& text, std::size_t longest, const std::string& kind) {
    if (text.size() <= longest) {
        return text;
    }
    ++cuts_.try_emplace(kind, Cut{longest, 0, text}).first->second.count;
    return text.substr(0, longest);
}

void CutTexts::addTo(ConversionSummary& summary) const {
    for (const auto& [kind, cut] : cuts_) {
        summary.addNote(fmt::format(
            "{} are cut to {} letters, since an Exodus II file allows no more: {} (\"{}\"{})", kind,
            cut.longest, cut.count, beginning(cut.first), cut.count > 1 ? " and more" : ""));
    }
}

} // namespace MoxTool
