#include "saveImported.h"

#include "../../check/FileCheck.h"
#include "../../common/Failure.h"
#include "../../common/OutputFile.h"
#include "../../common/Terminal.h"
#include "../../common/openSource.h"
#include "checkSavedFile.h"

#include <fmt/core.h>

#include <filesystem>
#include <memory>
#include <string>

namespace MoxTool {

namespace {

Qel::Mox2::SaverOptions saverOptions() {
    Qel::Mox2::SaverOptions options;
    options.overwrite = false;
    options.sourceName = "mox import";
    options.sourceVersion = MOX_VERSION;
    return options;
}

void refuseToReplaceInput(const ImportRequest& request) {
    std::error_code missing;
    if (std::filesystem::equivalent(request.input, request.output, missing)) {
        throw Failure(request.output, "is the input itself");
    }
}

// A model that can't be closed must not be destroyed either, since its destructor would end the program; it
// is then kept until the process ends.
void closeOrAbandon(std::unique_ptr<Qel::Mox2::Model>& model) noexcept {
    try {
        model->close();
    } catch (const std::exception&) {
        (void)model.release();
    }
}

void fillTarget(ImportTarget& target, const ModelFiller& fill) {
    fill(target);
    for (const auto& sentence : target.narrowing.report()) {
        target.summary.addNote(sentence);
    }
}

void save(const std::string& path, const std::string& input, const ModelFiller& fill, Terminal& terminal,
          ConversionSummary& summary) {
    auto model = std::make_unique<Qel::Mox2::Model>();
    try {
        model->saveTo(path, saverOptions());
        ImportTarget target(input, *model, terminal, summary);
        fillTarget(target, fill);
        model->close();
    } catch (...) {
        closeOrAbandon(model);
        throw;
    }
}

// Only the first finding is reported: a new file should have none.
void refuseErrors(const std::string& path, const std::string& output, Terminal& terminal) {
    FindingList findings(1);
    checkFile(openSource(path), findings, [&](double part) { terminal.progress("checking", part); });
    terminal.clearProgress();
    for (const auto& finding : findings.findings()) {
        const auto& rule = ruleOf(finding.rule);
        if (rule.level == Level::Error) {
            throw Failure(output, fmt::format("not written, since the check of it failed: error {} {}: {}",
                                              static_cast<int>(rule.id), rule.title, finding.reason));
        }
    }
}

} // namespace

ConversionSummary saveImported(const ImportRequest& request, Terminal& terminal, const ModelFiller& fill) {
    refuseToReplaceInput(request);
    OutputFile output(request.output, request.overwrite);
    ConversionSummary summary(request.output);
    try {
        const auto path = output.temporaryPath().string();
        save(path, request.input, fill, terminal, summary);
        if (request.check) {
            refuseErrors(path, request.output, terminal);
        }
        checkSavedFile(path);
    } catch (const Failure&) {
        throw;
    } catch (const std::bad_alloc&) {
        throw Failure(request.input, "not enough memory");
    } catch (const std::exception& failure) {
        throw Failure(request.output, std::string("can't be written: ") + failure.what());
    }
    output.commit();
    return summary;
}

} // namespace MoxTool
