#include "writeApart.h"

#include "../common/ApartReport.h"
#include "../common/Failure.h"
#include "../common/Terminal.h"

#include <exception>
#include <new>
#include <optional>

namespace MoxTool {

namespace {

ApartReport writeAndReport(const ExportRequest& request, const std::function<ConversionSummary()>& write) {
    try {
        return {ApartReport::Kind::Done, write().pack()};
    } catch (const std::bad_alloc&) {
        return {ApartReport::Kind::Failed, Failure(request.input, "not enough memory").what()};
    } catch (const std::exception& failure) {
        return {ApartReport::Kind::Failed, failure.what()};
    }
}

} // namespace

ConversionSummary writeApart(const ExportRequest& request, const std::string& library, Terminal& terminal,
                             const std::function<ConversionSummary()>& write) {
    ConversionSummary summary(request.output);
    Platform::ApartWorks works;
    works.work = [&](std::size_t, std::FILE* messages) {
        terminal.replaceStandardError(messages);
        return writeAndReport(request, write).pack();
    };
    works.end = [&](std::size_t, const Platform::ApartOutcome& outcome) {
        terminal.clearForeignProgress();
        const auto report = ApartReport::in(outcome);
        if (!report) {
            throw Failure(request.output,
                          deathText(outcome, library + " crashed while writing it; was memory short?",
                                    "written", "export"));
        }
        if (report->kind == ApartReport::Kind::Failed) {
            throw Failure(report->text);
        }
        summary = ConversionSummary::unpack(report->text);
        return true;
    };
    Platform::runApart(works);
    return summary;
}

} // namespace MoxTool
