#include "Commands.h"

#include "check/CheckCommand.h"
#include "completion/CompletionCommand.h"
#include "diff/DiffCommand.h"
#include "dump/DumpCommand.h"
#include "export/ExportCommand.h"
#include "extract/ExtractCommand.h"
#include "help/HelpCommand.h"
#include "import/ImportCommand.h"
#include "info/InfoCommand.h"
#include "join/JoinCommand.h"
#include "man/ManCommand.h"
#include "salvage/SalvageCommand.h"
#include "split/SplitCommand.h"
#include "stat/StatCommand.h"
#include "tree/TreeCommand.h"
#include "version/VersionCommand.h"
#include "view/ViewCommand.h"

namespace MoxTool {

namespace {

using Maker = std::unique_ptr<Command> (*)();

template <typename CommandT>
std::unique_ptr<Command> make() {
    return std::make_unique<CommandT>();
}

constexpr Maker Makers[] = {
    make<ImportCommand>,     make<InfoCommand>,   make<TreeCommand>,    make<StatCommand>,
    make<DumpCommand>,       make<DiffCommand>,   make<JoinCommand>,    make<SplitCommand>,
    make<ExtractCommand>,    make<ExportCommand>, make<ViewCommand>,    make<CheckCommand>,
    make<SalvageCommand>,    make<HelpCommand>,   make<VersionCommand>, make<ManCommand>,
    make<CompletionCommand>,
};

} // namespace

std::vector<std::unique_ptr<Command>> makeCommands() {
    std::vector<std::unique_ptr<Command>> commands;
    for (const auto maker : Makers) {
        commands.push_back(maker());
    }
    return commands;
}

} // namespace MoxTool
