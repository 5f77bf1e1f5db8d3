#include "importExodus.h"

#include "../Failure.h"
#include "../OutputFile.h"
#include "../Terminal.h"
#include "ExodusFile.h"
#include "FloatNarrowing.h"
#include "MeshImporter.h"
#include "ResultImporter.h"
#include "checkSavedFile.h"
#include "leaveTheRest.h"

#include <Qel/Mox2/Model.h>

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
    if (std::filesystem::equivalent(request.input, request.output, missing))
        throw Failure(request.output, "is the input itself");
}

void fill(Qel::Mox2::Model& model, const ExodusFile& input, Terminal& terminal, ImportSummary& summary) {
    FloatNarrowing narrowing;
    const auto mesh = MeshImporter(input, model, narrowing, summary).run();
    ResultImporter(input, mesh, DatasetWriter(model, summary), narrowing, terminal, summary).run();
    leaveTheRest(input, summary);
    for (const auto& sentence : narrowing.report())
        summary.tell(sentence);
}

// A model that can't be closed must not be destroyed either, since its destructor would end the program; it
// is then left to the end of the process.
void closeOrAbandon(std::unique_ptr<Qel::Mox2::Model>& model) noexcept {
    try {
        model->close();
    } catch (const std::exception&) {
        (void)model.release();
    }
}

void save(const ExodusFile& input, const std::string& output, Terminal& terminal, ImportSummary& summary) {
    auto model = std::make_unique<Qel::Mox2::Model>();
    try {
        model->saveTo(output, saverOptions());
        fill(*model, input, terminal, summary);
        model->close();
    } catch (...) {
        closeOrAbandon(model);
        throw;
    }
    checkSavedFile(output);
}

} // namespace

ImportSummary importExodus(const ImportRequest& request, Terminal& terminal) {
    const ExodusFile input(request.input);
    refuseToReplaceInput(request);
    OutputFile output(request.output, request.overwrite);
    ImportSummary summary(request.output);
    try {
        save(input, output.temporaryPath().string(), terminal, summary);
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
