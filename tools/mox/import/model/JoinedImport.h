#pragma once

#include "../../common/ConversionSummary.h"
#include "../../common/OutputFile.h"
#include "../ImportRequest.h"
#include "saveApart.h"

#include <string>
#include <vector>

namespace MoxTool {

class Terminal;

/// An import whose output is joined from files that processes save, in a temporary folder beside it.
///
/// What is in the folder is removed with this object, and when the process is ended from outside.
class JoinedImport {
public:
    /// All arguments must outlive this object.
    /// @param library What messages call the library that reads the input.
    /// @throws Failure if the output must not be replaced or can't be written.
    JoinedImport(const ImportRequest& request, const std::string& library, Terminal& terminal);

    /// Saves files in the folder, with so many processes as the request says, and adds them to those to join.
    /// @param parts    Their paths are the names of the files.
    /// @return the summary of each.
    /// @throws Failure if one can't be saved; the other processes are ended then.
    std::vector<ConversionSummary> save(std::vector<ImportPart> parts);

    /// The name of the root in one of the files.
    std::string rootName(const std::string& name) const;

    /// Joins the files in the order in which they were saved, reviews the result and gives it its name.
    /// @param suffix As JoinRequest has it.
    /// @param summary Gets notes about all parts.
    /// @throws Failure if that can't be done.
    void join(const std::string& suffix, ConversionSummary& summary);

private:
    std::string pathIn(const std::string& name) const;

    const ImportRequest& request_;
    const std::string& library_;
    Terminal& terminal_;
    OutputFile output_;
    std::vector<std::string> files_;
    FloatNarrowing narrowing_;
};

} // namespace MoxTool
