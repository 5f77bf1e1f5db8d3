#include "saveImported.h"

#include "../../check/FileCheck.h"
#include "../../common/BlockSizeSetting.h"
#include "../../common/Failure.h"
#include "../../common/OutputFile.h"
#include "../../common/Platform.h"
#include "../../common/Terminal.h"
#include "../../common/openSource.h"
#include "../../common/writeProblem.h"
#include "../Compressor.h"
#include "BlockTooSmall.h"
#include "checkSavedFile.h"

#include <fmt/core.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

namespace MoxTool {

namespace {

Qel::Mox2::SaverOptions saverOptions() {
    Qel::Mox2::SaverOptions options;
    options.overwrite = false;
    options.sourceName = "mox import";
    options.sourceVersion = MOX_VERSION;
    return options;
}

Failure cannotBeWritten(const ImportRequest& request, const std::string& reason) {
    return {request.output, "can't be written: " + reason};
}

void refuseToReplaceInput(const ImportRequest& request) {
    const auto isOutput = [&](const std::string& input) {
        std::error_code missing;
        return std::filesystem::equivalent(input, request.output, missing);
    };
    if (isOutput(request.input) || (request.pieces && std::ranges::any_of(request.pieces->paths, isOutput))) {
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

void save(const std::string& path, const ImportRequest& request, const ModelFiller& fill, Terminal& terminal,
          ConversionSummary& summary) {
    auto model = std::make_unique<Qel::Mox2::Model>();
    try {
        model->saveTo(path, saverOptions());
        ImportTarget target(request, *model, terminal, summary);
        fillTarget(target, fill);
        target.choices.check(request.input);
        model->close();
        summary.compressor = Compressor::used();
    } catch (...) {
        closeOrAbandon(model);
        throw;
    }
}

// What the process that reads the input returns: one of these letters, then a packed summary, the line of a failure or
// the size of blocks to begin again with.
constexpr char Saved = 'S';
constexpr char Failed = 'F';
constexpr char Again = 'A';

std::string boundText(const ImportRequest& request) {
    return fmt::format("needs more memory than its bound of {} MiB", request.mostMemory / Mebibyte);
}

constexpr const char* OtherBound = "; --memory sets another";

std::string memoryText(const ImportRequest& request) {
    return request.mostMemory == 0 ? "not enough memory" : boundText(request) + OtherBound;
}

// Libraries report that they get no memory as whatever they could not do without it.
std::string failureText(const Failure& failure, const ImportRequest& request, bool hasMissedMemory) {
    const std::string text = failure.what();
    return request.mostMemory != 0 && hasMissedMemory ? text + "; or it " + boundText(request) + OtherBound
                                                      : text;
}

std::string saveAndReport(const std::string& path, const ImportRequest& request, const ModelFiller& fill,
                          Terminal& terminal) {
    try {
        ConversionSummary summary(request.output);
        save(path, request, fill, terminal, summary);
        return Saved + summary.pack();
    } catch (const BlockTooSmall& block) {
        return Again + std::to_string(block.safeSize);
    } catch (const Failure& failure) {
        return Failed + failureText(failure, request, Platform::hasMissedMemory());
    } catch (const std::bad_alloc&) {
        return Failed + std::string(Failure(request.input, memoryText(request)).what());
    } catch (const std::exception& failure) {
        // zlib reports that it gets no memory.
        if (Platform::hasMissedMemory()) {
            return Failed + std::string(Failure(request.input, memoryText(request)).what());
        }
        return Failed + std::string(cannotBeWritten(request, failure.what()).what());
    }
}

// An allocation that failed leaves no trace in what was used, and much of what is bounded is never touched.
bool isNearBound(const Platform::ApartOutcome& outcome, const ImportRequest& request) {
    return outcome.mostMemory >= request.mostMemory / 4 && request.mostMemory != 0;
}

Failure deathOf(const Platform::ApartOutcome& outcome, const ImportRequest& request,
                const std::string& library) {
    if (outcome.hasMissedMemory) {
        return {request.input, boundText(request) + ", or is damaged" + OtherBound};
    }
    if (outcome.isCrash() && isNearBound(outcome, request)) {
        return {request.input, fmt::format("{} crashed on this file; it is damaged, or {}{}", library,
                                           boundText(request), OtherBound)};
    }
    if (outcome.isCrash()) {
        return {request.input, library + " crashed on this file; it is likely damaged"};
    }
    if (outcome.isKill()) {
        return {request.input, "not read to its end, since the system killed the import; was memory short?"};
    }
    return {request.input,
            fmt::format("not read to its end, since the import was ended ({})", outcome.signalName())};
}

/// @return nothing if it has to begin again; the block size is then larger.
std::optional<ConversionSummary> tryToSaveApart(const std::string& path, const ImportRequest& request,
                                                const std::string& library, Terminal& terminal,
                                                const ModelFiller& fill,
                                                std::optional<BlockSizeSetting>& blockSize) {
    const auto outcome = Platform::runApart(
        [&](std::FILE* messages) {
            terminal.replaceStandardError(messages);
            return saveAndReport(path, request, fill, terminal);
        },
        request.mostMemory);
    terminal.clearForeignProgress();
    if (!outcome.result || outcome.result->empty()) {
        throw deathOf(outcome, request, library);
    }
    const auto text = outcome.result->substr(1);
    if (outcome.result->front() == Failed) {
        throw Failure(text);
    }
    if (outcome.result->front() == Again) {
        blockSize.reset();
        blockSize.emplace(static_cast<std::uint32_t>(std::stoul(text)));
        return std::nullopt;
    }
    return ConversionSummary::unpack(text);
}

// The sizes are at least doubled each time, and what has been saved until then is little: the coordinates come first.
ConversionSummary saveApart(const std::string& path, const ImportRequest& request, const std::string& library,
                            Terminal& terminal, const ModelFiller& fill) {
    std::optional<BlockSizeSetting> blockSize;
    for (;;) {
        if (auto summary = tryToSaveApart(path, request, library, terminal, fill, blockSize)) {
            return std::move(*summary);
        }
        std::error_code ignored; // saving anew fails if the file is still there
        std::filesystem::remove(path, ignored);
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

void checkOutput(const std::string& path, const ImportRequest& request, Terminal& terminal) {
    try {
        if (request.check) {
            refuseErrors(path, request.output, terminal);
        }
        checkSavedFile(path);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& flaw) {
        if (const auto problem = writeProblem(path)) {
            throw cannotBeWritten(request, *problem);
        }
        if (dynamic_cast<const Failure*>(&flaw) != nullptr) {
            throw;
        }
        throw cannotBeWritten(request, flaw.what());
    }
}

} // namespace

ConversionSummary saveImported(const ImportRequest& request, const std::string& library, Terminal& terminal,
                               const ModelFiller& fill) {
    refuseToReplaceInput(request);
    OutputFile output(request.output, request.overwrite);
    const auto path = output.temporaryPath().string();
    const auto summary = saveApart(path, request, library, terminal, fill);
    checkOutput(path, request, terminal);
    output.commit();
    return summary;
}

} // namespace MoxTool
