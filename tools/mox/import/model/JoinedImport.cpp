#include "JoinedImport.h"

#include "../../common/Terminal.h"
#include "../../common/utf8Path.h"
#include "../../parts/FileJoin.h"
#include "refuseToReplaceInput.h"
#include "reviewOutput.h"

#include <MoxReader/File.h>
#include <MoxReader/FileSource.h>
#include <MoxReader/Model.h>

#include <memory>

namespace MoxTool {

JoinedImport::JoinedImport(const ImportRequest& request, const std::string& library, Terminal& terminal)
    : request_(request),
      library_(library),
      terminal_(terminal),
      output_(pathOf(request.output), request.overwrite) {
    refuseToReplaceInput(request);
    output_.createFolder();
}

std::vector<ConversionSummary> JoinedImport::save(std::vector<ImportPart> parts) {
    for (auto& part : parts) {
        part.path = pathIn(part.path);
        part.request.check = false; // the whole is checked
        files_.push_back(part.path);
    }
    std::vector<ConversionSummary> summaries;
    for (const auto& saved : saveApart(parts, request_.processes, library_, terminal_)) {
        reviewOutput(parts[summaries.size()].path, parts[summaries.size()].request, terminal_);
        narrowing_.add(saved.narrowing);
        summaries.push_back(saved.summary);
    }
    return summaries;
}

std::string JoinedImport::pathIn(const std::string& name) const {
    return utf8Of(output_.temporaryPath() / pathOf(name));
}

std::string JoinedImport::rootName(const std::string& name) const {
    const MoxReader::File file(std::make_shared<MoxReader::FileSource>(pathOf(pathIn(name))));
    return MoxReader::readModel(file).root().name;
}

// Where shapes are told apart by a suffix, the first file alone has the attributes of the root.
void JoinedImport::join(const std::string& suffix, ConversionSummary& summary) {
    const auto review = [&](const std::string& path) { reviewOutput(path, request_, terminal_); };
    joinFiles({.inputs = files_,
               .output = request_.output,
               .overwrite = request_.overwrite,
               .preferFirst = !suffix.empty(),
               .suffix = suffix,
               .review = review},
              [&](const char*, double fraction) { terminal_.progress("joining", fraction); });
    terminal_.clearProgress();
    for (const auto& sentence : narrowing_.report()) {
        summary.addNote(sentence);
    }
}

} // namespace MoxTool
