#pragma once

#include "foreignKind.h"
#include "openSource.h"
#include "readFailure.h"

#include <MoxReader/File.h>
#include <MoxReader/Model.h>

#include <string>

namespace MoxTool {

/// A file with its model, for commands that need both whole.
class OpenModel {
public:
    /// @param path "-" stands for stdin.
    /// @throws Failure if anything is wrong with the file.
    explicit OpenModel(const std::string& path)
        : opened_(openFile(path)),
          contents_(explainErrors(path, [this] { return MoxReader::readModel(opened_); })) {}

    const MoxReader::File& file() const { return opened_; }
    const MoxReader::Model& model() const { return contents_; }

private:
    static MoxReader::File openFile(const std::string& path) {
        const auto source = openSource(path);
        refuseForeignFile(path, *source);
        return explainErrors(path, [&] { return MoxReader::File(source); });
    }

    MoxReader::File opened_;
    MoxReader::Model contents_;
};

} // namespace MoxTool
