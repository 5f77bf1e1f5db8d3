#include "reviewOutput.h"

#include "../../check/FileCheck.h"
#include "../../common/Failure.h"
#include "../../common/Terminal.h"
#include "../../common/openSource.h"
#include "../../common/utf8Path.h"
#include "../../common/writeProblem.h"
#include "cannotBeWritten.h"
#include "checkSavedFile.h"

#include <fmt/core.h>

#include <exception>
#include <new>

namespace MoxTool {

namespace {

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

void reviewOutput(const std::string& path, const ImportRequest& request, Terminal& terminal) {
    try {
        if (request.check) {
            refuseErrors(path, request.output, terminal);
        }
        checkSavedFile(pathOf(path));
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

} // namespace MoxTool
