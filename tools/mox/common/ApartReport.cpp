#include "ApartReport.h"

#include <fmt/core.h>

namespace MoxTool {

std::optional<ApartReport> ApartReport::in(const Platform::ApartOutcome& outcome) {
    if (!outcome.result || outcome.result->empty()) {
        return std::nullopt;
    }
    return ApartReport{static_cast<Kind>(outcome.result->front()), outcome.result->substr(1)};
}

std::string deathText(const Platform::ApartOutcome& outcome, const std::string& crash, std::string_view done,
                      std::string_view command) {
    if (outcome.isCrash()) {
        return crash;
    }
    if (outcome.isKill()) {
        return fmt::format("not {} to its end, since the system killed the {}; was memory short?", done,
                           command);
    }
    return fmt::format("not {} to its end, since the {} was ended ({})", done, command, outcome.signalName());
}

} // namespace MoxTool
