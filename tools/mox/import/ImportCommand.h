#pragma once

#include "../common/Command.h"
#include "Compressor.h"
#include "ImportRequest.h"
#include "importFormatOf.h"

#include <string>

namespace MoxTool {

/// `mox import MODEL OUT.mox`: converts an Exodus II, CGNS or Gmsh file, recognised by its content.
class ImportCommand : public Command {
public:
    ImportCommand();
    std::string name() const override;
    std::string summary() const override;
    std::optional<Example> example() const override;
    void addOptions(CommandLine& line) override;
    int run(Terminal& terminal) override;

private:
    void findPieces();
    ForeignFormat format() const;

    ImportRequest request_;
    std::string compressor_ = Compressor::preferred();
    bool allParts_ = false;
    bool verbose_ = false;
    unsigned int processes_ = 1;
    unsigned long long memory_; // in MiB
};

} // namespace MoxTool
